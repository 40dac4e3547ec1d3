#include "TypedNumber.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"

namespace vlclientui::vlhost {
namespace {

std::vector<std::string> split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  for (auto place = text.find(separator); place != std::string_view::npos; place = text.find(separator)) {
    parts.emplace_back(text.substr(0, place));
    text.remove_prefix(place + separator.size());
  }
  parts.emplace_back(text);
  return parts;
}

std::size_t digitsIn(std::string_view text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](unsigned char character) { return std::isdigit(character) != 0; }));
}

bool groupsThousands(const std::vector<std::string>& groups) {
  if (groups.size() == 1) return true;
  const std::size_t first = digitsIn(groups.front());
  const auto isThousand = [](const std::string& group) { return digitsIn(group) == 3; };
  return first >= 1 && first <= 3 && std::all_of(groups.begin() + 1, groups.end(), isThousand);
}

}  // namespace

void refuseForeignNumber(const std::string& text, const LocaleFormat& locale) {
  if (!isNumeric(text, locale) || locale.groupSeparator.empty()) return;
  const std::vector<std::string> halves = split(text, locale.decimalSeparator);
  const bool isGroupedBehindPoint =
      halves.size() > 1 && halves[1].find(locale.groupSeparator) != std::string::npos;
  if (!isGroupedBehindPoint && groupsThousands(split(halves.front(), locale.groupSeparator))) return;
  throw RuntimeFailure("'" + text + "' is no number of this locale, which writes one and a half as '1" +
                       locale.decimalSeparator + "5'");
}

}  // namespace vlclientui::vlhost
