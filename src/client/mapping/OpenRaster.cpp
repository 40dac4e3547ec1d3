#include "client/mapping/OpenRaster.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <ogr_spatialref.h>

#include "client/raster/Subdatasets.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

GDALDataset* readerOfAll(const std::vector<GDALRasterBand*>& bands) {
  GDALDataset* dataset = bands.front()->GetDataset();
  if (dataset == nullptr || dataset->GetRasterCount() != static_cast<int>(bands.size())) return nullptr;
  for (std::size_t i = 0; i < bands.size(); ++i) {
    if (dataset->GetRasterBand(static_cast<int>(i) + 1) != bands[i]) return nullptr;
  }
  return dataset;
}

bool isAlike(GDALRasterBand& one, GDALRasterBand& other) {
  return one.GetXSize() == other.GetXSize() && one.GetYSize() == other.GetYSize();
}

// Empty unless all bands have an overview of one size, and a mask of its own has one too.
std::vector<GDALRasterBand*> overviewOf(const RasterLevel& full, int number, bool hasOwnMask) {
  std::vector<GDALRasterBand*> found;
  for (GDALRasterBand* band : full.bands) {
    GDALRasterBand* overview = number < band->GetOverviewCount() ? band->GetOverview(number) : nullptr;
    if (overview == nullptr || (!found.empty() && !isAlike(*overview, *found.front()))) return {};
    found.push_back(overview);
  }
  if (hasOwnMask && (found.front()->GetMaskFlags() & GMF_ALL_VALID) != 0) return {};
  return found;
}

void addLevels(OpenRaster& raster) {
  std::vector<GDALRasterBand*> bands;
  for (int number = 1; number <= raster.dataset->GetRasterCount(); ++number) {
    bands.push_back(raster.dataset->GetRasterBand(number));
  }
  const int count = bands.front()->GetOverviewCount();
  raster.levels.push_back(levelOf(raster, std::move(bands)));
  for (int number = 0; number < count; ++number) {
    auto overview = overviewOf(raster.levels.front(), number, raster.hasOwnMask);
    if (!overview.empty()) raster.levels.push_back(levelOf(raster, std::move(overview)));
  }
  std::ranges::stable_sort(raster.levels, {}, &RasterLevel::across);
}

std::string toldSystem(GDALDataset& dataset, bool isPlacedByPoints) {
  const OGRSpatialReference* system = isPlacedByPoints ? dataset.GetGCPSpatialRef() : dataset.GetSpatialRef();
  return system == nullptr || system->IsEmpty() ? std::string() : wktOf(*system);
}

// What its coordinates are, and whether they are its own.
void placeRaster(OpenRaster& raster, const KnownSystem& known) {
  GDALDataset& dataset = *raster.dataset;
  const bool isPlaced = readGeoTransform(dataset, raster.transform);
  if (!isPlaced) raster.transform = {0, 1, 0, static_cast<double>(raster.rows), 0, -1};
  raster.isPlacedByPoints = !isPlaced && dataset.GetGCPCount() > 2;
  const bool isAsBefore =
      isPlaced && known.toldAt == envelopeOf(raster.transform, raster.columns, raster.rows);
  if (!isAsBefore) raster.wkt = toldSystem(dataset, raster.isPlacedByPoints);
  if (raster.wkt.empty()) raster.wkt = known.wkt;
  OGRSpatialReference told;
  raster.isInDegrees = !raster.wkt.empty() && told.importFromWkt(raster.wkt.c_str()) == OGRERR_NONE &&
                       told.IsGeographic() != 0;
}

double opaqueValueOf(GDALDataType type) {
  if (type == GDT_UInt16) return std::numeric_limits<std::uint16_t>::max();
  return type == GDT_Int16 ? std::numeric_limits<std::int16_t>::max() : 255;
}

}  // namespace

RasterLevel levelOf(const OpenRaster& raster, std::vector<GDALRasterBand*> bands) {
  RasterLevel level;
  level.columns = bands.front()->GetXSize();
  level.rows = bands.front()->GetYSize();
  level.across = static_cast<double>(raster.columns) / level.columns;
  level.down = static_cast<double>(raster.rows) / level.rows;
  bands.front()->GetBlockSize(&level.blockWidth, &level.blockHeight);
  level.together = readerOfAll(bands);
  level.bands = std::move(bands);
  return level;
}

std::unique_ptr<OpenRaster> preparedForMap(DatasetPtr dataset, const KnownSystem& known,
                                           std::optional<double> noData) {
  if (!dataset || dataset->GetRasterCount() == 0) return nullptr;
  auto raster = std::make_unique<OpenRaster>();
  raster->columns = dataset->GetRasterXSize();
  raster->rows = dataset->GetRasterYSize();
  raster->colors = colorBandsOf(*dataset);
  raster->alpha = alphaBandOf(*dataset);
  if (raster->alpha != 0) {
    raster->opaque = opaqueValueOf(dataset->GetRasterBand(raster->alpha)->GetRasterDataType());
  }
  raster->hasOwnMask = hasMaskOfItsOwn(*dataset);
  raster->noData = noDataOf(*dataset, noData);
  GDALRasterBand& band = *dataset->GetRasterBand(1);
  raster->palette = band.GetColorTable();
  raster->isLabel = raster->palette != nullptr || GDALDataTypeIsComplex(band.GetRasterDataType()) != 0;
  raster->dataset = std::move(dataset);
  addLevels(*raster);
  placeRaster(*raster, known);
  return raster;
}

std::unique_ptr<OpenRaster> openForMap(const std::filesystem::path& file, const KnownSystem& known,
                                       std::optional<double> noData) {
  return preparedForMap(openRasterAt(file), known, noData);
}

}  // namespace vlclientui::client
