#include <cmath>
#include <cstdint>
#include <vector>

#include "Catalogue.h"
#include "GroundCover.h"
#include "TiffFile.h"

namespace vlclientui::samples {
namespace {

constexpr std::size_t bandCount = 6;
constexpr double scale = 10000;
// Steps finer than the sensor's noise would only fill the file.
constexpr double step = 10;

constexpr std::array<const char*, bandCount> bandNames = {
    "Blue", "Green", "Red", "Near infrared", "Short-wave infrared 1", "Short-wave infrared 2"};
constexpr std::array<const char*, bandCount> wavelengths = {"482", "561", "655", "865", "1609", "2201"};

// The swath of a scanner runs aslant over the map; beyond its edges there is nothing.
bool isInSwath(int x, int y, int width, int height) {
  const double slant = 0.09 * (static_cast<double>(y) - height);
  return x + slant > -0.045 * width && x + slant < 0.965 * width;
}

using Band = std::vector<std::uint16_t>;

std::vector<Band> scanned(const Terrain& terrain) {
  const int width = terrain.height.width;
  const int height = terrain.height.height;
  std::vector<Band> bands(bandCount, Band(terrain.height.values.size()));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (!isInSwath(x, y, width, height)) continue;
      const Spectrum seen = reflectanceAt(terrain, x, y, Season());
      for (std::size_t i = 0; i < bandCount; ++i) {
        bands[i][terrain.height.index(x, y)] =
            static_cast<std::uint16_t>(std::max(1.0, std::round(seen[i] * scale / step)) * step);
      }
    }
  }
  return bands;
}

void describeScene(TiffFile& file) {
  file.describe({{"TITLE", "Surface reflectance, 14 July 2021"},
                 {"TIFFTAG_IMAGEDESCRIPTION", "Arven Valley, six bands, surface reflectance times 10000"},
                 {"TIFFTAG_DATETIME", "2021:07:14 10:18:42"},
                 {"AREA_OR_POINT", "Area"},
                 {"REGION", "Arven Valley"},
                 {"SENSOR", "Six-band scanner (simulated)"},
                 {"SUN_AZIMUTH", "148"},
                 {"SUN_ELEVATION", "52"},
                 {"CLOUD_COVER", "0"}});
}

void describeBand(GDALRasterBand& band, std::size_t i) {
  band.SetDescription(bandNames[i]);
  band.SetMetadataItem("WAVELENGTH", wavelengths[i]);
  band.SetMetadataItem("WAVELENGTH_UNITS", "nm");
  band.SetNoDataValue(0);
  band.SetScale(1 / scale);
  band.SetUnitType("reflectance x 10000");
}

}  // namespace

void writeScene(const std::filesystem::path& folder, const Terrain& terrain) {
  const TiffLayout layout{terrain.height.width,
                          terrain.height.height,
                          static_cast<int>(bandCount),
                          GDT_UInt16,
                          {"PREDICTOR=2", "INTERLEAVE=BAND", "PHOTOMETRIC=MINISBLACK"}};
  TiffFile file((folder / "Scene_2021-07-14.tif").string(), layout);
  file.place(west, north, terrain.cellSize, utmCode);
  describeScene(file);
  const std::vector<Band> bands = scanned(terrain);
  for (std::size_t i = 0; i < bandCount; ++i) {
    const int number = static_cast<int>(i) + 1;
    describeBand(file.band(number), i);
    file.write(number, bands[i]);
  }
  file.close();
}

}  // namespace vlclientui::samples
