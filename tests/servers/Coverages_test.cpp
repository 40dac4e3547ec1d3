#include <cmath>
#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

#include "servers/MapServer.h"
#include "servers/RasterWindow.h"
#include "servers/WebAnswer.h"
#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

/// A coverage, the same raster on this machine, and how to ask for it.
struct Sample {
  std::string name;
  std::string path;  ///< below the samples; a folder of sources for a mosaic
  std::string format;
  GDALDataType type;
  PixelWindow window;
  int epsg = 32632;
};

std::ostream& operator<<(std::ostream& out, const Sample& sample) { return out << sample.name; }

const std::vector<Sample> samples = {
    {"Elevation.Shaded_Relief_30m",
     "Elevation/Shaded_Relief_30m.tif",
     "GEOTIFF_BYTE",
     GDT_Byte,
     {10, 700, 60, 40}},
    {"Elevation.Terrain_30m",
     "Elevation/Terrain_30m.tif",
     "GEOTIFF_INT16_NULL_-32768",
     GDT_Int16,
     {0, 0, 90, 30}},
    {"Imagery.Overlap_Study", "Imagery/Overlap_Study.sources", "GEOTIFF_BYTE", GDT_Byte, {50, 40, 120, 120}},
    {"Imagery.Valley.Ortho_Mosaic",
     "Imagery/Valley/Ortho_Mosaic.sources",
     "GEOTIFF_BYTE_NULL_0",
     GDT_Byte,
     {180, 170, 150, 150}},
    {"Imagery.Valley.Scene_2021-07-14",
     "Imagery/Valley/Scene_2021-07-14.tif",
     "GEOTIFF_FLOAT32_NULL_0",
     GDT_Float32,
     {301, 299, 17, 23}},
    {"Landcover.Land_Cover_2021",
     "Landcover/Land_Cover_2021.tif",
     "GEOTIFF_BYTE_NULL_0",
     GDT_Byte,
     {400, 500, 50, 60},
     4326},
    {"World.EGM96_Geoid", "World/EGM96_Geoid.tif", "GEOTIFF_FLOAT32", GDT_Float32, {700, 100, 40, 30}, 4326},
};

RasterContent local(const Sample& sample) {
  const bool isMosaic = std::filesystem::is_directory(samplesFolder() + "/" + sample.path);
  return readWindow(isMosaic ? joinedSources(sample.path) : samplesFolder() + "/" + sample.path,
                    sample.window);
}

class Coverages : public testing::TestWithParam<Sample> {};

std::string subset(const char* axis, double from, double to) {
  std::ostringstream text;
  text.precision(17);
  text << "&SUBSET=" << axis << "(" << from << "," << to << ")";
  return text.str();
}

std::string windowQuery(const Sample& sample, const std::array<double, 4>& extent) {
  const bool isGeographic = sample.epsg == 4326;
  return "?SERVICE=WCS&VERSION=2.0.1&REQUEST=GetCoverage&COVERAGEID=" + sample.name +
         "&FORMAT=" + sample.format + subset(isGeographic ? "long" : "x", extent[0], extent[2]) +
         subset(isGeographic ? "lat" : "y", extent[1], extent[3]);
}

// Of equally many values; one that is no number differs from every number without end.
double largestDifference(const std::vector<double>& some, const std::vector<double>& others) {
  double largest = 0;
  for (std::size_t i = 0; i < some.size(); ++i) {
    const double difference = std::abs(some[i] - others[i]);
    largest = std::isnan(difference) ? INFINITY : std::max(largest, difference);
  }
  return largest;
}

void expectEqual(const RasterContent& fetched, const RasterContent& here, double tolerance) {
  ASSERT_EQ(fetched.width, here.width);
  ASSERT_EQ(fetched.height, here.height);
  ASSERT_EQ(fetched.bands, here.bands);
  EXPECT_LE(largestDifference(fetched.values, here.values), tolerance);
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(fetched.extent[i], here.extent[i], 1e-7);
}

TEST_P(Coverages, OfMapServerHaveThePixelsOfTheRasterOnThisMachine) {
  const RasterContent here = local(GetParam());
  const WebAnswer answer =
      fetchPlainly(MapServer::shared().coverages() + windowQuery(GetParam(), here.extent));
  ASSERT_EQ(answer.status, 200) << answer.body;
  EXPECT_EQ(answer.type, "image/tiff");
  const RasterContent fetched = readFetched(answer.body);
  expectEqual(fetched, here, 0);
  EXPECT_EQ(fetched.type, GetParam().type);
}

// This engine gives out what the stored values mean.
RasterContent scaled(RasterContent raster) {
  for (double& value : raster.values) value *= raster.scale;
  return raster;
}

std::string oldQuery(const Sample& sample, const std::array<double, 4>& extent) {
  std::ostringstream text;
  text.precision(17);
  text << "?SERVICE=WCS&VERSION=1.0.0&REQUEST=GetCoverage&FORMAT=GTiff&COVERAGE=" << sample.name
       << "&CRS=EPSG:" << sample.epsg << "&BBOX=" << extent[0] << "," << extent[1] << "," << extent[2] << ","
       << extent[3] << "&WIDTH=" << sample.window.width << "&HEIGHT=" << sample.window.height;
  return text.str();
}

// All in one test, since this server takes long to start.
TEST(QgisCoverages, HaveThePixelsOfTheRasterOnThisMachine) {
  if (!QgisServer::missing().empty()) GTEST_SKIP() << QgisServer::missing();
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.name);
    const RasterContent here = local(sample);
    const WebAnswer answer = fetchPlainly(QgisServer::shared().coverages() + oldQuery(sample, here.extent));
    ASSERT_EQ(answer.status, 200) << answer.body;
    expectEqual(readFetched(answer.body), scaled(here), here.scale == 1 ? 0 : 1e-6);
  }
}

std::string nameOf(const testing::TestParamInfo<Sample>& info) {
  std::string name;
  for (const char each : info.param.name) {
    if (std::isalnum(static_cast<unsigned char>(each)) != 0) name += each;
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Samples, Coverages, testing::ValuesIn(samples), nameOf);

}  // namespace
}  // namespace vlclientui::test
