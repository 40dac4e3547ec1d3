#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The only reader and writer of UTF-8. Overlong forms, surrogates and codes beyond U+10FFFF are no
/// characters.
#pragma GCC visibility push(default)
namespace vlclientui {

/// One character of a text.
struct Utf8Character {
  /// Its code point; 0 when the bytes are no character.
  char32_t code = 0;
  std::size_t length = 0;  ///< in bytes; 0 when the bytes are no character
};

/// @pre the text is not empty.
[[nodiscard]] Utf8Character firstUtf8Character(std::string_view text);
/// Whether the byte continues a character that began before it.
[[nodiscard]] constexpr bool continuesUtf8(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}
/// How many characters a text has.
[[nodiscard]] std::size_t utf8Characters(std::string_view text);
/// Whether the whole text is UTF-8; an empty one is.
[[nodiscard]] bool isUtf8(std::string_view text);
/// The text cut to at most so many bytes, never inside a character.
[[nodiscard]] std::string_view utf8Start(std::string_view text, std::size_t mostBytes);
/// @pre a code point up to U+10FFFF.
void appendUtf8(std::string& text, char32_t code);

}  // namespace vlclientui
#pragma GCC visibility pop
