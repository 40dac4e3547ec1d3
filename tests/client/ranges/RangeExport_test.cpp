// Exports from files of a web server: planned, broken off, gone on with, and refused where the source
// changed.
#include <algorithm>
#include <atomic>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/NetworkServers.h"
#include "client/output/ExportIdentity.h"
#include "client/ranges/RangeFixture.h"
#include "contracts/RuntimeFailure.h"
#include "platform/LibXmlService.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;
using Names = std::vector<std::string>;

constexpr int side = 2000;

class RangeExport : public RangeFixture {
 protected:
  RangeExport() {
    make("a.tif", "COG", side, {"COMPRESS=NONE", "BLOCKSIZE=256", "OVERVIEWS=NONE"});
    fs::create_directory(path("out"));
    server_ = std::make_unique<FaultProxy>(fs::path(folder_));
  }

  [[nodiscard]] std::string out(const std::string& name) const { return path("out/" + name); }
  [[nodiscard]] std::shared_ptr<CatalogueImageService> service(const std::string& file) const {
    const auto catalogue = std::make_shared<CatalogueServer>(xml_, CatalogueSettings{folder_, {}});
    addNetworkServers(*catalogue);
    return std::make_shared<CatalogueImageService>(
        catalogue, xml_,
        "ImageService://" + server_->address("/" + file) + "/" + fs::path(file).stem().string());
  }
  [[nodiscard]] std::string document(const std::string& name) const {
    const std::string pixels = std::to_string(side);
    return "<Vorlane><Client><GetImage><Left>500000</Left><Right>520000</Right><Top>5000000</Top>"
           "<Bottom>4980000</Bottom><Cols>" +
           pixels + "</Cols><Rows>" + pixels + "</Rows><Format>Tiff</Format><FileName>" + out(name) +
           "</FileName></GetImage></Client></Vorlane>";
  }
  /// @returns why it broke off; empty where the file is whole.
  std::string exportTo(const std::string& name, Keeping keeping = Keeping::Nothing,
                       const std::function<bool(double)>& progress = {},
                       const std::string& file = "a.tif") const {
    client::RemoteFiles::shared().forget();
    return exportAsKnown(name, keeping, progress, file);
  }
  /// The same with what is remembered of the server.
  std::string exportAsKnown(const std::string& name, Keeping keeping,
                            const std::function<bool(double)>& progress = {},
                            const std::string& file = "a.tif") const {
    const auto made = service(file);
    made->setKeeping(keeping);
    made->setProgress(progress);
    made->ExportProperties(document(name));
    return made->ExportImage() ? std::string() : made->status();
  }
  [[nodiscard]] ExportForecast plan(const std::string& file = "a.tif") const {
    const auto planned = service(file);
    planned->ExportProperties(document("planned"));
    return planned->forecastExport();
  }
  [[nodiscard]] Names outputs() const {
    Names names;
    for (const auto& entry : fs::directory_iterator(path("out"))) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }
  void expectPixelsOf(const std::string& file, const std::string& name) const {
    const DatasetPtr here = opened(path(file));
    const DatasetPtr there = opened(out(name));
    ASSERT_TRUE(here && there);
    EXPECT_EQ(pixelsOf(*there), pixelsOf(*here));
  }
  void writeMosaic() const {
    std::string bands;
    for (const std::string band : {"1", "2", "3"})
      bands += "<VRTRasterBand dataType=\"Byte\" band=\"" + band +
               "\"><SimpleSource><SourceFilename relativeToVRT=\"1\">a.tif</SourceFilename><SourceBand>" +
               band + "</SourceBand></SimpleSource></VRTRasterBand>";
    write("m.vrt",
          "<VRTDataset rasterXSize=\"2000\" rasterYSize=\"2000\">"
          "<GeoTransform>500000,10,0,5000000,0,-10</GeoTransform>" +
              bands + "</VRTDataset>");
  }

  std::unique_ptr<FaultProxy> server_;
  platform::LibXmlService xml_{platform::PathTranslation("/")};
};

TEST_F(RangeExport, IsThePictureOfTheFilePixelForPixel) {
  ASSERT_EQ(exportTo("whole"), "");
  expectPixelsOf("a.tif", "whole");
}

TEST_F(RangeExport, BeginsWithOneRequestForTheHeader) {
  client::RemoteFiles::shared().forget();
  const auto made = service("a.tif");
  EXPECT_EQ(made->facts().columns, side);
  EXPECT_EQ(server_->requests(), Names{"GET /a.tif"});
}

// The server never answers whether its file is as it was.
TEST_F(RangeExport, IsGivenUpWhileItIsToldFromOthers) {
  ImageServiceRecord service;
  ImageSource source;
  source.file = rangeRasterName(server_->address("/a.tif"));
  source.place = {0, 0, 10, 10};
  service.sources.push_back(source);
  GetImageRequest request;
  request.grid = {{0, 0, 10, 10}, 10, 10};
  server_->always("hold");
  int asked = 0;
  try {
    static_cast<void>(exportIdentity(service, {0}, request, [&](double share) {
      EXPECT_EQ(share, 0);
      return ++asked < 3;
    }));
    ADD_FAILURE() << "it was not given up";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.description(), "The export was cancelled.");
  }
  EXPECT_GE(asked, 3);
  server_->clear();
  EXPECT_FALSE(exportIdentity(service, {0}, request, {}).source.empty()) << "nothing of it is kept";
}

TEST_F(RangeExport, IsPlannedAlikeWhateverWasReadBefore) {
  const ExportForecast first = plan();
  EXPECT_TRUE(first.isRemote);
  const auto pixels = static_cast<double>(side) * side * 3;
  EXPECT_GT(static_cast<double>(first.bytesToFetch), 0.9 * pixels);
  EXPECT_LT(static_cast<double>(first.bytesToFetch), 1.1 * pixels) << "the file holds no more";
  EXPECT_GE(first.requests, 11U);
  EXPECT_GT(first.seconds, 0);
  const ExportForecast second = plan();
  EXPECT_EQ(second.requests, first.requests);
  EXPECT_EQ(second.bytesToFetch, first.bytesToFetch);
  EXPECT_GT(second.seconds, 0);
  ASSERT_EQ(exportTo("whole"), "");
  EXPECT_EQ(plan().bytesToFetch, first.bytesToFetch) << "though all of it is at hand now";
}

TEST_F(RangeExport, GoesOnAfterABreakWithWhatIsMissingAlone) {
  ASSERT_EQ(exportTo("unbroken"), "");
  server_->clear();
  server_->alwaysAfter(10, "reset");
  EXPECT_NE(exportTo("image", Keeping::Begin), "");
  EXPECT_EQ(outputs(), (Names{"image.unfinished", "unbroken"}));
  server_->clear();
  const auto kept = service("a.tif");
  kept->ExportProperties(document("image"));
  const ExportForecast rest = kept->forecastExport();
  ASSERT_TRUE(rest.kept);
  EXPECT_GT(rest.kept->bytes, 0U);
  EXPECT_LT(rest.bytesToFetch, plan().bytesToFetch);
  ASSERT_EQ(exportTo("image", Keeping::GoOn), "");
  EXPECT_EQ(read("out/image"), read("out/unbroken"));
  EXPECT_EQ(outputs(), (Names{"image", "unbroken"}));
}

TEST_F(RangeExport, GoesOnAfterACancel) {
  EXPECT_NE(exportTo("image", Keeping::Begin, [](double share) { return share < 0.6; }), "");
  EXPECT_EQ(outputs(), Names{"image.unfinished"});
  ASSERT_EQ(exportTo("image", Keeping::GoOn), "");
  expectPixelsOf("a.tif", "image");
}

TEST_F(RangeExport, LeavesNothingWhereNothingIsToBeKept) {
  server_->alwaysAfter(10, "reset");
  EXPECT_NE(exportTo("image"), "");
  EXPECT_EQ(outputs(), Names());
}

TEST_F(RangeExport, DoesNotGoOnWithAFileThatHasChanged) {
  EXPECT_NE(exportTo("image", Keeping::Begin, [](double share) { return share < 0.6; }), "");
  make("a.tif", "COG", side, {"COMPRESS=DEFLATE", "BLOCKSIZE=256", "OVERVIEWS=NONE"});
  EXPECT_NE(exportTo("image", Keeping::GoOn).find("source has changed"), std::string::npos);
  ASSERT_EQ(exportTo("image", Keeping::Anew), "");
  expectPixelsOf("a.tif", "image");
}

TEST_F(RangeExport, ThatBeginsAnewAsksForTheFileAnew) {
  EXPECT_NE(exportTo("image", Keeping::Begin, [](double share) { return share < 0.6; }), "");
  make("a.tif", "COG", side, {"COMPRESS=DEFLATE", "BLOCKSIZE=256", "OVERVIEWS=NONE"});
  ASSERT_EQ(exportAsKnown("image", Keeping::Anew), "");
  expectPixelsOf("a.tif", "image");
}

TEST_F(RangeExport, DoesNotGoOnWithAVirtualRasterOfAFileThatHasChanged) {
  writeMosaic();
  const auto breakOff = [&] {
    return exportTo(
        "image", Keeping::Begin, [](double share) { return share < 0.6; }, "m.vrt");
  };
  EXPECT_NE(breakOff(), "");
  make("a.tif", "COG", side, {"COMPRESS=DEFLATE", "BLOCKSIZE=256", "OVERVIEWS=NONE"});
  EXPECT_NE(exportTo("image", Keeping::GoOn, {}, "m.vrt").find("source has changed"), std::string::npos);
  ASSERT_EQ(exportTo("image", Keeping::Anew, {}, "m.vrt"), "");
  expectPixelsOf("a.tif", "image");
}

TEST_F(RangeExport, GoesOnWithAVirtualRasterThatIsAsItWas) {
  writeMosaic();
  EXPECT_NE(exportTo(
                "image", Keeping::Begin, [](double share) { return share < 0.6; }, "m.vrt"),
            "");
  ASSERT_EQ(exportTo("image", Keeping::GoOn, {}, "m.vrt"), "");
  expectPixelsOf("a.tif", "image");
}

}  // namespace
}  // namespace vlclientui::client::ranges
