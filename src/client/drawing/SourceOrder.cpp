#include "client/drawing/SourceOrder.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "client/raster/Text.h"
#include "documents/DecimalText.h"

namespace vlclientui::client {
namespace {

using Order = std::vector<std::size_t>;

const std::string* attributeOf(const ImageSource& source, const std::string& name) {
  for (const auto& [key, value] : source.attributes) {
    if (key == name) return &value;
  }
  return nullptr;
}

// The number in a part of a date; nothing unless it is all digits.
std::optional<int> wholeNumber(std::string_view text) {
  int value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size()) {
    return std::nullopt;
  }
  return value;
}

// Days of "2019", "2019-06" or "2019-06-21", whatever time follows.
std::optional<double> daysOf(const std::string& text) {
  const std::string date = trimmed(text).substr(0, 10);
  const bool isShaped = (date.size() < 5 || date[4] == '-') && (date.size() < 8 || date[7] == '-');
  if (!isShaped || (date.size() != 4 && date.size() != 7 && date.size() != 10)) return std::nullopt;
  const auto year = wholeNumber(date.substr(0, 4));
  const auto month = date.size() > 4 ? wholeNumber(date.substr(5, 2)) : 1;
  const auto day = date.size() > 7 ? wholeNumber(date.substr(8, 2)) : 1;
  if (!year || !month || !day || *month < 0 || *day < 0) return std::nullopt;
  const std::chrono::year_month_day whole{std::chrono::year(*year),
                                          std::chrono::month(static_cast<unsigned>(*month)),
                                          std::chrono::day(static_cast<unsigned>(*day))};
  if (!whole.ok()) return std::nullopt;
  return static_cast<double>(std::chrono::sys_days(whole).time_since_epoch().count());
}

bool isWholeDate(const std::string& text) { return trimmed(text).size() >= 10 && daysOf(text).has_value(); }

// How near a value is to the base. Different kinds have no distance: measurable values come on top, then
// texts, then sources without the attribute.
enum class RankKind { Measured, Text, Missing };

struct Rank {
  RankKind kind = RankKind::Missing;
  double distance = 0;
  std::string text;

  bool isNearerThan(const Rank& other) const {
    if (kind != other.kind) return kind < other.kind;
    return kind == RankKind::Measured ? distance < other.distance : text < other.text;
  }
};

// Without a base, dates count from year 0 and numbers from 0: the lowest is on top.
Rank rankOf(const std::string& value, const std::string& base) {
  if (const auto number = readDecimal(value)) {
    return {RankKind::Measured, std::abs(*number - readDecimal(base).value_or(0)), {}};
  }
  if (isWholeDate(value)) {
    return {RankKind::Measured, std::abs(*daysOf(value) - daysOf(base).value_or(*daysOf("0000-01-01"))), {}};
  }
  return {RankKind::Text, 0, value == base ? std::string() : value};
}

Rank rankByAttribute(const ImageSource& source, const DrawingProperties& properties) {
  const std::string* value = attributeOf(source, properties.orderField);
  return value == nullptr ? Rank() : rankOf(trimmed(*value), trimmed(properties.orderBase));
}

Rank rankByViewpoint(const ImageSource& source, const DrawingProperties& properties) {
  const double x = (source.place.xMin + source.place.xMax) / 2 - *properties.viewPointX;
  const double y = (source.place.yMin + source.place.yMax) / 2 - *properties.viewPointY;
  return {RankKind::Measured, std::hypot(x, y), {}};
}

template <class RankOf>
void sortBottomFirst(Order& order, const std::vector<ImageSource>& sources, RankOf rankOfSource) {
  std::vector<Rank> ranks;
  ranks.reserve(sources.size());
  for (const ImageSource& source : sources) ranks.push_back(rankOfSource(source));
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return ranks[b].isNearerThan(ranks[a]); });
}

std::string beforePoint(const std::string& id) { return id.substr(0, id.find('.')); }

}  // namespace

const ImageSource* lockedSource(const std::vector<ImageSource>& sources, const std::string& id) {
  const std::string wanted = trimmed(id);
  if (wanted.empty()) return nullptr;
  const auto withId = [&](auto idOf) {
    return std::find_if(sources.begin(), sources.end(),
                        [&](const ImageSource& source) { return idOf(source.rasterId) == wanted; });
  };
  auto found = withId([](const std::string& own) { return own; });
  if (found == sources.end()) found = withId(beforePoint);
  return found == sources.end() ? nullptr : &*found;
}

std::vector<std::size_t> orderedSources(const std::vector<ImageSource>& sources,
                                        const DrawingProperties& properties) {
  if (properties.method == MosaicMethod::LockRaster) {
    const ImageSource* locked = lockedSource(sources, properties.lockImageId);
    if (locked != nullptr) return {static_cast<std::size_t>(locked - sources.data())};
  }
  Order order(sources.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (properties.method == MosaicMethod::ByAttribute) {
    sortBottomFirst(order, sources, [&](const ImageSource& s) { return rankByAttribute(s, properties); });
  }
  const bool hasViewpoint = properties.viewPointX && properties.viewPointY;
  if (properties.method == MosaicMethod::ClosestToViewpoint && hasViewpoint) {
    sortBottomFirst(order, sources, [&](const ImageSource& s) { return rankByViewpoint(s, properties); });
  }
  return order;
}

}  // namespace vlclientui::client
