#include <cmath>
#include <cstdint>
#include <vector>

#include "Catalogue.h"
#include "TiffFile.h"

namespace vlclientui::samples {
namespace {

constexpr double noElevation = -32768;

Metadata about(const std::string& title, const std::string& description) {
  return {{"TITLE", title},
          {"TIFFTAG_IMAGEDESCRIPTION", description},
          {"TIFFTAG_DATETIME", "2021:09:30 12:00:00"},
          {"TIFFTAG_SOFTWARE", "vl_make_samples"},
          {"AREA_OR_POINT", "Area"},
          {"REGION", "Arven Valley"}};
}

std::vector<std::int16_t> wholeMeters(const Grid& heights) {
  std::vector<std::int16_t> values;
  values.reserve(heights.values.size());
  for (const float height : heights.values) values.push_back(static_cast<std::int16_t>(std::lround(height)));
  return values;
}

std::vector<std::uint8_t> shades(const Terrain& terrain) {
  std::vector<std::uint8_t> values;
  for (int y = 0; y < terrain.height.height; ++y) {
    for (int x = 0; x < terrain.height.width; ++x) {
      const double light = sunlight(gradientAt(terrain, x, y), 315, 45);
      values.push_back(static_cast<std::uint8_t>(std::lround(20 + 234 * std::min(light, 1.0))));
    }
  }
  return values;
}

}  // namespace

void writeElevation(const std::filesystem::path& folder, const Terrain& terrain) {
  const TiffLayout layout{terrain.height.width, terrain.height.height, 1, GDT_Int16, {"PREDICTOR=2"}};
  TiffFile file((folder / "Terrain_30m.tif").string(), layout);
  file.place(west, north, terrain.cellSize, utmCode);
  Metadata items =
      about("Terrain model, 30 m", "Arven Valley terrain model, bare ground, heights above the ellipsoid");
  items.emplace_back("SOURCE", "Airborne laser scanning (simulated)");
  file.describe(items);
  file.band(1).SetNoDataValue(noElevation);
  file.band(1).SetDescription("Elevation");
  file.band(1).SetUnitType("m");
  file.write(1, wholeMeters(terrain.height));
  file.addOverviews("AVERAGE");
  file.close();
}

void writeRelief(const std::filesystem::path& folder, const Terrain& terrain) {
  const TiffLayout layout{terrain.height.width, terrain.height.height, 1, GDT_Byte, {"PREDICTOR=2"}};
  TiffFile file((folder / "Shaded_Relief_30m.tif").string(), layout);
  file.place(west, north, terrain.cellSize, utmCode);
  Metadata items =
      about("Shaded relief, 30 m", "Arven Valley shaded relief, light from the north-west at 45 degrees");
  items.emplace_back("SOURCE", "Terrain model, 30 m");
  file.describe(items);
  file.band(1).SetDescription("Illumination");
  file.write(1, shades(terrain));
  file.close();
}

}  // namespace vlclientui::samples
