#include "client/drawing/RequestRaster.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <ogr_spatialref.h>

#include "client/drawing/RequestPart.h"
#include "client/raster/NorthUpRaster.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

// How holes are marked.
enum class HoleSign { None, Value, Mask };

constexpr auto ownDomain = "VLCLIENTUI";
constexpr auto inHoles = "IN_HOLES";

// Fills holes with the value, without declaring it.
std::string fillElement(const RequestBands& bands, int band) {
  const auto color = std::ranges::find(bands.colors, band) - bands.colors.begin();
  const std::string value = numberText(*bands.noData[static_cast<std::size_t>(color)]);
  return "<NoDataValue>" + value + "</NoDataValue><HideNoDataValue>1</HideNoDataValue>";
}

std::string maskBandElement(const std::vector<RequestPart>& parts) {
  std::string out = "<MaskBand><VRTRasterBand dataType=\"Byte\">";
  for (const RequestPart& part : parts) out += maskElement(part);
  return out + "</VRTRasterBand></MaskBand>";
}

std::string bandElement(const std::vector<RequestPart>& parts, const RequestBands& bands, int band,
                        HoleSign sign) {
  std::string out = "<VRTRasterBand dataType=\"" + std::string(GDALGetDataTypeName(bands.type)) +
                    "\" band=\"" + std::to_string(band) + "\">";
  if (sign == HoleSign::Mask) out += fillElement(bands, band);
  for (const RequestPart& part : parts) {
    out += parts.size() == 1 ? loneSourceElement(part, bands, band) : sourceElement(part, bands, band);
  }
  return out + "</VRTRasterBand>";
}

std::string definitionOf(const std::vector<RequestPart>& parts, const RequestBands& bands,
                         const OutputGrid& grid, HoleSign sign) {
  std::string out = "<VRTDataset rasterXSize=\"" + std::to_string(grid.columns) + "\" rasterYSize=\"" +
                    std::to_string(grid.rows) + "\">";
  for (int band = 1; band <= bands.count; ++band) out += bandElement(parts, bands, band, sign);
  if (sign == HoleSign::Mask) out += maskBandElement(parts);
  return out + "</VRTDataset>";
}

// The image is the mosaic's, whatever its first source is called.
void setMosaicTitle(CPLStringList& items, const ImageServiceRecord& service) {
  if (service.kind != ServiceKind::Mosaic) return;
  items.SetNameValue("TITLE", service.facts.title.c_str());
  for (const char* const name : {"TIFFTAG_DOCUMENTNAME", "TIFFTAG_IMAGEDESCRIPTION"}) {
    items.SetNameValue(name, service.facts.title.c_str());
  }
}

void copyTexts(GDALDataset& model, GDALDataset& request, const ImageServiceRecord& service) {
  CPLStringList items(CSLDuplicate(model.GetMetadata()));
  setMosaicTitle(items, service);
  // The grid is told by the edges of its pixels, whatever the source tells.
  items.SetNameValue("AREA_OR_POINT", nullptr);
  request.SetMetadata(items.List());
  for (int band = 1; band <= model.GetRasterCount(); ++band) {
    GDALRasterBand& from = *model.GetRasterBand(band);
    GDALRasterBand& to = *request.GetRasterBand(band);
    to.SetColorInterpretation(from.GetColorInterpretation());
    if (from.GetColorTable() != nullptr) to.SetColorTable(from.GetColorTable());
    to.SetDescription(from.GetDescription());
    if (*from.GetUnitType() != '\0') to.SetUnitType(from.GetUnitType());
  }
}

void place(GDALDataset& request, const ImageServiceRecord& service, const OutputGrid& grid) {
  std::array<double, 6> transform = {grid.extent.xMin,   grid.pixelWidth(), 0, grid.extent.yMax, 0,
                                     -grid.pixelHeight()};
  request.SetGeoTransform(transform.data());
  if (service.facts.srsWkt.empty()) return;
  OGRSpatialReference system(service.facts.srsWkt.c_str());
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  request.SetSpatialRef(&system);
}

bool isWhollyFilled(const std::vector<RequestPart>& parts, const OutputGrid& grid) {
  std::vector<Bounds> extents;
  for (const RequestPart& part : parts) {
    if (!part.hasHoles) extents.push_back(part.extent);
  }
  return covers(extents, grid);
}

bool holds(GDALDataType type, double value) {
  int isClamped = 0;
  int isRounded = 0;
  GDALAdjustValueToDataType(type, value, &isClamped, &isRounded);
  return isClamped == 0 && (isRounded == 0 || GDALDataTypeIsFloating(type) != 0);
}

// A value for all colors counts for each of them; a palette's class is not a color.
std::optional<double> declaredBy(const RequestPart& part, const RequestBands& bands, std::size_t color) {
  const bool spreads = isSpread(part, bands);
  if ((spreads && part.hasPalette) || (!spreads && color >= part.noData.size())) return std::nullopt;
  const auto value = part.noData[spreads ? 0 : color];
  return value && holds(bands.type, *value) ? value : std::nullopt;
}

NoDataValues declaredBy(const RequestPart& part, const RequestBands& bands) {
  NoDataValues values;
  for (std::size_t i = 0; i < bands.colors.size(); ++i) values.push_back(declaredBy(part, bands, i));
  return values;
}

// From the first source that declares one, in the order model, bottom, top.
NoDataValues firstDeclared(const RequestPart& model, const std::vector<RequestPart>& parts,
                           const RequestBands& bands) {
  NoDataValues values = declaredBy(model, bands);
  for (auto part = parts.begin(); part != parts.end() && !hasAnyNoData(values); ++part) {
    values = declaredBy(*part, bands);
  }
  return values;
}

// A hole goes through all bands, so a band without a value takes that of another.
NoDataValues valuesForHoles(const RequestPart& model, const std::vector<RequestPart>& parts,
                            const RequestBands& bands) {
  NoDataValues values = firstDeclared(model, parts, bands);
  const auto first = std::ranges::find_if(values, [](const auto& value) { return value.has_value(); });
  const double common = first == values.end() ? emptyValue(bands.type) : **first;
  std::ranges::replace(values, std::optional<double>(), std::optional<double>(common));
  return values;
}

HoleSign signFor(const std::vector<RequestPart>& parts, const RequestBands& bands, const OutputGrid& grid,
                 PixelFidelity fidelity) {
  if (bands.alpha != 0 || isWhollyFilled(parts, grid)) return HoleSign::None;
  const bool isCertain =
      fidelity == PixelFidelity::Exact &&
      std::ranges::all_of(parts, [&](const RequestPart& part) { return tellsHolesByValue(part, bands); });
  return isCertain ? HoleSign::Value : HoleSign::Mask;
}

void tellHoles(GDALDataset& request, const RequestBands& bands, HoleSign sign, PixelFidelity fidelity) {
  const auto isCommon = [&](const auto& value) { return isSameValue(*value, *bands.noData.front()); };
  const bool mayBeTold = sign == HoleSign::Mask && fidelity == PixelFidelity::Exact;
  if (mayBeTold && std::ranges::all_of(bands.noData, isCommon)) {
    request.SetMetadataItem(inHoles, numberText(*bands.noData.front()).c_str(), ownDomain);
  }
  for (std::size_t i = 0; sign == HoleSign::Value && i < bands.colors.size(); ++i) {
    request.GetRasterBand(bands.colors[i])->SetNoDataValue(*bands.noData[i]);
  }
}

std::vector<RequestPart> partsOf(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                                 const OutputGrid& grid) {
  std::vector<RequestPart> parts;
  for (const std::size_t i : order) {
    const ImageSource& source = service.sources[i];
    if (!overlap(source.place, grid.extent)) continue;
    parts.push_back(requestPartOf(openNorthUp(source.file, service.facts.srsWkt, service.pixels.noData), grid,
                                  service.pixels.resampling));
  }
  return parts;
}

// What remains of an area without a part: at most four rectangles.
void subtract(const Bounds& area, const Bounds& part, std::vector<Bounds>& rest) {
  if (!overlap(area, part)) {
    rest.push_back(area);
    return;
  }
  const double low = std::max(area.yMin, part.yMin);
  const double high = std::min(area.yMax, part.yMax);
  if (part.yMax < area.yMax) rest.push_back({area.xMin, part.yMax, area.xMax, area.yMax});
  if (part.yMin > area.yMin) rest.push_back({area.xMin, area.yMin, area.xMax, part.yMin});
  if (part.xMin > area.xMin) rest.push_back({area.xMin, low, part.xMin, high});
  if (part.xMax < area.xMax) rest.push_back({part.xMax, low, area.xMax, high});
}

Bounds grown(const Bounds& bounds, double across, double down) {
  return {bounds.xMin - across, bounds.yMin - down, bounds.xMax + across, bounds.yMax + down};
}

}  // namespace

bool covers(const std::vector<Bounds>& parts, const OutputGrid& area) {
  constexpr double tolerance = 1e-3;
  std::vector<Bounds> bare = {area.extent};
  for (const Bounds& part : parts) {
    std::vector<Bounds> rest;
    const Bounds whole = grown(part, area.pixelWidth() * tolerance, area.pixelHeight() * tolerance);
    for (const Bounds& piece : bare) subtract(piece, whole, rest);
    bare = std::move(rest);
  }
  return bare.empty();
}

DatasetPtr openRequest(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                       const OutputGrid& grid, PixelFidelity fidelity) {
  const GdalScope scope;
  const NorthUpRaster model =
      openNorthUp(service.sources.front().file, service.facts.srsWkt, service.pixels.noData);
  const std::vector<RequestPart> parts = partsOf(service, order, grid);
  RequestBands bands = requestBandsOf(*model.dataset);
  bands.noData = valuesForHoles(requestPartOf(model, grid, service.pixels.resampling), parts, bands);
  const HoleSign sign = signFor(parts, bands, grid, fidelity);
  DatasetPtr request = openRaster(definitionOf(parts, bands, grid, sign));
  if (!request)
    throw RuntimeFailure("The image cannot be put together: " + scope.firstFailure("no reason known"));
  copyTexts(*model.dataset, *request, service);
  place(*request, service, grid);
  tellHoles(*request, bands, sign, fidelity);
  return request;
}

std::optional<double> valueInHoles(GDALDataset& request) {
  const char* text = request.GetMetadataItem(inHoles, ownDomain);
  return text != nullptr ? std::optional<double>(CPLAtof(text)) : std::nullopt;
}

}  // namespace vlclientui::client
