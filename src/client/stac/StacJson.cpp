#include "client/stac/StacJson.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vlclientui::client::stac_json {
namespace {

constexpr std::size_t mostText = std::size_t{8} << 10U;
constexpr std::size_t mostLinks = 100000;
constexpr std::size_t mostAssets = 200;
constexpr std::size_t mostBands = 1000;
constexpr std::size_t mostRoles = 16;
constexpr double mostPixels = 2147483647;

// Links that lead out of the catalogue, back into it, or to pages for people.
bool isFollowed(std::string_view relation) {
  constexpr std::array<std::string_view, 9> followed = {"child", "item", "items", "next",      "search",
                                                        "data",  "root", "self",  "collection"};
  return std::ranges::find(followed, relation) != followed.end();
}

StacLink linkOf(const Object& object) {
  StacLink link;
  for (const auto [name, value] : object) {
    if (name == "rel") link.relation = textOf(value);
    if (name == "href") link.address = textOf(value);
    if (name == "type") link.type = textOf(value);
    if (name == "method") link.isPosted = textOf(value) == "POST";
    if (name == "body" && value.is_object()) link.body = simdjson::minify(value);
    if (name == "merge") link.mergesBody = value.is_bool() && bool(value);
  }
  return link;
}

std::vector<StacBand> bandsOf(const Element& value) {
  std::vector<StacBand> bands;
  Array array;
  if (value.get(array) != simdjson::SUCCESS) return bands;
  for (const Element& element : array) {
    Object object;
    if (bands.size() == mostBands) break;
    if (element.get(object) != simdjson::SUCCESS) continue;
    StacBand band;
    for (const auto [name, member] : object) {
      if (name == "data_type") band.dataType = textOf(member);
      if (name == "unit") band.unit = textOf(member);
    }
    bands.push_back(std::move(band));
  }
  return bands;
}

// Of bands a collection tells; of its many items nobody asks.
StacAsset assetOf(std::string_view key, const Object& object, bool keepsBands) {
  StacAsset asset;
  StacAssetKind kind{std::string(key.substr(0, mostText))};
  ToldRaster place;
  bool isPlaced = false;
  for (const auto [name, value] : object) {
    if (name == "href") {
      asset.address = textOf(value);
    } else if (name == "type") {
      kind.type = textOf(value);
    } else if (name == "roles") {
      kind.roles = textsOf(value, mostRoles);
    } else if (name == "raster:bands" || (name == "bands" && kind.bands.empty())) {
      if (keepsBands) kind.bands = bandsOf(value);
    } else {
      isPlaced = takePlace(place, name, value) || isPlaced;
    }
  }
  if (isPlaced) asset.raster = std::make_shared<const ToldRaster>(std::move(place));
  asset.kind = std::make_shared<const StacAssetKind>(std::move(kind));
  return asset;
}

// The numbers tell x by column and row, then y: in another order than here.
std::optional<GeoTransform> transformOf(const std::vector<double>& numbers) {
  if (numbers.size() < 6) return std::nullopt;
  const GeoTransform transform = {numbers[2], numbers[0], numbers[1], numbers[5], numbers[3], numbers[4]};
  return isUsable(transform) ? std::optional(transform) : std::nullopt;
}

}  // namespace

std::string textOf(const Element& value) {
  std::string_view text;
  if (value.get(text) != simdjson::SUCCESS || text.size() > mostText) return {};
  return std::string(text);
}

std::optional<double> numberOf(const Element& value) {
  double number = 0;
  if (value.get(number) != simdjson::SUCCESS || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<std::int64_t> countOf(const Element& value) {
  const auto number = numberOf(value);
  if (!number || *number < 1 || *number > mostPixels || *number != std::floor(*number)) return std::nullopt;
  return static_cast<std::int64_t>(*number);
}

std::vector<std::string> textsOf(const Element& value, std::size_t most) {
  std::vector<std::string> texts;
  Array array;
  if (value.get(array) != simdjson::SUCCESS) return texts;
  for (const Element& element : array) {
    if (texts.size() == most) break;
    std::string text = textOf(element);
    if (!text.empty()) texts.push_back(std::move(text));
  }
  return texts;
}

std::vector<double> numbersOf(const Element& value) {
  constexpr std::size_t most = 16;
  std::vector<double> numbers;
  Array array;
  if (value.get(array) != simdjson::SUCCESS || array.size() > most) return numbers;
  for (const Element& element : array) {
    const auto number = numberOf(element);
    if (!number) return {};
    numbers.push_back(*number);
  }
  return numbers;
}

std::optional<Bounds> boxOf(const Element& value) {
  const std::vector<double> numbers = numbersOf(value);
  const bool hasHeights = numbers.size() == 6;
  if (numbers.size() != 4 && !hasHeights) return std::nullopt;
  const std::size_t upper = hasHeights ? 3 : 2;
  const Bounds box{numbers[0], numbers[1], numbers[upper], numbers[upper + 1]};
  return box.yMin <= box.yMax ? std::optional(box) : std::nullopt;
}

std::optional<Bounds> degreesOf(const Element& value) {
  auto box = boxOf(value);
  if (!box) return std::nullopt;
  const bool crossesAntimeridian = box->xMin > box->xMax || box->xMin < -180 || box->xMax > 180;
  if (crossesAntimeridian) {
    box->xMin = -180;
    box->xMax = 180;
  }
  box->yMin = std::clamp(box->yMin, -90.0, 90.0);
  box->yMax = std::clamp(box->yMax, -90.0, 90.0);
  return box;
}

bool takePlace(ToldRaster& raster, std::string_view name, const Element& value) {
  if (name == "proj:transform") {
    raster.transform = transformOf(numbersOf(value));
  } else if (name == "proj:shape") {
    const std::vector<double> shape = numbersOf(value);
    const auto isCount = [](double n) { return n >= 1 && n <= mostPixels && n == std::floor(n); };
    if (shape.size() != 2 || !std::ranges::all_of(shape, isCount)) return true;
    raster.rows = static_cast<std::int64_t>(shape[0]);
    raster.columns = static_cast<std::int64_t>(shape[1]);
  } else if (name == "proj:bbox") {
    const auto box = boxOf(value);
    if (box && box->xMin < box->xMax && box->yMin < box->yMax) raster.envelope = box;
  } else if (name == "proj:code") {
    std::string code = textOf(value);
    if (!code.empty()) raster.system = std::move(code);
  } else if (name == "proj:epsg") {
    const auto code = countOf(value);
    if (code && raster.system.empty()) raster.system = "EPSG:" + std::to_string(*code);
  } else if (name == "proj:wkt2") {
    if (raster.system.empty()) raster.system = textOf(value);
  } else {
    return false;
  }
  return true;
}

std::vector<StacLink> linksOf(const Element& value) {
  std::vector<StacLink> links;
  Array array;
  if (value.get(array) != simdjson::SUCCESS) return links;
  for (const Element& element : array) {
    Object object;
    if (links.size() == mostLinks) break;
    if (element.get(object) != simdjson::SUCCESS) continue;
    StacLink link = linkOf(object);
    if (isFollowed(link.relation) && !link.address.empty()) links.push_back(std::move(link));
  }
  return links;
}

std::vector<StacAsset> assetsOf(const Element& value, bool keepsAddressless) {
  std::vector<StacAsset> assets;
  Object object;
  if (value.get(object) != simdjson::SUCCESS) return assets;
  for (const auto [key, element] : object) {
    Object members;
    if (assets.size() == mostAssets) break;
    if (element.get(members) != simdjson::SUCCESS) continue;
    StacAsset asset = assetOf(key, members, keepsAddressless);
    const bool hasPlace = !asset.address.empty() || keepsAddressless;
    if (hasPlace && isRasterAsset(asset)) assets.push_back(std::move(asset));
  }
  // Many thousands are held.
  assets.shrink_to_fit();
  return assets;
}

std::string quoted(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string all = "\"";
  for (const char letter : text) {
    const auto code = static_cast<unsigned char>(letter);
    if (letter == '"' || letter == '\\') all += '\\';
    all +=
        code < 0x20 ? "\\u00" + std::string{digits[code >> 4U], digits[code & 15U]} : std::string(1, letter);
  }
  return all + '"';
}

std::string merged(const std::string& before, const std::string& changes) {
  simdjson::dom::parser first;
  simdjson::dom::parser second;
  Object old;
  Object changed;
  if (first.parse(before.empty() ? std::string("{}") : before).get(old) != simdjson::SUCCESS) return {};
  if (second.parse(changes.empty() ? std::string("{}") : changes).get(changed) != simdjson::SUCCESS)
    return {};
  std::string members;
  const auto add = [&](std::string_view name, const Element& value) {
    members += (members.empty() ? "" : ",") + quoted(name) + ":" + simdjson::minify(value);
  };
  for (const auto [name, value] : old) {
    Element replaced;
    if (changed[name].get(replaced) != simdjson::SUCCESS) add(name, value);
  }
  for (const auto [name, value] : changed) add(name, value);
  return "{" + members + "}";
}

}  // namespace vlclientui::client::stac_json
