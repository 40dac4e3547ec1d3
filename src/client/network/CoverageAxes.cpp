#include "client/network/CoverageAxes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "client/network/CoverageSystem.h"
#include "client/network/XmlTree.h"
#include "client/raster/Text.h"
#include "client/transport/Address.h"

namespace vlclientui::client {
namespace {

using Words = std::vector<std::string>;

constexpr std::array<std::string_view, 8> northWords = {"lat",      "latitude", "n",   "north",
                                                        "northing", "y",        "phi", "ylat"};
constexpr std::array<std::string_view, 10> eastWords = {"long",    "lon", "longitude", "e",     "east",
                                                        "easting", "x",   "lambda",    "xlong", "xlon"};

bool isNorth(const std::string& label) {
  return std::ranges::find(northWords, lowered(label)) != northWords.end();
}
bool isEast(const std::string& label) {
  return std::ranges::find(eastWords, lowered(label)) != eastWords.end();
}

// Labels say how coordinates really stand; the authority's order is asked where they are unknown words.
AxisOrder orderOf(const std::string& first, const std::string& written) {
  if (isNorth(first)) return AxisOrder::NorthEast;
  if (isEast(first) || lowered(written).ends_with("crs84")) return AxisOrder::EastNorth;
  return authorityOrder(systemName(written));
}

/// The system of the image and the place of its first axis.
struct Span {
  std::string system;
  std::size_t first = 0;
};

// Only systems on the ground have two axes.
std::optional<Span> spanOfCompound(const Words& systems) {
  std::size_t place = 0;
  for (const std::string& system : systems) {
    if (!systemName(system).empty()) return Span{system, place};
    ++place;
  }
  return std::nullopt;
}

std::optional<Span> spanOf(const Words& systems, const Words& labels) {
  if (systems.size() > 1) return spanOfCompound(systems);
  const std::string system = systems.empty() ? std::string() : systems.front();
  if (labels.size() == 2) return Span{system, 0};
  for (std::size_t i = 0; i + 1 < labels.size(); ++i) {
    const bool spans =
        (isNorth(labels[i]) && isEast(labels[i + 1])) || (isEast(labels[i]) && isNorth(labels[i + 1]));
    if (spans) return Span{system, i};
  }
  return std::nullopt;
}

// Numbers count days or seconds there.
bool isTime(const std::string& label, const std::string& system) {
  constexpr std::array<std::string_view, 6> labels = {"t", "time", "ansi", "date", "unix", "phenomenontime"};
  const std::string name = lowered(system);
  const std::size_t leaf = name.find_last_of(":/#=");
  const std::string code = leaf == std::string::npos ? name : name.substr(leaf + 1);
  return std::ranges::find(labels, lowered(label)) != labels.end() ||
         code.find("date") != std::string::npos || code.find("time") != std::string::npos;
}

// The system of an axis that is not of the image.
std::string systemAt(const Words& systems, std::size_t place, std::size_t first) {
  const std::size_t index = place < first ? place : place - 1;
  return systems.size() > 1 && index < systems.size() ? systems[index] : std::string();
}

// The newest of several times; of heights and the like the first one, which surely lies within.
CoverageSlice sliceAt(const std::string& label, const std::string& system, const std::string& low,
                      const std::string& high) {
  const bool isNumber = numbersIn(low).size() == 1 && numbersIn(high).size() == 1;
  if (!isNumber) return {label, '"' + high + '"'};
  return {label, isTime(label, system) ? high : low};
}

std::optional<double> numberIn(const std::string& word) {
  const auto numbers = numbersIn(word);
  return numbers.size() == 1 ? std::optional(numbers.front()) : std::nullopt;
}

std::optional<EastNorth> cornerAt(const Words& words, const CoverageAxes& axes) {
  const auto east = numberIn(words[axes.east]);
  const auto north = numberIn(words[axes.north]);
  return east && north ? std::optional(EastNorth{*east, *north}) : std::nullopt;
}

/// A vector of the grid, and whether its points lie even.
struct GridVector {
  std::vector<double> step;
  bool isEven = true;
};

std::vector<GridVector> vectorsIn(const XmlElement& grid) {
  std::vector<GridVector> vectors;
  for (const XmlElement& vector : grid.children("offsetVector"))
    vectors.push_back({numbersIn(vector.text())});
  for (const XmlElement& general : grid.children("generalGridAxis")) {
    const XmlElement axis = general.child("GeneralGridAxis");
    const bool isEven = wordsOf(axis.child("coefficients").text()).empty();
    vectors.push_back({numbersIn(axis.child("offsetVector").text()), isEven});
  }
  return vectors;
}

XmlElement gridIn(const XmlElement& domain) {
  for (const std::string_view name : {"RectifiedGrid", "ReferenceableGridByVectors"}) {
    if (const XmlElement grid = domain.child(name)) return grid;
  }
  return {};
}

// The place of the vector that runs along a coordinate and no other one.
std::optional<std::size_t> alongOnly(const std::vector<GridVector>& vectors, std::size_t coordinate,
                                     std::size_t coordinates) {
  for (std::size_t i = 0; i < vectors.size(); ++i) {
    const std::vector<double>& step = vectors[i].step;
    const auto others = std::ranges::count_if(step, [](double part) { return part != 0; });
    if (step.size() == coordinates && step[coordinate] != 0 && others == 1 && vectors[i].isEven) return i;
  }
  return std::nullopt;
}

// Indices of the first and last pixel become a number; of indices that no raster has, nothing.
std::optional<std::int64_t> pixelsBetween(double low, double high) {
  const double last = high - low;
  if (!(std::abs(last) < mostPixelsAlong)) return std::nullopt;
  return std::llround(last) + 1;
}

}  // namespace

std::vector<std::string> wordsOf(const std::string& text) {
  constexpr auto blanks = " \t\r\n";
  Words words;
  std::size_t begin = 0;
  while ((begin = text.find_first_not_of(blanks, begin)) != std::string::npos) {
    const std::size_t end = std::min(text.find_first_of(blanks, begin), text.size());
    std::string word = text.substr(begin, end - begin);
    std::erase(word, '"');
    words.push_back(std::move(word));
    begin = end;
  }
  return words;
}

std::vector<std::string> systemsIn(const std::string& name) {
  const std::size_t query = name.find('?');
  if (lowered(name.substr(0, query)).find("crs-compound") == std::string::npos || query == std::string::npos)
    return {name};
  Words systems;
  for (std::size_t begin = query + 1; begin < name.size();) {
    const std::size_t end = std::min(name.find('&', begin), name.size());
    const std::string part = name.substr(begin, end - begin);
    systems.push_back(percentDecoded(part.substr(part.find('=') + 1)));
    begin = end + 1;
  }
  return systems;
}

std::optional<CoverageAxes> axesOf(const XmlElement& envelope) {
  const Words labels = wordsOf(envelope.attribute("axisLabels"));
  const Words low = wordsOf(envelope.child("lowerCorner").text());
  const Words high = wordsOf(envelope.child("upperCorner").text());
  const Words systems = systemsIn(envelope.attribute("srsName"));
  const auto span = spanOf(systems, labels);
  // Some count a label for the time beside corners in space alone.
  const bool areInSpace = low.size() == 2 && labels.size() > 2;
  if (!span || low.size() != high.size() || span->first + 2 > labels.size() ||
      (!areInSpace && low.size() != labels.size()))
    return std::nullopt;
  CoverageAxes axes;
  axes.system = systemName(span->system);
  axes.order = orderOf(labels[span->first], span->system);
  const std::size_t first = areInSpace ? 0 : span->first;
  const bool isEastFirst = axes.order == AxisOrder::EastNorth;
  axes.east = isEastFirst ? first : first + 1;
  axes.north = isEastFirst ? first + 1 : first;
  axes.coordinates = low.size();
  axes.xLabel = labels[isEastFirst ? span->first : span->first + 1];
  axes.yLabel = labels[isEastFirst ? span->first + 1 : span->first];
  for (std::size_t i = 0; !areInSpace && i < labels.size(); ++i) {
    if (i == axes.east || i == axes.north) continue;
    axes.slices.push_back(sliceAt(labels[i], systemAt(systems, i, first), low[i], high[i]));
  }
  const auto from = cornerAt(low, axes);
  const auto to = cornerAt(high, axes);
  if (!from || !to) return std::nullopt;
  axes.low = *from;
  axes.high = *to;
  return axes;
}

std::optional<GridAxes> gridAxesOf(const XmlElement& domain, const CoverageAxes& axes) {
  const XmlElement grid = gridIn(domain);
  const auto vectors = vectorsIn(grid);
  const auto east = alongOnly(vectors, axes.east, axes.coordinates);
  const auto north = alongOnly(vectors, axes.north, axes.coordinates);
  if (!east || !north || vectors.size() != axes.coordinates) return std::nullopt;
  GridAxes found{{vectors[*east].step[axes.east]}, {vectors[*north].step[axes.north]}};
  const XmlElement limits = grid.at("limits/GridEnvelope");
  const auto low = numbersIn(limits.child("low").text());
  const auto high = numbersIn(limits.child("high").text());
  if (low.size() != vectors.size() || high.size() != vectors.size()) return found;
  const auto columns = pixelsBetween(low[*east], high[*east]);
  const auto rows = pixelsBetween(low[*north], high[*north]);
  if (!columns || !rows) return std::nullopt;
  found.east.pixels = *columns;
  found.north.pixels = *rows;
  return found;
}

}  // namespace vlclientui::client
