// Exports of a mosaic whose sources are items of a catalogue: planned, broken off, gone on with.
#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "client/catalogue/Catalogue.h"
#include "client/facade/NetworkServers.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RemoteFiles.h"
#include "client/raster/ExportProgress.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::FaultProxy;
using vlclientui::test::GetImage;
using Names = std::vector<std::string>;

/// Two images, one above the other one, as items of a collection.
class StacExports : public vlclientui::test::ServiceFixture {
 protected:
  static constexpr int columns = 1500;
  static constexpr int rowsOfEach = 1000;

  StacExports() {
    addNetworkServers(*server_);
    makeImage("upper", 0);
    makeImage("lower", rowsOfEach);
    writeText("web/collection.json",
              R"({"type":"Collection","stac_version":"1.0.0","id":"Scenes","links":[)"
              R"({"rel":"item","href":"upper.json"},{"rel":"item","href":"lower.json"}]})");
    RemoteFiles::shared().forget();
    NetworkAccess::shared().forget();
  }

  [[nodiscard]] static std::array<double, 6> placeOf(int row) {
    return {500000, 1, 0, 5150000.0 - row, 0, -1};
  }
  void makeImage(const std::string& name, int row, int seed = 0) const {
    vlclientui::test::RasterRecipe recipe{columns, rowsOfEach, 1, GDT_Byte, 32632, "TILED=YES"};
    recipe.transform = placeOf(row);
    recipe.finish = [seed](GDALDataset& raster) {
      std::vector<std::uint8_t> line(columns);
      for (int y = 0; y < rowsOfEach; ++y) {
        for (int x = 0; x < columns; ++x)
          line[static_cast<std::size_t>(x)] =
              static_cast<std::uint8_t>((x * 7 + y * 13 + x * y / 64 + seed) % 251);
        EXPECT_EQ(raster.RasterIO(GF_Write, 0, y, columns, 1, line.data(), columns, 1, GDT_Byte, 1, nullptr,
                                  0, 0, 0, nullptr),
                  CE_None);
      }
    };
    makeRaster("web/" + name + ".tif", recipe);
    const auto place = placeOf(row);
    writeText(
        "web/" + name + ".json",
        R"({"type":"Feature","stac_version":"1.0.0","id":")" + name +
            R"(","bbox":[9,46.5,9.02,46.52],"properties":{"datetime":"2021-07-14T00:00:00Z","proj:epsg":32632,
                  "proj:shape":[)" +
            std::to_string(rowsOfEach) + "," + std::to_string(columns) +
            R"(],"proj:transform":[1,0,500000,0,-1,)" + std::to_string(place[3]) +
            R"(]},"assets":{"visual":{"href":")" + name + R"(.tif","type":"image/tiff"}}})");
  }
  [[nodiscard]] std::shared_ptr<CatalogueImageService> exporting(const std::string& name,
                                                                 Keeping keeping) const {
    RemoteFiles::shared().forget();
    auto made = service("ImageService://" + proxy_.address("/collection.json") + "/Scenes");
    GetImage request;
    request.extent = made->facts().envelope;
    request.columns = columns;
    request.rows = 2 * rowsOfEach;
    request.fileName = out(name);
    made->setKeeping(keeping);
    made->ExportProperties(request.document());
    return made;
  }
  /// @returns why it broke off; empty where the file is whole.
  std::string exportTo(const std::string& name, Keeping keeping) const {
    const auto made = exporting(name, keeping);
    return made->ExportImage() ? std::string() : made->status();
  }
  [[nodiscard]] std::size_t askedFor(const std::string& file) const {
    const auto requests = proxy_.requests();
    return static_cast<std::size_t>(std::ranges::count(requests, "GET /" + file));
  }
  /// Breaks an export off while its lower half is read. @returns how often a whole one asks for the upper
  /// one.
  std::size_t breakOff() {
    EXPECT_EQ(exportTo("unbroken", Keeping::Nothing), "");
    const std::size_t lower = askedFor("lower.tif");
    const std::size_t upper = askedFor("upper.tif");
    EXPECT_GT(lower, 1U);
    proxy_.clear();
    proxy_.alwaysAfter(lower - 1, "only=lower.tif;reset");
    EXPECT_NE(exportTo("image", Keeping::Begin), "");
    EXPECT_EQ(outputs(), (Names{"image.unfinished", "unbroken"}));
    proxy_.clear();
    return upper;
  }
  [[nodiscard]] std::string contentOf(const std::string& name) const {
    std::ifstream stream(out(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  FaultProxy proxy_{folder() / "web"};
};

TEST_F(StacExports, ArePlannedBeforeTheFirstByte) {
  const ExportForecast plan = exporting("image", Keeping::Nothing)->forecastExport();
  EXPECT_TRUE(plan.isRemote);
  EXPECT_GT(plan.requests, 0U);
  const double bytes = 2.0 * columns * rowsOfEach;
  EXPECT_GT(static_cast<double>(plan.bytesToFetch), bytes / 4);
  EXPECT_LT(static_cast<double>(plan.bytesToFetch), bytes * 4);
  EXPECT_NEAR(static_cast<double>(plan.bytesToWrite), bytes, bytes / 4);
  EXPECT_EQ(plan.folder, folder() / "out");
  EXPECT_FALSE(plan.kept);
  EXPECT_EQ(outputs(), Names());
}

TEST_F(StacExports, HoldThePixelsOfTheirImages) {
  ASSERT_EQ(exportTo("image", Keeping::Nothing), "");
  auto written = vlclientui::test::valuesOf(out("image"));
  auto expected = vlclientui::test::valuesOf((folder() / "web/upper.tif").string());
  const auto lower = vlclientui::test::valuesOf((folder() / "web/lower.tif").string());
  expected.insert(expected.end(), lower.begin(), lower.end());
  EXPECT_EQ(written, expected);
}

TEST_F(StacExports, GoOnAfterABreakWithWhatIsMissing) {
  const std::size_t upper = breakOff();
  ASSERT_EQ(exportTo("image", Keeping::GoOn), "");
  EXPECT_LT(askedFor("upper.tif"), upper) << "what is kept is not fetched again";
  EXPECT_EQ(contentOf("image"), contentOf("unbroken"));
  EXPECT_EQ(outputs(), (Names{"image", "unbroken"}));
}

TEST_F(StacExports, DoNotGoOnWithAnImageThatHasChanged) {
  breakOff();
  makeImage("upper", 0, 5);
  EXPECT_NE(exportTo("image", Keeping::GoOn).find("source has changed"), std::string::npos);
  EXPECT_EQ(outputs(), (Names{"image.unfinished", "unbroken"}));
  ASSERT_EQ(exportTo("image", Keeping::Anew), "");
  EXPECT_NE(contentOf("image"), contentOf("unbroken"));
}

// Another item came since, which lies above the others.
TEST_F(StacExports, DoNotGoOnWithACatalogueThatHasChanged) {
  breakOff();
  makeImage("newer", 200, 9);
  writeText(
      "web/collection.json",
      R"({"type":"Collection","stac_version":"1.0.0","id":"Scenes","links":[{"rel":"item","href":"upper.json"},)"
      R"({"rel":"item","href":"lower.json"},{"rel":"item","href":"newer.json"}]})");
  ASSERT_TRUE(server_->content(proxy_.address("/collection.json")));
  EXPECT_NE(exportTo("image", Keeping::GoOn), "");
  EXPECT_EQ(outputs(), (Names{"image.unfinished", "unbroken"}));
}

}  // namespace
}  // namespace vlclientui::client::stac
