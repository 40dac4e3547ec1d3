#include "client/output/ExportJournal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace vlclientui::client {
namespace {

constexpr std::string_view identityWord = "export-1";
constexpr std::string_view blockWord = "block";
constexpr char separator = '\t';

std::array<std::uint32_t, 256> checkTable() {
  constexpr std::uint32_t polynomial = 0xEDB88320U;
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < table.size(); ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1U) != 0 ? polynomial ^ (value >> 1U) : value >> 1U;
    table.at(i) = value;
  }
  return table;
}

std::uint32_t checkOfText(std::string_view text) {
  return checkOf({reinterpret_cast<const std::byte*>(text.data()), text.size()});
}

using Fields = std::vector<std::string>;

constexpr char escape = '\\';
// What would end a field or a line, and how it is written instead.
constexpr std::array<std::pair<char, char>, 4> escaped = {
    {{escape, escape}, {'\t', 't'}, {'\n', 'n'}, {'\r', 'r'}}};

std::string asField(std::string_view text) {
  std::string field;
  for (const char letter : text) {
    const auto* const found = std::ranges::find(escaped, letter, &std::pair<char, char>::first);
    field += found == escaped.end() ? std::string(1, letter) : std::string{escape, found->second};
  }
  return field;
}

std::string textOfField(std::string_view field) {
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    const bool isEscaped = field[i] == escape && i + 1 < field.size();
    const auto* const found =
        isEscaped ? std::ranges::find(escaped, field[i + 1], &std::pair<char, char>::second) : escaped.end();
    text += found == escaped.end() ? field[i] : found->first;
    if (found != escaped.end()) ++i;
  }
  return text;
}

std::string lineOf(const Fields& fields) {
  std::string line;
  for (const std::string& field : fields) line.append(asField(field)) += separator;
  return line + std::to_string(checkOfText(line)) + '\n';
}

template <class Number>
bool readNumber(std::string_view text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end && !text.empty();
}

// Without the checksum; nothing where that is wrong.
std::optional<Fields> fieldsOf(std::string_view line) {
  const std::size_t last = line.rfind(separator);
  std::uint32_t check = 0;
  if (last == std::string_view::npos || !readNumber(line.substr(last + 1), check)) return std::nullopt;
  if (check != checkOfText(line.substr(0, last + 1))) return std::nullopt;
  Fields fields;
  for (std::size_t begin = 0; begin <= last;) {
    const std::size_t end = line.find(separator, begin);
    fields.push_back(textOfField(line.substr(begin, end - begin)));
    begin = end + 1;
  }
  return fields;
}

bool takeIdentity(JournalContent& content, const Fields& fields) {
  if (fields.size() != 3 || fields[0] != identityWord) return false;
  content.identity = {fields[1], fields[2]};
  content.isBegun = true;
  return true;
}

bool takeBlock(JournalContent& content, const Fields& fields) {
  KeptBlock block;
  if (fields.size() != 5 || fields[0] != blockWord || !readNumber(fields[1], block.offset) ||
      !readNumber(fields[2], block.bytes) || !readNumber(fields[3], block.check)) {
    return false;
  }
  block.step = fields[4];
  content.blocks.push_back(std::move(block));
  return true;
}

}  // namespace

std::uint32_t checkOf(std::span<const std::byte> bytes) {
  static const std::array<std::uint32_t, 256> table = checkTable();
  std::uint32_t value = 0xFFFFFFFFU;
  for (const std::byte byte : bytes) {
    value = table[(value ^ static_cast<std::uint32_t>(byte)) & 0xFFU] ^ (value >> 8U);
  }
  return ~value;
}

std::string journalLine(const ExportIdentity& identity) {
  return lineOf({std::string(identityWord), identity.request, identity.source});
}

std::string journalLine(const KeptBlock& block) {
  return lineOf({std::string(blockWord), std::to_string(block.offset), std::to_string(block.bytes),
                 std::to_string(block.check), block.step});
}

JournalContent readJournal(std::string_view text) {
  JournalContent content;
  std::size_t begin = 0;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', begin)) {
    const auto fields = fieldsOf(text.substr(begin, end - begin));
    const bool isTaken =
        fields && (content.isBegun ? takeBlock(content, *fields) : takeIdentity(content, *fields));
    if (!isTaken) break;
    begin = end + 1;
  }
  content.wholeBytes = begin;
  return content;
}

}  // namespace vlclientui::client
