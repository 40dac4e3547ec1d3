#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageAxes.h"
#include "client/network/CoverageSystem.h"
#include "client/network/CoverageTimes.h"
#include "client/network/GridPlacing.h"
#include "client/network/XmlTree.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

using Words = std::vector<std::string>;

Words keywordsOf(const XmlElement& parent, std::string_view group, std::string_view name) {
  Words words;
  for (const XmlElement& keyword : parent.child(group).children(name)) words.push_back(keyword.text());
  return words;
}

Bounds boundsOf(const PlacedAxis& across, const PlacedAxis& down) {
  return {across.low, down.low, across.high, down.high};
}

// Both axes, or neither: half a place is none.
bool place(CoverageDescription& description, const ToldAxis& across, const ToldAxis& down) {
  const auto columns = placeAxis(across);
  const auto rows = placeAxis(down);
  if (!columns || !rows) return false;
  description.envelope = boundsOf(*columns, *rows);
  description.columns = columns->pixels;
  description.rows = rows->pixels;
  return true;
}

/// Numbers of pixels along both axes, 0 for what is not told.
using GridSize = std::array<std::int64_t, 2>;

// Indices of the first and last pixel along both axes become numbers of pixels; of indices that no raster
// has, nothing.
std::optional<GridSize> sizeBetween(const std::vector<double>& low, const std::vector<double>& high) {
  GridSize size{};
  for (std::size_t i = 0; i < size.size(); ++i) {
    const double last = high[i] - low[i];
    if (!(std::abs(last) < mostPixelsAlong)) return std::nullopt;
    size.at(i) = std::llround(last) + 1;
  }
  return size;
}

std::optional<GridSize> gridSize(const XmlElement& grid) {
  const XmlElement limits = grid.at("limits/GridEnvelope");
  const auto low = numbersIn(limits.child("low").text());
  const auto high = numbersIn(limits.child("high").text());
  if (low.size() != 2 || high.size() != 2) return GridSize{};
  return sizeBetween(low, high);
}

// How an older version spells what the list of the server tells as well.
struct SummaryNames {
  std::string_view id;
  std::string_view title;
  std::string_view abstract;
  std::string_view keywords;
  std::string_view keyword;
};
constexpr SummaryNames firstNames = {"name", "label", "description", "keywords", "keyword"};
constexpr SummaryNames middleNames = {"Identifier", "Title", "Abstract", "Keywords", "Keyword"};

CoverageDescription summaryOf(const XmlElement& element, const SummaryNames& names) {
  CoverageDescription description;
  description.id = element.child(names.id).text();
  description.title = element.child(names.title).text();
  description.abstract = element.child(names.abstract).text();
  description.keywords = keywordsOf(element, names.keywords, names.keyword);
  return description;
}

std::optional<double> numberOf(const XmlElement& element) {
  const auto numbers = numbersIn(element.text());
  return numbers.size() == 1 ? std::optional(numbers.front()) : std::nullopt;
}

CoverageBand bandOf(const XmlElement& field) {
  CoverageBand band;
  band.name = field.attribute("name");
  const XmlElement quantity = field.child("Quantity");
  band.description = quantity.child("description").text();
  band.unit = quantity.child("uom").attribute("code");
  band.noData = numberOf(quantity.at("nilValues/NilValues/nilValue"));
  const auto range = numbersIn(quantity.at("constraint/AllowedValues/interval").text());
  if (range.size() == 2) band.range = std::pair(range[0], range[1]);
  return band;
}

XmlElement envelopeIn(const XmlElement& bounds) {
  const XmlElement plain = bounds.child("Envelope");
  return plain ? plain : bounds.child("EnvelopeWithTimePeriod");
}

std::optional<CoverageDates> datesOfSecondVersion(const XmlElement& element) {
  DateSpan taken;
  taken.addTakenWithin(element.child("metadata"));
  if (!taken.dates()) taken.addAllWithin(element.at("boundedBy/EnvelopeWithTimePeriod"));
  return taken.dates();
}

std::optional<CoverageDates> datesIn(const XmlElement& element) {
  DateSpan span;
  span.addAllWithin(element);
  return span.dates();
}

std::optional<CoverageDescription> ofSecondVersion(const XmlElement& element) {
  CoverageDescription description;
  description.id = element.child("CoverageId").text();
  const XmlElement envelope = envelopeIn(element.child("boundedBy"));
  description.dates = datesOfSecondVersion(element);
  auto axes = axesOf(envelope);
  const auto grid = axes ? gridAxesOf(element.child("domainSet"), *axes) : std::nullopt;
  if (!grid) return std::nullopt;
  const bool isPlaced =
      place(description, {axes->low.east, axes->high.east, grid->east.step, grid->east.pixels},
            {axes->low.north, axes->high.north, grid->north.step, grid->north.pixels});
  if (!isPlaced) return std::nullopt;
  description.system = std::move(axes->system);
  description.axes = axes->order;
  description.xLabel = std::move(axes->xLabel);
  description.yLabel = std::move(axes->yLabel);
  description.slices = std::move(axes->slices);
  for (const XmlElement& field : element.at("rangeType/DataRecord").children("field")) {
    description.bands.push_back(bandOf(field));
  }
  description.nativeFormat = element.at("ServiceParameters/nativeFormat").text();
  return description;
}

// The native one; a server that lists several puts longitudes and latitudes first.
XmlElement nativeEnvelope(const XmlElement& domain, const std::string& system) {
  XmlElement found;
  for (const XmlElement& child : domain.children()) {
    if (!child.name().starts_with("Envelope")) continue;
    if (!found || systemName(child.attribute("srsName")) == system) found = child;
  }
  return found;
}

void readFirstRange(CoverageDescription& description, const XmlElement& rangeSet) {
  const XmlElement set = rangeSet.child("RangeSet");
  const XmlElement values = set.at("axisDescription/AxisDescription/values");
  for (const XmlElement& value : values.children("singleValue"))
    description.bands.push_back({value.text(), "", "", {}});
  if (description.bands.empty()) {
    const auto ends = numbersIn(values.at("interval/max").text());
    const int count = ends.size() == 1 ? static_cast<int>(std::clamp(ends.front(), 0.0, 10000.0)) : 0;
    for (int band = 1; band <= count; ++band) description.bands.push_back({std::to_string(band), "", "", {}});
  }
  const auto noData = numberOf(set.at("nullValues/singleValue"));
  for (CoverageBand& band : description.bands) band.noData = noData;
}

void readFirstFormats(CoverageDescription& description, const XmlElement& formats) {
  description.nativeFormat = formats.attribute("nativeFormat");
  for (const XmlElement& format : formats.children("formats")) {
    for (const std::string& word : wordsOf(format.text())) description.formats.push_back(word);
  }
}

std::optional<CoverageDescription> ofFirstVersion(const XmlElement& element) {
  CoverageDescription description = summaryOf(element, firstNames);
  const XmlElement systems = element.child("supportedCRSs");
  const XmlElement domain = element.at("domainSet/spatialDomain");
  description.system = systemName(systems.child("nativeCRSs").text());
  if (description.system.empty())
    description.system = systemName(systems.child("requestResponseCRSs").text());
  const XmlElement envelope = nativeEnvelope(domain, description.system);
  const auto corners = envelope.children("pos");
  const XmlElement grid = domain.child("RectifiedGrid");
  const auto vectors = grid.children("offsetVector");
  if (corners.size() < 2 || vectors.size() != 2) return std::nullopt;
  const auto low = eastNorth(numbersIn(corners[0].text()), AxisOrder::EastNorth);
  const auto high = eastNorth(numbersIn(corners[1].text()), AxisOrder::EastNorth);
  const auto steps =
      gridSteps(numbersIn(vectors[0].text()), numbersIn(vectors[1].text()), AxisOrder::EastNorth);
  const auto size = gridSize(grid);
  if (!low || !high || !steps || !size) return std::nullopt;
  constexpr auto counted = ShortEnvelope::HasOnePixelLess;
  if (!place(description, {low->east, high->east, steps->east, (*size)[0], counted},
             {low->north, high->north, steps->north, (*size)[1], counted})) {
    return std::nullopt;
  }
  description.dates = datesIn(element.at("domainSet/temporalDomain"));
  if (!description.dates) description.dates = datesIn(element.child("lonLatEnvelope"));
  readFirstRange(description, element.child("rangeSet"));
  readFirstFormats(description, element.child("supportedFormats"));
  return description;
}

bool isOfPixels(const std::string& crs) { return lowered(crs).ends_with("imagecrs"); }

// Of 1.1 a grid may leave its system to the boxes; the one of the whole world is there for searching.
std::string systemOfBoxes(const XmlElement& domain) {
  std::string found;
  for (const XmlElement& box : domain.children("BoundingBox")) {
    const std::string crs = box.attribute("crs");
    if (isOfPixels(crs) || systemName(crs).empty()) continue;
    if (found.empty() || lowered(found).ends_with("crs84")) found = crs;
  }
  return found;
}

/// What the boxes of 1.1 tell: that in pixels the size, that in the grid's system the place.
struct ToldBoxes {
  std::optional<GridSize> size = GridSize{};
  std::optional<EastNorth> low;
  std::optional<EastNorth> high;
};

ToldBoxes boxesIn(const XmlElement& domain, const std::string& system, AxisOrder order) {
  ToldBoxes told;
  for (const XmlElement& box : domain.children("BoundingBox")) {
    const auto from = numbersIn(box.child("LowerCorner").text());
    const auto to = numbersIn(box.child("UpperCorner").text());
    if (from.size() < 2 || to.size() < 2) continue;
    const std::string crs = box.attribute("crs");
    if (isOfPixels(crs)) {
      told.size = sizeBetween(from, to);
    } else if (systemName(crs) == system) {
      const AxisOrder own = lowered(crs).ends_with("crs84") ? AxisOrder::EastNorth : order;
      told.low = eastNorth(from, own);
      told.high = eastNorth(to, own);
    }
  }
  return told;
}

// A grid without steps fills its box.
std::optional<EastNorth> stepsOf(const XmlElement& domain, const ToldBoxes& boxes, AxisOrder order) {
  std::vector<double> offsets = numbersIn(domain.at("GridCRS/GridOffsets").text());
  if (offsets.size() == 4) offsets = {offsets[0] + offsets[1], offsets[2] + offsets[3]};
  const GridSize size = boxes.size.value_or(GridSize{});
  const bool isToldBySize = !domain.at("GridCRS/GridOffsets") && size[0] > 0 && size[1] > 0;
  if (!isToldBySize) return eastNorth(offsets, order);
  return EastNorth{(boxes.high->east - boxes.low->east) / static_cast<double>(size[0]),
                   (boxes.high->north - boxes.low->north) / static_cast<double>(size[1])};
}

bool placeBoxes(CoverageDescription& description, const XmlElement& domain) {
  const ToldBoxes boxes = boxesIn(domain, description.system, description.axes);
  if (!boxes.low || !boxes.high || !boxes.size) return false;
  const auto steps = stepsOf(domain, boxes, description.axes);
  if (!steps) return false;
  return place(description, {boxes.low->east, boxes.high->east, steps->east, (*boxes.size)[0]},
               {boxes.low->north, boxes.high->north, steps->north, (*boxes.size)[1]});
}

std::optional<CoverageDescription> ofMiddleVersion(const XmlElement& element) {
  CoverageDescription description = summaryOf(element, middleNames);
  const XmlElement domain = element.at("Domain/SpatialDomain");
  const XmlElement base = domain.at("GridCRS/GridBaseCRS");
  description.system = systemName(base ? base.text() : systemOfBoxes(domain));
  description.axes = authorityOrder(description.system);
  if (!placeBoxes(description, domain)) return std::nullopt;
  description.dates = datesIn(element.at("Domain/TemporalDomain"));
  const XmlElement field = element.at("Range/Field");
  const auto noData = numberOf(field.child("NullValue"));
  for (const XmlElement& key : field.at("Axis/AvailableKeys").children("Key")) {
    description.bands.push_back({key.text(), "", "", noData});
  }
  for (const XmlElement& format : element.children("SupportedFormat"))
    description.formats.push_back(format.text());
  return description;
}

}  // namespace

std::variant<std::vector<CoverageDescription>, CoverageProblem> readDescriptions(std::string_view document,
                                                                                 CoverageVersion version) {
  const auto tree = XmlTree::parse(document);
  if (!tree) return CoverageProblem{"", "the answer is no description of coverages"};
  if (auto problem = exceptionIn(*tree)) return *std::move(problem);
  std::vector<CoverageDescription> found;
  for (const XmlElement& element : tree->root().children()) {
    auto description = version == CoverageVersion::V201   ? ofSecondVersion(element)
                       : version == CoverageVersion::V111 ? ofMiddleVersion(element)
                                                          : ofFirstVersion(element);
    if (description && !description->id.empty()) found.push_back(*std::move(description));
  }
  return found;
}

}  // namespace vlclientui::client
