#include "contracts/XmlCharacters.h"

#include "contracts/Utf8.h"

namespace vlclientui {

bool isXmlText(std::string_view text) {
  // Nearly all text is ASCII, and documents may have hundreds of megabytes of it.
  const auto isPlain = [](char character) { return character >= ' ' && character < '\x7F'; };
  for (;;) {
    text.remove_prefix(
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) - text.begin()));
    if (text.empty()) return true;
    const Utf8Character character = firstUtf8Character(text);
    if (character.length == 0 || !isXmlCharacter(character.code)) return false;
    text.remove_prefix(character.length);
  }
}

}  // namespace vlclientui
