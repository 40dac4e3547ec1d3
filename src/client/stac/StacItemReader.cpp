#include <algorithm>
#include <array>

#include "client/raster/Text.h"
#include "client/stac/StacJson.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client::stac_json {
namespace {

constexpr std::size_t mostOthers = 100;
constexpr std::size_t mostValue = 1000;
constexpr auto dateName = "datetime";

using Attributes = std::vector<std::pair<std::string, std::string>>;

std::string scalarText(const Element& value) {
  switch (value.type()) {
    case simdjson::dom::element_type::STRING:
      return textOf(value);
    case simdjson::dom::element_type::INT64:
      return std::to_string(std::int64_t(value));
    case simdjson::dom::element_type::UINT64:
      return std::to_string(std::uint64_t(value));
    case simdjson::dom::element_type::DOUBLE:
      return numberText(double(value));
    case simdjson::dom::element_type::BOOL:
      return bool(value) ? "true" : "false";
    default:
      return {};
  }
}

// Several texts, such as the instruments, are one attribute.
std::string attributeText(const Element& value) {
  constexpr std::size_t most = 16;
  if (!value.is_array()) return scalarText(value);
  std::string joined;
  for (const std::string& text : textsOf(value, most)) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

// Names stand in a list, where these separate one from the next.
std::string attributeName(std::string_view name) {
  std::string text(name);
  std::ranges::replace(text, ';', '_');
  std::ranges::replace(text, '=', '_');
  return text;
}

// What mosaics are ordered by counts more than how early it is told.
bool isAlwaysKept(std::string_view name) {
  constexpr std::array<std::string_view, 11> names = {
      "datetime",         "start_datetime",     "end_datetime", "created",
      "updated",          "eo:cloud_cover",     "gsd",          "view:off_nadir",
      "view:sun_azimuth", "view:sun_elevation", "eo:snow_cover"};
  return std::ranges::find(names, name) != names.end();
}

bool hasAttribute(const Attributes& attributes, std::string_view name) {
  return std::ranges::find(attributes, name, &Attributes::value_type::first) != attributes.end();
}

void takeProperties(StacItem& item, const Object& properties) {
  std::size_t others = 0;
  for (const auto [name, value] : properties) {
    if (takePlace(item.raster, name, value) || name.size() > mostValue) continue;
    const bool isNeeded = isAlwaysKept(name) && !hasAttribute(item.attributes, name);
    if (!isNeeded && others == mostOthers) continue;
    const std::string text = attributeText(value);
    if (text.empty() || text.size() > mostValue) continue;
    if (!isNeeded) ++others;
    item.attributes.emplace_back(attributeName(name), propertyWithoutSecrets(name, text));
  }
}

// An item of a span of time has no single date: its beginning counts.
void putDateFirst(Attributes& attributes) {
  const auto named = [&](std::string_view name) {
    return std::ranges::find(attributes, name, &Attributes::value_type::first);
  };
  auto date = named(dateName);
  if (date == attributes.end()) {
    const auto begin = named("start_datetime");
    if (begin == attributes.end()) return;
    date = attributes.insert(attributes.begin(), {dateName, begin->second});
  }
  std::rotate(attributes.begin(), date, date + 1);
}

void widen(std::optional<Bounds>& box, double x, double y) {
  const Bounds point{x, y, x, y};
  box = box ? unite(*box, point) : point;
}

// Positions at any depth: a shape may be a polygon or many.
void addPositions(const Array& array, std::optional<Bounds>& box) {
  double x = 0;
  double y = 0;
  const auto begin = array.begin();
  if (array.size() >= 2 && (*begin).get(x) == simdjson::SUCCESS) {
    auto second = array.begin();
    ++second;
    if ((*second).get(y) == simdjson::SUCCESS) widen(box, x, y);
    return;
  }
  for (const Element& element : array) {
    Array inner;
    if (element.get(inner) == simdjson::SUCCESS) addPositions(inner, box);
  }
}

std::optional<Bounds> boxAround(const Element& geometry) {
  Array positions;
  std::optional<Bounds> box;
  if (geometry["coordinates"].get(positions) == simdjson::SUCCESS) addPositions(positions, box);
  if (!box || box->xMin < -180 || box->xMax > 180 || box->yMin < -90 || box->yMax > 90) return std::nullopt;
  return box;
}

}  // namespace

std::optional<StacItem> itemOf(const Element& value) {
  Object object;
  if (value.get(object) != simdjson::SUCCESS) return std::nullopt;
  StacItem item;
  std::optional<Element> geometry;
  for (const auto [name, member] : object) {
    Object properties;
    if (name == "id") {
      item.id = textWithoutSecrets(scalarText(member));
    } else if (name == "collection") {
      item.collection = textOf(member);
    } else if (name == "bbox") {
      item.raster.geographic = degreesOf(member);
    } else if (name == "geometry") {
      geometry = member;
    } else if (name == "properties" && member.get(properties) == simdjson::SUCCESS) {
      takeProperties(item, properties);
    } else if (name == "assets") {
      item.assets = assetsOf(member, false);
    } else if (name == "links") {
      item.links = linksOf(member);
    }
  }
  if (item.id.empty()) return std::nullopt;
  if (!item.raster.geographic && geometry) item.raster.geographic = boxAround(*geometry);
  putDateFirst(item.attributes);
  item.attributes.shrink_to_fit();
  return item;
}

}  // namespace vlclientui::client::stac_json
