#include "client/network/CoverageTimes.h"

#include <algorithm>

#include "client/network/XmlTree.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

// "2021", "2021-07-14", "2021-07-14T10:15:00.5+02:00"; servers write words, too, such as "now".
std::string dateOf(std::string_view text) {
  constexpr std::size_t digitsOfYear = 4;
  constexpr std::size_t longest = 40;
  constexpr std::string_view digits = "0123456789";
  const std::string date = trimmed(text);
  const bool isDate = date.size() >= digitsOfYear && date.size() <= longest &&
                      date.substr(0, digitsOfYear).find_first_not_of(digits) == std::string::npos &&
                      date.find_first_not_of("0123456789-:.+TZ", digitsOfYear) == std::string::npos;
  return isDate ? date : std::string();
}

}  // namespace

// Dates of one server have the same form, so that they are in order as texts.
void DateSpan::add(const CoverageDates& span) {
  if (!dates_) {
    dates_ = span;
    return;
  }
  const bool isOpen = dates_->to.empty() || span.to.empty();
  dates_->from = std::min(dates_->from, span.from);
  dates_->to = isOpen ? std::string() : std::max(dates_->to, span.to);
}

void DateSpan::addMoment(std::string_view text) {
  const std::string date = dateOf(text);
  if (!date.empty()) add({date, date});
}

void DateSpan::addPeriod(std::string_view begin, std::string_view end) {
  const CoverageDates span{dateOf(begin), dateOf(end)};
  if (!span.from.empty() || !span.to.empty()) add(span);
}

void DateSpan::addAllWithin(const XmlElement& element) {
  std::string begin;
  std::string end;
  for (const XmlElement& child : element.children()) {
    const std::string name = lowered(child.name());
    if (name == "timeposition") {
      addMoment(child.text());
    } else if (name == "beginposition") {
      begin = child.text();
    } else if (name == "endposition") {
      end = child.text();
    } else {
      addAllWithin(child);
    }
  }
  addPeriod(begin, end);
}

void DateSpan::addTakenWithin(const XmlElement& element) {
  for (const XmlElement& child : element.children()) {
    const bool tellsWhen = child.name() == "phenomenonTime" || child.name() == "TimeDomain";
    tellsWhen ? addAllWithin(child) : addTakenWithin(child);
  }
}

}  // namespace vlclientui::client
