#include "documents/TextCase.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <locale.h>
#include <wctype.h>

#include "contracts/Utf8.h"

namespace vlclientui {

namespace {

using CaseMapping = wint_t (*)(wint_t, locale_t);

/// Unicode's tables, independent of the process locale. Null when the system lacks them.
locale_t unicodeTables() {
  static const locale_t tables = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
  return tables;
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
    const Utf8Character character = firstUtf8Character(text);
    if (character.length == 0) {
      mapped += text.front();
    } else {
      appendUtf8(mapped, mapping(static_cast<wint_t>(character.code), unicodeTables()));
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
