#include <cstdint>
#include <vector>

#include <cpl_string.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>

#include "Catalogue.h"
#include "GroundCover.h"
#include "TiffFile.h"

namespace vlclientui::samples {
namespace {

using Classes = std::vector<std::uint8_t>;

Classes classified(const Terrain& terrain) {
  Classes classes;
  classes.reserve(terrain.height.values.size());
  for (int y = 0; y < terrain.height.height; ++y) {
    for (int x = 0; x < terrain.height.width; ++x) {
      classes.push_back(static_cast<std::uint8_t>(coverAt(terrain, x, y).dominant()));
    }
  }
  return classes;
}

// Single cells that differ from all around are not mapped.
Classes generalised(const Classes& classes, int width, int height) {
  Classes out = classes;
  for (int y = 1; y + 1 < height; ++y) {
    for (int x = 1; x + 1 < width; ++x) {
      std::array<int, coverCount> votes{};
      for (int k = 0; k < 9; ++k)
        ++votes[classes[static_cast<std::size_t>((y + k / 3 - 1) * width + x + k % 3 - 1)]];
      const auto* const most = std::max_element(votes.begin(), votes.end());
      if (*most >= 5)
        out[static_cast<std::size_t>(y * width + x)] = static_cast<std::uint8_t>(most - votes.begin());
    }
  }
  return out;
}

void writePlan(const std::string& path, const Terrain& terrain) {
  const int width = terrain.height.width;
  const int height = terrain.height.height;
  TiffFile file(path, {width, height, 1, GDT_Byte, {}});
  file.place(west, north, terrain.cellSize, utmCode);
  file.write(1, generalised(generalised(classified(terrain), width, height), width, height));
  file.close();
}

void setPalette(GDALRasterBand& band) {
  GDALColorTable table(GPI_RGB);
  CPLStringList names;
  for (std::size_t i = 0; i < coverCount; ++i) {
    const CoverStyle& style = coverStyles()[i];
    const GDALColorEntry entry{style.color[0], style.color[1], style.color[2],
                               static_cast<short>(i == 0 ? 0 : 255)};
    table.SetColorEntry(static_cast<int>(i), &entry);
    names.AddString(std::string(style.name).c_str());
  }
  band.SetColorTable(&table);
  band.SetCategoryNames(names.List());
  band.SetNoDataValue(0);
}

// In degrees, about as fine as the plan is in meters.
DatasetPtr toGeographic(const std::string& plan) {
  const DatasetPtr source(GDALDataset::FromHandle(GDALOpen(plan.c_str(), GA_ReadOnly)));
  if (!source) throw SampleFailure(plan + " cannot be opened");
  CPLStringList words;
  for (const char* word :
       {"-of", "MEM", "-t_srs", "EPSG:4326", "-r", "near", "-tr", "0.0003", "0.0003", "-dstnodata", "0"}) {
    words.AddString(word);
  }
  GDALWarpAppOptions* options = GDALWarpAppOptionsNew(words.List(), nullptr);
  GDALDatasetH handle = GDALDataset::ToHandle(source.get());
  DatasetPtr warped(GDALDataset::FromHandle(GDALWarp("", nullptr, 1, &handle, options, nullptr)));
  GDALWarpAppOptionsFree(options);
  if (!warped) throw SampleFailure("the land cover cannot be warped");
  return warped;
}

Classes readAll(GDALDataset& dataset) {
  const int width = dataset.GetRasterXSize();
  const int height = dataset.GetRasterYSize();
  Classes classes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  if (dataset.GetRasterBand(1)->RasterIO(GF_Read, 0, 0, width, height, classes.data(), width, height,
                                         GDT_Byte, 0, 0, nullptr) != CE_None) {
    throw SampleFailure("the land cover cannot be read");
  }
  return classes;
}

void describeLandCover(TiffFile& file) {
  file.describe(
      {{"TITLE", "Land cover 2021"},
       {"TIFFTAG_IMAGEDESCRIPTION", "Arven Valley land cover, ten classes, minimum mapping unit 0.5 ha"},
       {"TIFFTAG_DATETIME", "2021:12:01 09:00:00"},
       {"AREA_OR_POINT", "Area"},
       {"REGION", "Arven Valley"},
       {"SOURCE", "Classification of the July 2021 scene"}});
}

}  // namespace

void writeLandCover(const std::filesystem::path& folder, const Terrain& terrain) {
  const std::filesystem::path plan = folder / "plan.tif";
  writePlan(plan.string(), terrain);
  const DatasetPtr warped = toGeographic(plan.string());
  std::array<double, 6> transform{};
  warped->GetGeoTransform(transform.data());
  TiffFile file((folder / "Land_Cover_2021.tif").string(),
                {warped->GetRasterXSize(), warped->GetRasterYSize(), 1, GDT_Byte, {"PHOTOMETRIC=PALETTE"}});
  file.place(transform[0], transform[3], transform[1], 4326);
  describeLandCover(file);
  setPalette(file.band(1));
  file.write(1, readAll(*warped));
  file.close();
  std::filesystem::remove(plan);
}

}  // namespace vlclientui::samples
