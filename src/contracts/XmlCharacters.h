#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#pragma GCC visibility push(default)
namespace vlclientui {

/// Characters by their code points, both ends included.
struct CharacterRange {
  /// The lowest code point.
  char32_t first = 0;
  /// The highest code point.
  char32_t last = 0;
};

/// What the name of an element may begin with, by XML 1.0, fifth edition, production 4; without the colon,
/// which parts a prefix off.
inline constexpr std::array<CharacterRange, 15> xmlNameStarts = {{{'A', 'Z'},
                                                                  {'_', '_'},
                                                                  {'a', 'z'},
                                                                  {0xC0, 0xD6},
                                                                  {0xD8, 0xF6},
                                                                  {0xF8, 0x2FF},
                                                                  {0x370, 0x37D},
                                                                  {0x37F, 0x1FFF},
                                                                  {0x200C, 0x200D},
                                                                  {0x2070, 0x218F},
                                                                  {0x2C00, 0x2FEF},
                                                                  {0x3001, 0xD7FF},
                                                                  {0xF900, 0xFDCF},
                                                                  {0xFDF0, 0xFFFD},
                                                                  {0x10000, 0xEFFFF}}};

/// What may follow besides, by production 4a.
inline constexpr std::array<CharacterRange, 6> xmlNameFollowers = {
    {{'-', '-'}, {'.', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};

/// Whether a name may begin with the character.
[[nodiscard]] constexpr bool startsXmlName(char32_t character) {
  return std::any_of(xmlNameStarts.begin(), xmlNameStarts.end(), [character](const CharacterRange& range) {
    return character >= range.first && character <= range.last;
  });
}

/// Whether a name may go on with the character.
[[nodiscard]] constexpr bool continuesXmlName(char32_t character) {
  return startsXmlName(character) || std::any_of(xmlNameFollowers.begin(), xmlNameFollowers.end(),
                                                 [character](const CharacterRange& range) {
                                                   return character >= range.first && character <= range.last;
                                                 });
}

/// What a document may hold at all, by production 2.
[[nodiscard]] constexpr bool isXmlCharacter(char32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

/// True for UTF-8 of characters that a document may hold.
[[nodiscard]] bool isXmlText(std::string_view text);

}  // namespace vlclientui
#pragma GCC visibility pop
