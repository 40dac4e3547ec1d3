#include "Telling.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <string>

#include <unistd.h>

#include "client/transport/Secrets.h"
#include "contracts/Utf8.h"

namespace vlclientui::vlhost {
namespace {

constexpr const char* red = "\033[31m";
constexpr const char* plain = "\033[0m";

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

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

bool wantsColors(Reader reader) {
  if (!variable("NO_COLOR").empty()) return false;
  const std::string forced = variable("CLICOLOR_FORCE");
  if (!forced.empty() && forced != "0") return true;
  return reader == Reader::Terminal && variable("CLICOLOR") != "0" && variable("TERM") != "dumb";
}

void tell(std::string_view text) {
  static const bool isColored = wantsColors(isatty(STDERR_FILENO) != 0 ? Reader::Terminal : Reader::Program);
  std::cerr << (isColored ? std::string(red) + "vlhost:" + plain + " " : std::string("vlhost: "))
            << terminalText(client::textWithoutSecrets(text)) << "\n";
}

}  // namespace vlclientui::vlhost
