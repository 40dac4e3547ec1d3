#include "client/raster/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "contracts/Utf8.h"
#include "contracts/XmlCharacters.h"

namespace vlclientui::client {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

std::string utf8FromLatin1(std::string_view text) {
  std::string out;
  for (const char c : text) appendUtf8(out, static_cast<unsigned char>(c));
  return out;
}

char smallLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

std::string_view escaped(std::string_view character) {
  if (character == "&") return "&amp;";
  if (character == "<") return "&lt;";
  if (character == ">") return "&gt;";
  return character;
}

}  // namespace

std::string utf8FromAny(std::string_view text) {
  return isUtf8(text) ? std::string(text) : utf8FromLatin1(text);
}

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(whiteSpace);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(whiteSpace) - first + 1));
}

std::string firstLine(std::string_view text) {
  const std::size_t first = text.find_first_not_of(whiteSpace);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_first_of("\r\n", first) - first));
}

std::string lowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), smallLetter);
  return out;
}

bool sameIgnoringCase(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return smallLetter(a) == smallLetter(b); });
}

bool startsIgnoringCase(std::string_view text, std::string_view start) {
  return text.size() >= start.size() && sameIgnoringCase(text.substr(0, start.size()), start);
}

bool endsIgnoringCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && sameIgnoringCase(text.substr(text.size() - end.size()), end);
}

std::string xmlEscaped(std::string_view text) {
  const std::string whole = utf8FromAny(text);
  std::string out;
  for (std::size_t i = 0; i < whole.size();) {
    const std::string_view rest = std::string_view(whole).substr(i);
    const Utf8Character character = firstUtf8Character(rest);
    if (isXmlCharacter(character.code)) out += escaped(rest.substr(0, character.length));
    i += character.length;
  }
  return out;
}

std::string numberText(double value) {
  std::array<char, 400> buffer{};
  // Adding zero turns -0 into 0.
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value + 0.0, std::chars_format::fixed);
  return {buffer.data(), end.ptr};
}

}  // namespace vlclientui::client
