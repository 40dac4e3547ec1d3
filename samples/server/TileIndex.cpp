#include "TileIndex.h"

#include <cpl_error.h>
#include <ogrsf_frmts.h>

#include "../TiffFile.h"

namespace vlclientui::samples {
namespace {

namespace fs = std::filesystem;

constexpr int longestPath = 250;

[[noreturn]] void fail(const fs::path& path) {
  throw SampleFailure(path.string() + ": " + CPLGetLastErrorMsg());
}

OGRPolygon outline(const fs::path& file) {
  const DatasetPtr raster(GDALDataset::Open(file.c_str(), GDAL_OF_RASTER));
  std::array<double, 6> grid{};
  if (!raster || raster->GetGeoTransform(grid.data()) != CE_None) fail(file);
  const double east = grid[0] + grid[1] * raster->GetRasterXSize();
  const double south = grid[3] + grid[5] * raster->GetRasterYSize();
  OGRLinearRing ring;
  ring.addPoint(grid[0], grid[3]);
  ring.addPoint(east, grid[3]);
  ring.addPoint(east, south);
  ring.addPoint(grid[0], south);
  ring.closeRings();
  OGRPolygon polygon;
  polygon.addRing(&ring);
  return polygon;
}

void addRow(OGRLayer& layer, const fs::path& catalogue, const std::string& file) {
  OGRFeature row(layer.GetLayerDefn());
  const OGRPolygon shape = outline(catalogue / file);
  row.SetField(tileItem, file.c_str());
  row.SetGeometry(&shape);
  if (layer.CreateFeature(&row) != OGRERR_NONE) fail(file);
}

}  // namespace

void writeTileIndex(const fs::path& path, const fs::path& catalogue, const Coverage& mosaic) {
  GDALDriver* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
  if (driver == nullptr) throw SampleFailure("there is no driver of shape files");
  const DatasetPtr file(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
  if (!file) fail(path);
  OGRLayer* layer = file->CreateLayer(path.stem().c_str(), nullptr, wkbPolygon);
  if (layer == nullptr) fail(path);
  OGRFieldDefn field(tileItem, OFTString);
  field.SetWidth(longestPath);
  if (layer->CreateField(&field) != OGRERR_NONE) fail(path);
  for (const std::string& each : mosaic.files) addRow(*layer, catalogue, each);
}

}  // namespace vlclientui::samples
