#include "documents/TextCase.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <locale.h>
#include <wctype.h>

namespace vlclientui {

namespace {

using CaseMapping = wint_t (*)(wint_t, locale_t);

/// Unicode's tables, independent of the process locale. Null when the system lacks them.
locale_t unicodeTables() {
  static const locale_t tables = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return tables;
}

struct Character {
  std::uint32_t codePoint = 0;
  std::size_t length = 0;  ///< in bytes; 0 when the bytes are no UTF-8
};

std::uint8_t byteAt(std::string_view text, std::size_t index) {
  return static_cast<std::uint8_t>(text[index]);
}

std::size_t lengthByLeadByte(std::uint8_t lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  if (lead >= 0xF0 && lead <= 0xF4) return 4;
  return 0;
}

bool isScalarOfLength(std::uint32_t codePoint, std::size_t length) {
  constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  return codePoint >= smallest[length] && codePoint <= 0x10FFFF && !surrogate;
}

/// @param text not empty.
Character firstCharacter(std::string_view text) {
  const std::size_t length = lengthByLeadByte(byteAt(text, 0));
  if (length == 0 || length > text.size()) return {};
  if (length == 1) return {byteAt(text, 0), 1};
  std::uint32_t codePoint = byteAt(text, 0) & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byteAt(text, i) & 0xC0U) != 0x80U) return {};
    codePoint = (codePoint << 6U) | (byteAt(text, i) & 0x3FU);
  }
  return isScalarOfLength(codePoint, length) ? Character{codePoint, length} : Character{};
}

void appendUtf8(std::string& text, std::uint32_t codePoint) {
  const auto append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  const auto appendTrailing = [&](unsigned shift) { append(0x80U | ((codePoint >> shift) & 0x3FU)); };
  if (codePoint < 0x80) return append(codePoint);
  if (codePoint < 0x800) {
    append(0xC0U | (codePoint >> 6U));
  } else if (codePoint < 0x10000) {
    append(0xE0U | (codePoint >> 12U));
    appendTrailing(6);
  } else {
    append(0xF0U | (codePoint >> 18U));
    appendTrailing(12);
    appendTrailing(6);
  }
  appendTrailing(0);
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<std::uint8_t>(c) < 0x80; });
}

/// Moves the ASCII letters of one case, which starts at `first`, to the other, which starts at `target`.
std::string asciiMapped(std::string_view text, char first, char target) {
  std::string mapped(text);
  for (char& c : mapped) {
    if (c >= first && c < first + 26) c = static_cast<char>(c - first + target);
  }
  return mapped;
}

std::string unicodeMapped(std::string_view text, CaseMapping mapping) {
  std::string mapped;
  mapped.reserve(text.size());
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (character.length == 0) {
      mapped += text.front();
    } else {
      appendUtf8(mapped, mapping(character.codePoint, unicodeTables()));
    }
    text.remove_prefix(std::max<std::size_t>(character.length, 1));
  }
  return mapped;
}

/// The order of UTF-8 bytes is that of UTF-16 code units but for one thing: lead bytes of U+E000 to U+FFFF go
/// behind those of the characters that UTF-16 writes as surrogates.
int codeUnitRank(char byte) {
  const int rank = static_cast<std::uint8_t>(byte);
  return rank == 0xEE || rank == 0xEF ? rank + 0x100 : rank;
}

}  // namespace

std::string lowerCased(std::string_view utf8) {
  if (isAscii(utf8) || unicodeTables() == nullptr) return asciiMapped(utf8, 'A', 'a');
  return unicodeMapped(utf8, towlower_l);
}

std::string upperCased(std::string_view utf8) {
  if (isAscii(utf8) || unicodeTables() == nullptr) return asciiMapped(utf8, 'a', 'A');
  return unicodeMapped(utf8, towupper_l);
}

int compareByCodeUnit(std::string_view a, std::string_view b) {
  const auto [differentA, differentB] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  if (differentA == a.end() || differentB == b.end()) {
    return static_cast<int>(differentB == b.end()) - static_cast<int>(differentA == a.end());
  }
  return codeUnitRank(*differentA) - codeUnitRank(*differentB);
}

std::string trimmedBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string replacedAll(std::string_view text, std::string_view from, std::string_view to) {
  if (from.empty()) return std::string(text);
  std::string result;
  for (auto found = text.find(from); found != std::string_view::npos; found = text.find(from)) {
    result.append(text.substr(0, found)).append(to);
    text.remove_prefix(found + from.size());
  }
  return result.append(text);
}

std::vector<std::string> splitAt(std::string_view text, char separator) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  for (auto found = text.find(separator); found != std::string_view::npos; found = text.find(separator)) {
    parts.emplace_back(text.substr(0, found));
    text.remove_prefix(found + 1);
  }
  parts.emplace_back(text);
  return parts;
}

}  // namespace vlclientui
