#include "Coverage.h"

#include <algorithm>
#include <cmath>

#include <cpl_error.h>
#include <cpl_minixml.h>
#include <ogr_spatialref.h>

#include "../TiffFile.h"

namespace vlclientui::samples {
namespace {

namespace fs = std::filesystem;

constexpr const char* sourcesSuffix = ".sources";
constexpr const char* definitionSuffix = ".VLDef";

std::string itemOf(GDALDataset& raster, const char* name) {
  const char* text = raster.GetMetadataItem(name);
  return text == nullptr ? "" : text;
}

DatasetPtr opened(const fs::path& file) {
  DatasetPtr raster(GDALDataset::Open(file.c_str(), GDAL_OF_RASTER | GDAL_OF_VERBOSE_ERROR));
  if (!raster) throw SampleFailure(file.string() + ": " + CPLGetLastErrorMsg());
  return raster;
}

std::string dotted(const fs::path& path) {
  std::string name = path.generic_string();
  std::ranges::replace(name, '/', '.');
  return name;
}

void place(Coverage& coverage, GDALDataset& raster) {
  std::array<double, 6> grid{};
  raster.GetGeoTransform(grid.data());
  coverage.width = raster.GetRasterXSize();
  coverage.height = raster.GetRasterYSize();
  coverage.cellSize = grid[1];
  coverage.extent = {grid[0], grid[3] + grid[5] * coverage.height, grid[0] + grid[1] * coverage.width,
                     grid[3]};
  const OGRSpatialReference* system = raster.GetSpatialRef();
  const char* code = system == nullptr ? nullptr : system->GetAuthorityCode(nullptr);
  if (code == nullptr) throw SampleFailure(coverage.name + " is in no system that has a number");
  coverage.epsg = std::stoi(code);
}

void tellBands(Coverage& coverage, GDALDataset& raster) {
  const bool hasColors = raster.GetRasterCount() == 3;
  GDALRasterBand& first = *raster.GetRasterBand(1);
  coverage.type = first.GetRasterDataType();
  coverage.isPicture = hasColors && coverage.type == GDT_Byte;
  for (int number = 1; number <= raster.GetRasterCount(); ++number) {
    GDALRasterBand& band = *raster.GetRasterBand(number);
    const std::string name = band.GetDescription();
    const std::string color = GDALGetColorInterpretationName(band.GetColorInterpretation());
    coverage.bands.push_back(!name.empty() ? name : hasColors ? color : "Band" + std::to_string(number));
    std::ranges::replace(coverage.bands.back(), ' ', '_');
  }
  int has = 0;
  const double value = first.GetNoDataValue(&has);
  if (has != 0) coverage.noData = value;
}

void describe(Coverage& coverage, GDALDataset& raster) {
  coverage.title = itemOf(raster, "TITLE");
  coverage.description = itemOf(raster, "TIFFTAG_IMAGEDESCRIPTION");
  for (const char* name : {"REGION", "SENSOR", "SOURCE"}) {
    const std::string text = itemOf(raster, name);
    if (!text.empty()) coverage.keywords.push_back(text);
  }
}

Coverage readRaster(const fs::path& catalogue, const fs::path& file) {
  Coverage coverage;
  fs::path name = fs::relative(file, catalogue);
  coverage.files = {name.generic_string()};
  coverage.name = dotted(name.replace_extension());
  const DatasetPtr raster = opened(file);
  place(coverage, *raster);
  tellBands(coverage, *raster);
  describe(coverage, *raster);
  return coverage;
}

void join(Coverage& mosaic, const Coverage& source) {
  mosaic.files.push_back(source.files.front());
  const auto [west, south, east, north] = source.extent;
  mosaic.extent = {std::min(mosaic.extent[0], west), std::min(mosaic.extent[1], south),
                   std::max(mosaic.extent[2], east), std::max(mosaic.extent[3], north)};
}

// Title and keywords stand in the definition beside the folder of sources.
void describeMosaic(Coverage& mosaic, const fs::path& definition) {
  CPLXMLTreeCloser document(CPLParseXMLFile(definition.c_str()));
  const CPLXMLNode* told = CPLGetXMLNode(document.get(), "=Vorlane.MosaicDefinition");
  if (told == nullptr) throw SampleFailure(definition.string() + " is no definition of a mosaic");
  mosaic.title = CPLGetXMLValue(told, "Title", mosaic.name.c_str());
  mosaic.description = mosaic.title + ", joined from " + std::to_string(mosaic.files.size()) + " rasters";
  mosaic.keywords = {CPLGetXMLValue(told, "Region", ""), CPLGetXMLValue(told, "PixelSource", "")};
}

std::vector<fs::path> rastersIn(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".tif") files.push_back(entry.path());
  }
  std::ranges::sort(files);
  if (files.empty()) throw SampleFailure(folder.string() + " has no raster");
  return files;
}

Coverage readMosaic(const fs::path& catalogue, const fs::path& folder) {
  const std::vector<fs::path> files = rastersIn(folder);
  Coverage mosaic = readRaster(catalogue, files.front());
  for (std::size_t i = 1; i < files.size(); ++i) join(mosaic, readRaster(catalogue, files[i]));
  mosaic.width = static_cast<int>(std::lround((mosaic.extent[2] - mosaic.extent[0]) / mosaic.cellSize));
  mosaic.height = static_cast<int>(std::lround((mosaic.extent[3] - mosaic.extent[1]) / mosaic.cellSize));
  fs::path place = folder;
  mosaic.name = dotted(fs::relative(place.replace_extension(), catalogue));
  describeMosaic(mosaic, place.replace_extension(definitionSuffix));
  return mosaic;
}

}  // namespace

std::vector<Coverage> readCoverages(const fs::path& catalogue) {
  std::vector<Coverage> coverages;
  for (auto entry = fs::recursive_directory_iterator(catalogue); entry != fs::end(entry); ++entry) {
    const fs::path& path = entry->path();
    if (entry->is_directory() && path.extension() == sourcesSuffix) {
      coverages.push_back(readMosaic(catalogue, path));
      entry.disable_recursion_pending();
    } else if (path.extension() == ".tif") {
      coverages.push_back(readRaster(catalogue, path));
    }
  }
  std::ranges::sort(coverages, {}, &Coverage::name);
  return coverages;
}

}  // namespace vlclientui::samples
