#include "contracts/Utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace vlclientui {

namespace {

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

std::size_t lengthByLeadByte(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

bool isScalarOfLength(char32_t code, std::size_t length) {
  constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code >= smallest[length] && code <= 0x10FFFF && !isSurrogate;
}

}  // namespace

Utf8Character firstUtf8Character(std::string_view text) {
  const std::size_t length = lengthByLeadByte(byteAt(text, 0));
  if (length == 0 || length > text.size()) return {};
  if (length == 1) return {byteAt(text, 0), 1};
  char32_t code = byteAt(text, 0) & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if (!continuesUtf8(text[i])) return {};
    code = (code << 6U) | (byteAt(text, i) & 0x3FU);
  }
  return isScalarOfLength(code, length) ? Utf8Character{code, length} : Utf8Character{};
}

std::size_t utf8Characters(std::string_view text) {
  return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continuesUtf8));
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = firstUtf8Character(text).length;
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string_view utf8Start(std::string_view text, std::size_t mostBytes) {
  std::size_t length = std::min(text.size(), mostBytes);
  while (length > 0 && length < text.size() && continuesUtf8(text[length])) --length;
  return text.substr(0, length);
}

void appendUtf8(std::string& text, char32_t code) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  const auto appendTrailing = [&](unsigned shift) { append(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) return append(code);
  if (code < 0x800) {
    append(0xC0U | (code >> 6U));
  } else if (code < 0x10000) {
    append(0xE0U | (code >> 12U));
    appendTrailing(6);
  } else {
    append(0xF0U | (code >> 18U));
    appendTrailing(12);
    appendTrailing(6);
  }
  appendTrailing(0);
}

}  // namespace vlclientui
