#include "client/RequestRaster.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <cpl_string.h>
#include <ogr_spatialref.h>

#include "client/NorthUpRaster.h"
#include "client/Resampling.h"
#include "client/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

// A source that takes part, with the facts that its virtual band needs; the file itself is closed again.
struct Part {
  std::string name;
  int columns = 0;
  int rows = 0;
  int bands = 0;
  int blockWidth = 0;
  int blockHeight = 0;
  std::string type;
  Bounds extent;
  bool isTurned = false;
  std::optional<double> noData;
  GridPlace place;
  Resampling resampling = Resampling::Nearest;
};

bool intersects(const Bounds& a, const Bounds& b) {
  return a.xMin < b.xMax && b.xMin < a.xMax && a.yMin < b.yMax && b.yMin < a.yMax;
}

PixelMeaning meaningOf(GDALRasterBand& band) {
  const bool isLabel =
      band.GetColorTable() != nullptr || GDALDataTypeIsComplex(band.GetRasterDataType()) != 0;
  return isLabel ? PixelMeaning::Label : PixelMeaning::Quantity;
}

Part partOf(const NorthUpRaster& raster, const OutputGrid& grid, const PixelChoice& choice) {
  GDALDataset& dataset = *raster.dataset;
  GDALRasterBand& band = *dataset.GetRasterBand(1);
  Part part;
  part.name = raster.name;
  part.columns = dataset.GetRasterXSize();
  part.rows = dataset.GetRasterYSize();
  part.bands = dataset.GetRasterCount();
  band.GetBlockSize(&part.blockWidth, &part.blockHeight);
  part.type = GDALGetDataTypeName(band.GetRasterDataType());
  part.extent = raster.extent;
  part.isTurned = raster.isTurned;
  part.noData = raster.noData;
  part.place = placeInGrid(raster.extent, grid);
  part.resampling = chooseResampling(part.place, part.columns, part.rows, meaningOf(band), choice.resampling);
  return part;
}

const char* wordFor(Resampling resampling) {
  switch (resampling) {
    case Resampling::Average:
      return "average";
    case Resampling::Bilinear:
      return "bilinear";
    case Resampling::Nearest:
      break;
  }
  return "nearest";
}

std::string attributeText(const std::string& name, double value) {
  return " " + name + "=\"" + numberText(value) + "\"";
}

std::string rectangle(const std::string& name, const GridPlace& place) {
  return "<" + name + attributeText("xOff", place.left) + attributeText("yOff", place.top) +
         attributeText("xSize", place.width) + attributeText("ySize", place.height) + "/>";
}

std::string propertiesOf(const Part& part) {
  return "<SourceProperties" + attributeText("RasterXSize", part.columns) +
         attributeText("RasterYSize", part.rows) + " DataType=\"" + part.type + "\"" +
         attributeText("BlockXSize", part.blockWidth) + attributeText("BlockYSize", part.blockHeight) + "/>";
}

std::string noDataText(double value) { return std::isnan(value) ? "nan" : numberText(value); }

// Holes in one source let the sources below shine through only where there are any.
std::string sourceElement(const Part& part, int band, bool isAlone) {
  const bool seesThrough = !isAlone && part.noData.has_value();
  const std::string kind = seesThrough ? "ComplexSource" : "SimpleSource";
  std::string out = "<" + kind + " resampling=\"" + wordFor(part.resampling) + "\">";
  out += "<SourceFilename relativeToVRT=\"0\">" + xmlEscaped(part.name) + "</SourceFilename>";
  out += "<SourceBand>" + std::to_string(band) + "</SourceBand>" + propertiesOf(part);
  out += rectangle("SrcRect", {0, 0, static_cast<double>(part.columns), static_cast<double>(part.rows)});
  out += rectangle("DstRect", part.place);
  if (seesThrough) out += "<NODATA>" + noDataText(*part.noData) + "</NODATA>";
  return out + "</" + kind + ">";
}

std::string bandElement(const std::vector<Part>& parts, int band, GDALDataType type) {
  std::string out = "<VRTRasterBand dataType=\"" + std::string(GDALGetDataTypeName(type)) + "\" band=\"" +
                    std::to_string(band) + "\">";
  for (const Part& part : parts) {
    if (band <= part.bands) out += sourceElement(part, band, parts.size() == 1);
  }
  return out + "</VRTRasterBand>";
}

// Formats have one type for all bands, so the request has too: one that holds every band.
GDALDataType commonType(GDALDataset& model) {
  GDALDataType type = model.GetRasterBand(1)->GetRasterDataType();
  for (int band = 2; band <= model.GetRasterCount(); ++band) {
    type = GDALDataTypeUnion(type, model.GetRasterBand(band)->GetRasterDataType());
  }
  return type;
}

std::string definitionOf(GDALDataset& model, const std::vector<Part>& parts, const OutputGrid& grid) {
  std::string out = "<VRTDataset rasterXSize=\"" + std::to_string(grid.columns) + "\" rasterYSize=\"" +
                    std::to_string(grid.rows) + "\">";
  const GDALDataType type = commonType(model);
  for (int band = 1; band <= model.GetRasterCount(); ++band) {
    out += bandElement(parts, band, type);
  }
  return out + "</VRTDataset>";
}

void copyTexts(GDALDataset& model, GDALDataset& request) {
  CPLStringList items(CSLDuplicate(model.GetMetadata()));
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

bool hasAlpha(GDALDataset& dataset) {
  for (int band = 1; band <= dataset.GetRasterCount(); ++band) {
    if (dataset.GetRasterBand(band)->GetColorInterpretation() == GCI_AlphaBand) return true;
  }
  return false;
}

bool isWhollyCovered(const std::vector<Part>& parts, const OutputGrid& grid) {
  std::vector<Bounds> extents;
  for (const Part& part : parts) {
    if (!part.isTurned) extents.push_back(part.extent);
  }
  return covers(extents, grid);
}

void declareNoData(GDALDataset& request, const NorthUpRaster& model, const std::vector<Part>& parts,
                   const OutputGrid& grid) {
  std::optional<double> value = model.noData;
  if (!value && !hasAlpha(*model.dataset) && !isWhollyCovered(parts, grid)) {
    value = emptyValue(model.dataset->GetRasterBand(1)->GetRasterDataType());
  }
  if (!value) return;
  for (int band = 1; band <= request.GetRasterCount(); ++band) {
    request.GetRasterBand(band)->SetNoDataValue(*value);
  }
}

std::vector<Part> partsOf(const ImageServiceRecord& service, const std::vector<std::size_t>& order,
                          const OutputGrid& grid) {
  std::vector<Part> parts;
  for (const std::size_t i : order) {
    const ImageSource& source = service.sources[i];
    if (!intersects(source.place, grid.extent)) continue;
    parts.push_back(
        partOf(openNorthUp(source.file, service.facts.srsWkt, service.pixels.noData), grid, service.pixels));
  }
  return parts;
}

// What is left of an area once a part is taken away: at most four rectangles.
void subtract(const Bounds& area, const Bounds& part, std::vector<Bounds>& rest) {
  if (!intersects(area, part)) {
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
                       const OutputGrid& grid) {
  const GdalScope scope;
  const NorthUpRaster model =
      openNorthUp(service.sources.front().file, service.facts.srsWkt, service.pixels.noData);
  const std::vector<Part> parts = partsOf(service, order, grid);
  DatasetPtr request = openRaster(definitionOf(*model.dataset, parts, grid));
  if (!request)
    throw RuntimeFailure("The image cannot be put together: " + scope.firstFailure("no reason known"));
  copyTexts(*model.dataset, *request);
  place(*request, service, grid);
  declareNoData(*request, model, parts, grid);
  return request;
}

}  // namespace vlclientui::client
