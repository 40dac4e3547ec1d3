#include "contracts/controls/EntryNames.h"

#include <algorithm>
#include <charconv>

#include "contracts/RuntimeFailure.h"

namespace vlclientui {
namespace {

constexpr const char* mark = " #";

using Entries = std::vector<std::string>;

/// Of the entries with that text the one at the place, from 1; their number where it is none of them.
std::size_t placeAmong(const Entries& entries, const std::string& text, std::size_t wanted) {
  for (std::size_t place = 0; place < entries.size(); ++place) {
    if (entries[place] == text && --wanted == 0) return place;
  }
  return entries.size();
}

std::size_t numberedPlace(const Entries& entries, const std::string& name) {
  const std::size_t at = name.rfind(mark);
  if (at == std::string::npos) return entries.size();
  std::size_t wanted = 0;
  const char* const end = name.data() + name.size();
  const auto read = std::from_chars(name.data() + at + 2, end, wanted);
  const bool isNumber = read.ec == std::errc() && read.ptr == end && wanted > 0;
  return isNumber ? placeAmong(entries, name.substr(0, at), wanted) : entries.size();
}

}  // namespace

std::string entryName(const Entries& entries, std::size_t place) {
  const std::string& text = entries.at(place);
  if (std::ranges::count(entries, text) == 1) return text;
  const auto last = entries.begin() + static_cast<std::ptrdiff_t>(place) + 1;
  return text + mark + std::to_string(std::count(entries.begin(), last, text));
}

std::size_t placeOfEntry(const Entries& entries, const std::string& name) {
  const auto count = std::ranges::count(entries, name);
  if (count == 1) return placeAmong(entries, name, 1);
  if (count > 1)
    throw RuntimeFailure("there are " + std::to_string(count) + " entries '" + name + "'; '" + name +
                         " #1' is the first of them");
  const std::size_t numbered = numberedPlace(entries, name);
  if (numbered < entries.size()) return numbered;
  std::string all;
  for (const std::string& entry : entries) all += (all.empty() ? "" : ", ") + entry;
  throw RuntimeFailure("there is no entry '" + name + "'; there are: " + all);
}

}  // namespace vlclientui
