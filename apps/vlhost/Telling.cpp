#include "Telling.h"

#include <algorithm>
#include <cstddef>
#include <iostream>

#include "client/transport/Secrets.h"
#include "contracts/Utf8.h"

namespace vlclientui::vlhost {
namespace {

bool isControl(char32_t code) { return code < 0x20 || (code >= 0x7F && code < 0xA0); }

}  // namespace

std::string terminalText(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Utf8Character character = firstUtf8Character(text);
    const bool isShown = character.length > 0 && !isControl(character.code);
    const std::size_t length = std::max<std::size_t>(character.length, 1);
    shown += isShown ? text.substr(0, length) : "?";
    text.remove_prefix(length);
  }
  return shown;
}

void tell(std::string_view text) {
  std::cerr << "vlhost: " << terminalText(client::textWithoutSecrets(text)) << "\n";
}

}  // namespace vlclientui::vlhost
