#include "client/raster/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace vlclientui::client {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

unsigned char byteAt(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

std::size_t lengthByLeadByte(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

bool isSurrogateOverlongOrBeyond(unsigned char lead, unsigned char second) {
  if (lead == 0xE0) return second < 0xA0;
  if (lead == 0xED) return second >= 0xA0;
  if (lead == 0xF0) return second < 0x90;
  return lead == 0xF4 && second >= 0x90;
}

// Length in bytes of the character at the index; 0 for an illegal one.
std::size_t characterLength(std::string_view text, std::size_t index) {
  const std::size_t length = lengthByLeadByte(byteAt(text, index));
  if (length == 0 || index + length > text.size()) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(text, index + i) & 0xC0) != 0x80) return 0;
  }
  const bool illegal =
      length > 1 && isSurrogateOverlongOrBeyond(byteAt(text, index), byteAt(text, index + 1));
  return illegal ? 0 : length;
}

std::string utf8FromLatin1(std::string_view text) {
  std::string out;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      out += c;
    } else {
      out += static_cast<char>(0xC0 | (byte >> 6));
      out += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return out;
}

bool isLegalInXml(std::string_view character) {
  const auto first = static_cast<unsigned char>(character[0]);
  if (first < 0x20) return first == '\t' || first == '\n' || first == '\r';
  return character != "\xEF\xBF\xBE" && character != "\xEF\xBF\xBF";
}

char smallLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

std::string_view escaped(std::string_view character) {
  if (character == "&") return "&amp;";
  if (character == "<") return "&lt;";
  if (character == ">") return "&gt;";
  return character;
}

}  // namespace

bool isUtf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t length = characterLength(text, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

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
    const std::string_view character = std::string_view(whole).substr(i, characterLength(whole, i));
    if (isLegalInXml(character)) out += escaped(character);
    i += character.size();
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
