#include "export/CoordinateNote.h"

#include <cctype>
#include <cstddef>
#include <string_view>

#include "documents/GuardedRead.h"

namespace vlclientui {

namespace {

constexpr const char* namePath = "//Vorlane/ImageServiceInfo/Srs/Name";
constexpr const char* identifierPath = "//Vorlane/ImageServiceInfo/Srs/Id";
constexpr const char* definitionPath = "//Vorlane/ImageServiceInfo/Srs/Prj";

/// The letters that end right before a place.
std::string_view wordBefore(std::string_view text, std::size_t end) {
  std::size_t begin = end;
  while (begin > 0 && std::isalpha(static_cast<unsigned char>(text[begin - 1])) != 0) --begin;
  return text.substr(begin, end - begin);
}

/// The quoted name right behind an opening bracket.
std::string_view nameAt(std::string_view text, std::size_t bracket) {
  const std::size_t begin = text.find('"', bracket);
  const std::size_t end = begin == std::string_view::npos ? begin : text.find('"', begin + 1);
  return end == std::string_view::npos ? std::string_view() : text.substr(begin + 1, end - begin - 1);
}

}  // namespace

/// A system tells its own unit on a level above those of what it is made of; the first on that level is the
/// horizontal one. Names in quotes may hold brackets.
std::string unitOfSystem(const std::string& wellKnownText) {
  const std::string_view text = wellKnownText;
  std::string_view unit;
  std::size_t unitLevel = text.size();
  std::size_t level = 0;
  bool quoted = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '"') quoted = !quoted;
    if (quoted) continue;
    if (text[at] == ']' && level > 0) --level;
    if (text[at] != '[') continue;
    ++level;
    if (!wordBefore(text, at).ends_with("UNIT") || level >= unitLevel) continue;
    unit = nameAt(text, at);
    unitLevel = level;
  }
  return std::string(unit);
}

std::string coordinateNote(const XmlDocument& serviceInfo) {
  const std::string name = readText(serviceInfo, namePath).value_or("");
  const std::string identifier = readText(serviceInfo, identifierPath).value_or("");
  if (name.empty() && identifier.empty()) return "The service names no coordinate system.";
  std::string note = "Coordinate system: " + (name.empty() ? identifier : name);
  if (!name.empty() && !identifier.empty()) note += " (" + identifier + ")";
  const std::string unit = unitOfSystem(readText(serviceInfo, definitionPath).value_or(""));
  return unit.empty() ? note : note + "; unit: " + unit;
}

}  // namespace vlclientui
