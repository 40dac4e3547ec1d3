// Coverages of a real server beside the same rasters read from their files.
#include <algorithm>
#include <cmath>
#include <filesystem>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/network/CoverageRaster.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "contracts/Silence.h"
#include "servers/MapServer.h"
#include "support/TestFolders.h"

namespace vlclientui::client::network {
namespace {

using vlclientui::test::MapServer;
using vlclientui::test::QgisServer;

struct Sample {
  std::string id;    ///< of the coverage
  std::string file;  ///< below the sample catalogue
};

const std::vector<Sample> samples = {
    {"Elevation.Terrain_30m", "Elevation/Terrain_30m.tif"},
    {"Imagery.Valley.Scene_2021-07-14", "Imagery/Valley/Scene_2021-07-14.tif"},
    {"Landcover.Land_Cover_2021", "Landcover/Land_Cover_2021.tif"},
    {"World.EGM96_Geoid", "World/EGM96_Geoid.tif"},
};

std::vector<double> valuesOf(GDALDataset& raster, int band, int x, int y, int width, int height) {
  std::vector<double> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  EXPECT_EQ(raster.GetRasterBand(band)->RasterIO(GF_Read, x, y, width, height, values.data(), width, height,
                                                 GDT_Float64, 0, 0, nullptr),
            CE_None);
  // Servers fill holes with a value of their own.
  int has = FALSE;
  const double noData = raster.GetRasterBand(band)->GetNoDataValue(&has);
  if (has != FALSE) std::ranges::replace(values, noData, -1e9);
  return values;
}

class Coverages : public testing::Test {
 protected:
  Coverages() { registerCoverageRasters(); }

  DatasetPtr remote(const std::string& id,
                    const std::string& address = MapServer::shared().coverages()) const {
    const GdalScope scope;
    DatasetPtr raster = openRaster(coverageRasterName(address, id));
    EXPECT_TRUE(raster) << scope.firstFailure("");
    return raster;
  }
  static DatasetPtr local(const std::string& file) {
    const GdalScope scope;
    DatasetPtr raster = openRaster((std::filesystem::path(samplesFolder()) / file).string());
    EXPECT_TRUE(raster) << scope.firstFailure("");
    return raster;
  }
  /// @param pixels how far the places may lie apart.
  static void expectSamePlace(GDALDataset& one, GDALDataset& other, double pixels = 1e-6) {
    GeoTransform here{};
    GeoTransform there{};
    ASSERT_TRUE(readGeoTransform(one, here));
    ASSERT_TRUE(readGeoTransform(other, there));
    for (std::size_t i = 0; i < here.size(); ++i)
      EXPECT_NEAR(here.at(i), there.at(i), pixels * std::abs(there[1]));
    ASSERT_NE(one.GetSpatialRef(), nullptr);
    EXPECT_TRUE(one.GetSpatialRef()->IsSame(other.GetSpatialRef()));
  }
};

TEST_F(Coverages, LieWhereTheirRastersLieAndHaveTheirSize) {
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.id);
    const auto there = remote(sample.id);
    const auto here = local(sample.file);
    ASSERT_TRUE(there && here);
    EXPECT_EQ(there->GetRasterXSize(), here->GetRasterXSize());
    EXPECT_EQ(there->GetRasterYSize(), here->GetRasterYSize());
    EXPECT_EQ(there->GetRasterCount(), here->GetRasterCount());
    expectSamePlace(*there, *here);
  }
}

TEST_F(Coverages, HaveTheSamePixelsEverywhere) {
  for (const Sample& sample : samples) {
    SCOPED_TRACE(sample.id);
    const auto there = remote(sample.id);
    const auto here = local(sample.file);
    ASSERT_TRUE(there && here);
    const int width = here->GetRasterXSize();
    const int height = here->GetRasterYSize();
    for (int band = 1; band <= here->GetRasterCount(); ++band) {
      EXPECT_EQ(valuesOf(*there, band, 0, 0, width, height), valuesOf(*here, band, 0, 0, width, height))
          << band;
    }
  }
}

TEST_F(Coverages, HaveTheSamePixelsInAnyWindow) {
  const auto there = remote("World.EGM96_Geoid");
  const auto here = local("World/EGM96_Geoid.tif");
  ASSERT_TRUE(there && here);
  const std::vector<std::array<int, 4>> windows = {{0, 0, 1, 1},        {1439, 720, 1, 1}, {255, 255, 2, 2},
                                                   {1400, 700, 40, 21}, {0, 720, 1440, 1}, {3, 5, 700, 300}};
  for (const auto& [x, y, width, height] : windows) {
    EXPECT_EQ(valuesOf(*there, 1, x, y, width, height), valuesOf(*here, 1, x, y, width, height))
        << x << ' ' << y;
  }
}

TEST_F(Coverages, KeepTheTypeOfTheirPixels) {
  EXPECT_EQ(remote("Elevation.Terrain_30m")->GetRasterBand(1)->GetRasterDataType(), GDT_Int16);
  EXPECT_EQ(remote("World.EGM96_Geoid")->GetRasterBand(1)->GetRasterDataType(), GDT_Float32);
  EXPECT_EQ(remote("Landcover.Land_Cover_2021")->GetRasterBand(1)->GetRasterDataType(), GDT_Byte);
}

TEST_F(Coverages, HaveReductionsWhosePixelsStandForWholeSquares) {
  const auto there = remote("World.EGM96_Geoid");
  ASSERT_TRUE(there);
  GDALRasterBand* band = there->GetRasterBand(1);
  ASSERT_GE(band->GetOverviewCount(), 2);
  GDALRasterBand* half = band->GetOverview(0);
  ASSERT_NE(half, nullptr);
  EXPECT_EQ(half->GetXSize(), 720);
  EXPECT_EQ(half->GetYSize(), 361);
  EXPECT_EQ(band->GetOverview(-1), nullptr);
  EXPECT_EQ(band->GetOverview(99), nullptr);
  const auto full = valuesOf(*there, 1, 0, 0, 1440, 721);
  const auto reduced = valuesOf(*half->GetDataset(), 1, 0, 0, 720, 361);
  for (int y = 0; y < 360; ++y) {
    for (int x = 0; x < 720; ++x) {
      const double value = reduced[static_cast<std::size_t>(y * 720 + x)];
      const auto at = [&](int column, int row) {
        return full[static_cast<std::size_t>(row * 1440 + column)];
      };
      const bool isOfItsSquare = value == at(2 * x, 2 * y) || value == at(2 * x + 1, 2 * y) ||
                                 value == at(2 * x, 2 * y + 1) || value == at(2 * x + 1, 2 * y + 1);
      ASSERT_TRUE(isOfItsSquare) << x << ' ' << y;
    }
  }
}

TEST_F(Coverages, AreToldWhyTheyCannotBeOpened) {
  const GdalScope scope;
  EXPECT_FALSE(openRaster(coverageRasterName(MapServer::shared().coverages(), "nothing")));
  EXPECT_NE(scope.firstFailure("").find("nothing"), std::string::npos) << scope.firstFailure("");
}

TEST_F(Coverages, HaveNamesThatLeadBack) {
  const std::string name = coverageRasterName("http://h:1/a b?map=/x/y.map", "A/b:c");
  EXPECT_EQ(coverageOfRasterName(name),
            std::pair(std::string("http://h:1/a b?map=/x/y.map"), std::string("A/b:c")));
  EXPECT_EQ(name.find("//", 1), std::string::npos);
  EXPECT_EQ(shownRasterPlace(coverageRasterName("http://h/wcs?token=abc", "A")), "http://h/wcs?token=*** A");
  EXPECT_EQ(shownRasterPlace("/data/a.tif"), "/data/a.tif");
  EXPECT_FALSE(coverageOfRasterName("/data/a.tif"));
  EXPECT_FALSE(coverageOfRasterName("/vsivlcoverage/http"));
  EXPECT_FALSE(coverageOfRasterName("/vsivlcoverage/http/"));
}

std::vector<std::string> namesOf(const std::optional<CatalogueContent>& content) {
  std::vector<std::string> names;
  if (!content) return names;
  for (const ServiceRecord& service : content->services) names.push_back(service.name);
  return names;
}

class CoverageServersTest : public testing::Test {
 protected:
  NetworkAccess access_;
  CoverageServers servers_{access_};
  std::string host_ = MapServer::shared().address().substr(7);
};

TEST_F(CoverageServersTest, AreListedByAddressAndByHostAlone) {
  const auto byAddress = namesOf(servers_.list(MapServer::shared().coverages()));
  ASSERT_FALSE(byAddress.empty());
  EXPECT_EQ(byAddress.front(), "Elevation/Shaded_Relief_30m");
  EXPECT_EQ(namesOf(servers_.list(" " + host_ + " ")), byAddress);
  EXPECT_EQ(namesOf(servers_.list(MapServer::shared().address())), byAddress);
  EXPECT_EQ(namesOf(servers_.list(MapServer::shared().usualPlace())), byAddress);
}

TEST_F(CoverageServersTest, TellWhatTheirRastersAre) {
  const auto content = servers_.list(MapServer::shared().coverages());
  ASSERT_TRUE(content);
  const auto found = std::ranges::find(content->services, "World/EGM96_Geoid", &ServiceRecord::name);
  ASSERT_NE(found, content->services.end());
  EXPECT_FALSE(found->facts.title.empty());
  EXPECT_EQ(found->facts.columns, 1440);
  EXPECT_EQ(found->facts.rows, 721);
  EXPECT_EQ(found->facts.srsId, "EPSG:4326");
  EXPECT_EQ(found->facts.envelope, (Bounds{-180.125, -90.125, 179.875, 90.125}));
  EXPECT_TRUE(found->facts.geographicEnvelope);
  EXPECT_EQ(found->facts.bandCount, 1);
}

TEST_F(CoverageServersTest, AreFoundAgainByReferencesWithPathsAndQueries) {
  for (const std::string& server : {MapServer::shared().coverages(), MapServer::shared().usualPlace(), host_,
                                    MapServer::shared().address()}) {
    SCOPED_TRACE(server);
    CoverageServers afterRestart(access_);
    const auto found = afterRestart.find(server + "/Elevation/Terrain_30m");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "Elevation/Terrain_30m");
    EXPECT_EQ(coverageOfRasterName(found->file.string())->second, "Elevation.Terrain_30m");
    EXPECT_TRUE(afterRestart.find(server + "/Elevation.Terrain_30m")) << "by its own name";
    EXPECT_FALSE(afterRestart.find(server + "/Elevation/Nothing"));
  }
}

TEST_F(CoverageServersTest, TellNoReasonsForWhatTheyTryOnTheWay) {
  std::vector<std::string> told;
  const SilenceListener listener([&](const SilentEnd& end) { told.push_back(end.reason); });
  EXPECT_TRUE(servers_.find(MapServer::shared().coverages() + "/Elevation/Terrain_30m"));
  EXPECT_FALSE(servers_.list("two words"));
  EXPECT_EQ(told, std::vector<std::string>());
}

TEST_F(CoverageServersTest, TellWhatIsWrongWithAnAddress) {
  std::vector<std::string> told;
  const SilenceListener listener([&](const SilentEnd& end) { told.push_back(end.reason); });
  for (const std::string text : {"127.0.0.1:99999", "http://", "/no/folder", "Z:\\data"})
    EXPECT_FALSE(servers_.list(text)) << text;
  EXPECT_EQ(told,
            (std::vector<std::string>{"the server '127.0.0.1:99999' does not answer: there is no port 99999",
                                      "the server 'http://' does not answer: the address names no host"}));
}

TEST_F(CoverageServersTest, AreSilentWhereNoneAnswers) {
  EXPECT_FALSE(servers_.list("http://127.0.0.1:9/wcs"));
  EXPECT_FALSE(servers_.list("127.0.0.1:9"));
  EXPECT_FALSE(servers_.list(MapServer::shared().address() + "/nothing/here"));
  EXPECT_FALSE(servers_.list("/no/folder"));
  EXPECT_FALSE(servers_.find("/no/folder/name"));
  EXPECT_FALSE(servers_.find("http://127.0.0.1:9/wcs/name"));
}

TEST_F(Coverages, ComeFromASecondEngineAsWell) {
  if (const std::string reason = QgisServer::missing(); !reason.empty()) GTEST_SKIP() << reason;
  NetworkAccess access;
  CoverageServers servers(access);
  const auto content = servers.list(QgisServer::shared().coverages());
  ASSERT_TRUE(content);
  ASSERT_FALSE(content->services.empty());
  std::size_t compared = 0;
  for (const ServiceRecord& service : content->services) {
    SCOPED_TRACE(service.name);
    const auto coverage = coverageOfRasterName(service.entry.file.string());
    ASSERT_TRUE(coverage);
    const auto there = remote(coverage->second, coverage->first);
    ASSERT_TRUE(there);
    for (const Sample& sample : samples) {
      const std::string leaf = std::filesystem::path(sample.file).stem().string();
      if (service.name.find(leaf) == std::string::npos) continue;
      const auto here = local(sample.file);
      ASSERT_EQ(there->GetRasterXSize(), here->GetRasterXSize());
      ASSERT_EQ(there->GetRasterYSize(), here->GetRasterYSize());
      constexpr double sixDigits = 0.01;  // of a degree, as this server rounds
      expectSamePlace(*there, *here, sixDigits);
      const bool areScaled = leaf.starts_with("Scene");  // to reflectances, by this server
      if (areScaled) continue;
      EXPECT_EQ(valuesOf(*there, 1, 100, 100, 300, 200), valuesOf(*here, 1, 100, 100, 300, 200));
      ++compared;
    }
  }
  EXPECT_GT(compared, 0U);
}

}  // namespace
}  // namespace vlclientui::client::network
