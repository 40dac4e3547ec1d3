#include "client/raster/DatesText.h"

namespace vlclientui::client {
namespace {

std::string dayOf(const std::string& date) { return date.substr(0, date.find('T')); }

}  // namespace

std::string datesText(const std::string& from, const std::string& to) {
  const std::string first = dayOf(from);
  const std::string last = dayOf(to);
  if (first == last) return first;
  if (last.empty()) return "since " + first;
  return first.empty() ? "until " + last : first + " to " + last;
}

}  // namespace vlclientui::client
