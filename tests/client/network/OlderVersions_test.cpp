// Older versions of the coverage service, spoken with a real server, and one that is secured.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>

#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>

#include "client/network/CoverageAnswers.h"
#include "client/network/CoverageRaster.h"
#include "client/network/CoverageRequests.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "client/raster/GdalScope.h"
#include "contracts/Silence.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "servers/OfferedRaster.h"
#include "servers/RasterWindow.h"
#include "servers/WebAnswer.h"

namespace vlclientui::client::network {
namespace {

using test::MapServer;
using test::OfferedRaster;

/// Rasters without holes, so that all values can be compared, on a MapServer of the test.
class OlderServer : public platform::TemporaryFolder {
 protected:
  OlderServer() {
    registerCoverageRasters();
    NetworkAccess::shared().forget();
    offered_ = {made("Heights", GDT_Int16, 32632, {500000, 4990000, 503000, 4992000}, 300, 200, "INT16"),
                made("Degrees", GDT_Float32, 4326, {7, 46, 8, 46.5}, 400, 200, "FLOAT32")};
  }

  [[nodiscard]] OfferedRaster made(const std::string& name, GDALDataType type, int epsg,
                                   const std::array<double, 4>& extent, int width, int height,
                                   const std::string& mode) const {
    const GdalScope scope;
    const std::string file = path(name + ".tif");
    const DatasetPtr raster(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
        file.c_str(), width, height, 1, type, nullptr));
    std::array<double, 6> place = {extent[0], (extent[2] - extent[0]) / width,  0, extent[3],
                                   0,         -(extent[3] - extent[1]) / height};
    raster->SetGeoTransform(place.data());
    OGRSpatialReference system;
    system.importFromEPSG(epsg);
    raster->SetSpatialRef(&system);
    std::vector<double> values;
    for (int i = 0; i < width * height; ++i) values.push_back(1 + (i * 37 + i / width * 11) % 30011);
    EXPECT_EQ(raster->RasterIO(GF_Write, 0, 0, width, height, values.data(), width, height, GDT_Float64, 1,
                               nullptr, 0, 0, 0, nullptr),
              CE_None);
    return {name, file, epsg, extent, width, height, 1, mode};
  }

  /// Values of a coverage beside those of its file.
  static void expectSamePixels(const std::string& coverage, const OfferedRaster& raster,
                               const test::PixelWindow& window) {
    const GdalScope scope;
    const test::RasterContent there = test::readWindow(coverage, window);
    const test::RasterContent here = test::readWindow(raster.file.string(), window);
    EXPECT_EQ(there.type, here.type) << scope.firstFailure("");
    EXPECT_EQ(there.values, here.values) << raster.name << ' ' << window.column << ' ' << window.row;
    for (std::size_t i = 0; i < here.extent.size(); ++i)
      EXPECT_NEAR(there.extent.at(i), here.extent.at(i), 1e-6) << raster.name << ' ' << i;
  }

  [[nodiscard]] static std::vector<test::PixelWindow> windowsOf(const OfferedRaster& raster) {
    return {{0, 0, raster.width, raster.height},
            {13, 17, 101, 57},
            {raster.width - 1, 0, 1, raster.height},
            {0, raster.height - 1, raster.width, 1},
            {raster.width - 20, raster.height - 9, 20, 9}};
  }

  std::vector<OfferedRaster> offered_;
};

TEST_F(OlderServer, ThatRefusesTheNewestVersionIsReadByTheOneBefore) {
  auto all = offered_;
  all.push_back(made("2021", GDT_Byte, 32632, {500000, 4999900, 500100, 5000000}, 100, 100, "BYTE"));
  test::offerRasters(folder_, all);
  const MapServer server{std::filesystem::path(folder_)};
  const auto client = NetworkAccess::shared().coverages(server.coverages());
  const auto told = client->capabilities(CoverageClient::Freshness::AskAgain);
  const auto* capabilities = std::get_if<std::shared_ptr<const CoverageCapabilities>>(&told);
  ASSERT_NE(capabilities, nullptr);
  EXPECT_EQ((*capabilities)->version, CoverageVersion::V111) << "no name may begin with a digit in 2.0.1";
  for (const OfferedRaster& raster : offered_) {
    const std::string name = coverageRasterName(server.coverages(), raster.name);
    for (const test::PixelWindow& window : windowsOf(raster)) {
      NetworkAccess::shared().forget();
      expectSamePixels(name, raster, window);
    }
  }
}

TEST_F(OlderServer, GivesReductionsByTheOneBefore) {
  const OfferedRaster large = made("1Large", GDT_Int16, 4326, {7, 46, 8, 46.5}, 1024, 512, "INT16");
  test::offerRasters(folder_, {large});
  const MapServer server{std::filesystem::path(folder_)};
  const GdalScope scope;
  const DatasetPtr raster = openRaster(coverageRasterName(server.coverages(), large.name));
  ASSERT_TRUE(raster) << scope.firstFailure("");
  GDALRasterBand* const half = raster->GetRasterBand(1)->GetOverview(0);
  ASSERT_NE(half, nullptr);
  std::vector<double> reduced(512UL * 256);
  ASSERT_EQ(half->RasterIO(GF_Read, 0, 0, 512, 256, reduced.data(), 512, 256, GDT_Float64, 0, 0, nullptr),
            CE_None)
      << scope.firstFailure("");
  const auto full = test::readWindow(large.file.string(), {0, 0, 1024, 512}).values;
  int wrong = 0;
  for (std::size_t i = 0; i < reduced.size(); ++i) {
    const std::size_t corner = i / 512 * 2 * 1024 + i % 512 * 2;
    const std::array<double, 4> square = {full[corner], full[corner + 1], full[corner + 1024],
                                          full[corner + 1025]};
    if (std::ranges::find(square, reduced[i]) == square.end()) ++wrong;
  }
  EXPECT_EQ(wrong, 0);
}

class OlderRequest : public OlderServer, public testing::WithParamInterface<CoverageVersion> {};

INSTANTIATE_TEST_SUITE_P(Of, OlderRequest, testing::Values(CoverageVersion::V111, CoverageVersion::V100),
                         [](const auto& tested) {
                           std::string text = versionText(tested.param);
                           std::ranges::replace(text, '.', '_');
                           return "Version" + text;
                         });

TEST_P(OlderRequest, BringsThePixelsOfTheFileAtTheirPlace) {
  test::offerRasters(folder_, offered_);
  const MapServer server{std::filesystem::path(folder_)};
  for (const OfferedRaster& raster : offered_) {
    const auto answer = test::fetchPlainly(descriptionRequest(server.coverages(), GetParam(), {raster.name}));
    const auto read = readDescriptions(answer.body, GetParam());
    const auto& coverages = std::get<std::vector<CoverageDescription>>(read);
    ASSERT_EQ(coverages.size(), 1U) << answer.body;
    EXPECT_EQ(coverages[0].columns, raster.width);
    EXPECT_EQ(coverages[0].rows, raster.height);
    for (const test::PixelWindow& window : windowsOf(raster)) {
      if (window.width < 2 || window.height < 2) continue;
      const PixelWindow asked{window.column, window.row, window.width, window.height};
      const auto pixels =
          test::fetchPlainly(pixelsRequest(server.coverages(), GetParam(), coverages[0], asked, asked.width,
                                           asked.height, "GEOTIFF_" + raster.mode));
      const auto image = readImage(pixels.body, pixels.type);
      ASSERT_TRUE(std::holds_alternative<std::string_view>(image)) << std::get<CoverageProblem>(image).text;
      const auto there = test::readFetched(std::string(std::get<std::string_view>(image)));
      const auto here = test::readWindow(raster.file.string(), window);
      EXPECT_EQ(there.values, here.values) << raster.name << ' ' << window.column << ' ' << window.row;
      for (std::size_t i = 0; i < here.extent.size(); ++i)
        EXPECT_NEAR(there.extent.at(i), here.extent.at(i), 1e-5) << raster.name << ' ' << i;
    }
  }
}

/// A MapServer behind a server that takes https alone.
class SecuredCoverages : public OlderServer {
 protected:
  SecuredCoverages() {
    test::offerRasters(folder_, offered_);
    plain_ = std::make_unique<MapServer>(std::filesystem::path(folder_));
    secured_ = std::make_unique<test::SecuredServer>(plain_->address().substr(7), made_.certificate());
  }
  [[nodiscard]] std::string coverages() const { return secured_->securedAddress() + "/wcs"; }
  [[nodiscard]] TransportSettings trusting() const {
    TransportSettings settings;
    settings.trusted.file = made_.authority();
    return settings;
  }

  test::FaultProxy made_{std::filesystem::path(folder_), test::FaultProxy::Ports::Secured};
  std::unique_ptr<MapServer> plain_;
  std::unique_ptr<test::SecuredServer> secured_;
};

TEST_F(SecuredCoverages, AreListedAndReadOnceTheirAuthorityIsTrusted) {
  NetworkAccess access(trusting());
  CoverageServers servers(access);
  const auto listed = servers.list(coverages());
  ASSERT_TRUE(listed);
  EXPECT_EQ(listed->services.size(), 2U);
  const auto opened = access.reader(coverages(), "Heights");
  const auto* reader = std::get_if<std::shared_ptr<CoverageReader>>(&opened);
  ASSERT_NE(reader, nullptr) << std::get<CoverageProblem>(opened).text;
  const auto here = test::readWindow(path("Heights.tif"), {0, 0, 256, 200}).values;
  std::vector<double> there;
  const std::string problem =
      (*reader)->read({0, 0, 0, 0, 0}, [&](int, int, const std::vector<std::byte>& tile) {
        for (std::size_t i = 0; i < here.size(); ++i) {
          std::int16_t value = 0;
          std::memcpy(&value, tile.data() + 2 * i, sizeof(value));
          there.push_back(value);
        }
      });
  EXPECT_EQ(problem, "");
  EXPECT_EQ(there, here);
}

TEST_F(SecuredCoverages, OfAnExpiredCertificateAreSilentWithTheReason) {
  const test::SecuredServer expired(plain_->address().substr(7),
                                    made_.certificate().parent_path() / "expired");
  std::vector<std::string> told;
  const SilenceListener listener([&](const SilentEnd& end) { told.push_back(end.reason); });
  NetworkAccess access(trusting());
  CoverageServers servers(access);
  EXPECT_FALSE(servers.list(expired.securedAddress() + "/wcs"));
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].find("has expired"), std::string::npos) << told[0];
}

TEST_F(SecuredCoverages, OfAnAuthorityThatNobodyTrustsAreSilentWithTheReason) {
  std::vector<std::string> told;
  const SilenceListener listener([&](const SilentEnd& end) { told.push_back(end.reason); });
  NetworkAccess access;
  CoverageServers servers(access);
  EXPECT_FALSE(servers.list(coverages()));
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].find("certificate"), std::string::npos) << told[0];
}

TEST_F(OlderServer, TellsTheDatesOfItsCoverages) {
  offered_[0].dates = "2021-07-14,2021-08-30";
  test::offerRasters(folder_, offered_);
  const MapServer server{std::filesystem::path(folder_)};
  CoverageServers servers(NetworkAccess::shared());
  const auto listed = servers.list(server.coverages());
  ASSERT_TRUE(listed);
  ASSERT_EQ(listed->services.size(), 2U);
  EXPECT_EQ(listed->services[0].facts.region.find("2021"), std::string::npos);
  EXPECT_NE(listed->services[1].facts.region.find(", 2021-07-14 to 2021-08-30"), std::string::npos)
      << listed->services[1].facts.region;
  const GdalScope scope;
  const DatasetPtr raster = openRaster(coverageRasterName(server.coverages(), "Heights"));
  ASSERT_TRUE(raster) << scope.firstFailure("");
  EXPECT_STREQ(raster->GetMetadataItem("DATES"), "2021-07-14 to 2021-08-30");
  EXPECT_EQ(raster->GetMetadataItem("REGION"), listed->services[1].facts.region);
}

}  // namespace
}  // namespace vlclientui::client::network
