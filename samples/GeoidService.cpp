#include <filesystem>
#include <string>
#include <vector>

#include <cpl_string.h>
#include <ogr_srs_api.h>

#include "Catalogue.h"
#include "TiffFile.h"

namespace vlclientui::samples {
namespace {

constexpr const char* givenGrid = "egm96_15.gtx";

// The projection library says itself where it keeps its grids.
std::filesystem::path gridFile() {
  const CPLStringList folders(OSRGetPROJSearchPaths());
  for (int i = 0; i < folders.size(); ++i) {
    const std::filesystem::path file = std::filesystem::path(folders[i]) / givenGrid;
    if (std::filesystem::exists(file)) return file;
  }
  throw SampleFailure(std::string("the geoid grid ") + givenGrid + " is not installed (package proj-data)");
}

}  // namespace

void writeGeoid(const std::filesystem::path& folder) {
  const DatasetPtr grid(GDALDataset::FromHandle(GDALOpen(gridFile().string().c_str(), GA_ReadOnly)));
  if (!grid) throw SampleFailure("the geoid grid cannot be opened");
  const int width = grid->GetRasterXSize();
  const int height = grid->GetRasterYSize();
  std::array<double, 6> transform{};
  grid->GetGeoTransform(transform.data());
  std::vector<float> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  if (grid->GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, values.data(), width, height,
                                       GDT_Float32, 0, 0, nullptr) != CE_None) {
    throw SampleFailure("the geoid grid cannot be read");
  }
  TiffFile file((folder / "EGM96_Geoid.tif").string(), {width, height, 1, GDT_Float32, {"PREDICTOR=3"}});
  file.place(transform[0], transform[3], transform[1], 4326);
  file.describe({{"TITLE", "EGM96 geoid undulation (15')"},
                 {"TIFFTAG_IMAGEDESCRIPTION",
                  "Height of the geoid above the WGS 84 ellipsoid, Earth Gravitational Model 1996"},
                 {"TIFFTAG_COPYRIGHT", "Public domain"},
                 {"AREA_OR_POINT", "Point"},
                 {"REGION", "World"},
                 {"SOURCE", "Earth Gravitational Model 1996"}});
  file.band(1).SetDescription("Geoid undulation");
  file.band(1).SetUnitType("m");
  file.write(1, values);
  file.close();
}

}  // namespace vlclientui::samples
