// Files of a web server beside the same files of this machine, both read by the raster library.
#include <cpl_vsi.h>

#include "client/ranges/OpenableFiles.h"
#include "client/ranges/RangeFixture.h"
#include "servers/MapServer.h"
#include "support/TestFolders.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;
using vlclientui::test::StaticServer;

class RangeFiles : public RangeFixture {};

// Its text is read, judged and written anew, which is long work for a large mosaic.
TEST_F(RangeFiles, HaveOneFormOfAVirtualRasterUntilThatChanges) {
  make("a.tif", "GTiff", 64);
  const auto writeMosaic = [this](const std::string& band) {
    write(
        "m.vrt",
        R"(<VRTDataset rasterXSize="64" rasterYSize="64"><VRTRasterBand dataType="Byte" band="1"><SimpleSource>)"
        R"(<SourceFilename relativeToVRT="1">a.tif</SourceFilename><SourceBand>)" +
            band + "</SourceBand></SimpleSource></VRTRasterBand></VRTDataset>");
  };
  writeMosaic("1");
  const FaultProxy server{fs::path(folder_)};
  const GdalScope scope;
  const std::string name = rangeRasterName(server.address("/m.vrt"));
  const auto first = OpenableFiles::shared().open(name);
  ASSERT_TRUE(first) << scope.firstFailure("");
  EXPECT_EQ(OpenableFiles::shared().open(name), first);
  writeMosaic("2 ");
  client::RemoteFiles::shared().forget();
  const auto changed = OpenableFiles::shared().open(name);
  ASSERT_TRUE(changed) << scope.firstFailure("");
  EXPECT_NE(changed, first);
}

TEST_F(RangeFiles, HaveThePixelsAndPlacesOfTheSamplesExactly) {
  int compared = 0;
  for (const auto& entry : fs::recursive_directory_iterator(samplesFolder())) {
    if (entry.path().extension() != ".tif") continue;
    const std::string below = fs::relative(entry.path(), samplesFolder()).string();
    SCOPED_TRACE(below);
    const DatasetPtr remote = opened(rangeRasterName(StaticServer::samples().address() + "/" + below));
    const DatasetPtr local = opened(entry.path().string());
    ASSERT_TRUE(remote && local);
    expectSame(*remote, *local);
    ++compared;
  }
  EXPECT_GT(compared, 5);
}

TEST_F(RangeFiles, OfOtherFormatsAreReadToo) {
  make("a b.png", "PNG", 700);
  make("a.jpg", "JPEG", 700);
  make("a.jp2", "JP2OpenJPEG", 300, {"REVERSIBLE=YES", "QUALITY=100"});
  const FaultProxy server{fs::path(folder_)};
  for (const std::string name : {"a b.png", "a.jpg", "a.jp2"}) {
    SCOPED_TRACE(name);
    const DatasetPtr remote = opened(rangeRasterName(server.address("/" + vlclientui::test::encoded(name))));
    const DatasetPtr local = opened(path(name));
    ASSERT_TRUE(remote && local);
    EXPECT_EQ(pixelsOf(*remote), pixelsOf(*local));
  }
}

TEST_F(RangeFiles, OfEachKindOfTiffAreReadToo) {
  make("big.tif", "GTiff", 700, {"BIGTIFF=YES", "TILED=YES", "COMPRESS=LZW"});
  make("bare.tif", "COG", 700, {"OVERVIEWS=NONE", "COMPRESS=DEFLATE", "PREDICTOR=YES"});
  make("strips.tif", "GTiff", 700, {"INTERLEAVE=BAND", "ENDIANNESS=BIG"});
  make("sparse.tif", "GTiff", 700, {"SPARSE_OK=TRUE", "TILED=YES", "PHOTOMETRIC=YCBCR", "COMPRESS=JPEG"});
  const FaultProxy server{fs::path(folder_)};
  for (const std::string name : {"big.tif", "bare.tif", "strips.tif", "sparse.tif"}) {
    SCOPED_TRACE(name);
    const DatasetPtr remote = opened(rangeRasterName(server.address("/" + name)));
    const DatasetPtr local = opened(path(name));
    ASSERT_TRUE(remote && local);
    expectSame(*remote, *local);
  }
}

TEST_F(RangeFiles, AreAskedForAloneAndOnceForTheirHeader) {
  make("a.tif", "COG", 2000, {"COMPRESS=DEFLATE", "BLOCKSIZE=256"});
  const FaultProxy server{fs::path(folder_)};
  const DatasetPtr raster = opened(rangeRasterName(server.address("/a.tif")));
  ASSERT_TRUE(raster);
  EXPECT_EQ(raster->GetRasterBand(1)->GetOverviewCount(), 3);
  EXPECT_EQ(server.requests(), std::vector<std::string>{"GET /a.tif"});
  EXPECT_TRUE(opened(rangeRasterName(server.address("/a.tif"))));
  EXPECT_EQ(server.requests().size(), 1U) << "a file that was met is known";
}

TEST_F(RangeFiles, AreReadByTheirOverviewsWithFewRequests) {
  make("a.tif", "COG", 2000, {"COMPRESS=DEFLATE", "BLOCKSIZE=256"});
  const FaultProxy server{fs::path(folder_)};
  const DatasetPtr remote = opened(rangeRasterName(server.address("/a.tif")));
  const DatasetPtr local = opened(path("a.tif"));
  ASSERT_TRUE(remote && local);
  EXPECT_EQ(pixelsOf(*remote, 250, 250), pixelsOf(*local, 250, 250));
  EXPECT_LE(server.requests().size(), 3U);
  EXPECT_EQ(pixelsOf(*remote), pixelsOf(*local));
  EXPECT_LE(server.requests().size(), 24U);
  const std::size_t before = server.requests().size();
  EXPECT_EQ(pixelsOf(*opened(rangeRasterName(server.address("/a.tif")))), pixelsOf(*local));
  EXPECT_EQ(server.requests().size(), before) << "blocks are kept";
}

TEST_F(RangeFiles, ThatAreNotThereOrNoImagesAreToldInWords) {
  write("page.tif", "<html>no image</html>");
  write("list.tif", "<GDAL_WMS><Service name=\"TMS\"></Service></GDAL_WMS>");
  write("empty.tif", "");
  const FaultProxy server{fs::path(folder_)};
  const std::vector<std::pair<std::string, std::string>> cases = {{"/none.tif", " has no file "},
                                                                  {"/page.tif", " is no image"},
                                                                  {"/list.tif", " is no image"},
                                                                  {"/empty.tif", " is empty."}};
  for (const auto& [file, words] : cases) {
    const GdalScope scope;
    EXPECT_FALSE(openRaster(rangeRasterName(server.address(file))));
    EXPECT_NE(scope.firstFailure("").find(words), std::string::npos)
        << file << ": " << scope.firstFailure("");
    EXPECT_LE(server.requests().size(), 4U) << file;
    server.clear();
  }
}

TEST_F(RangeFiles, CannotBeWritten) {
  make("a.tif", "GTiff", 100);
  const FaultProxy server{fs::path(folder_)};
  const GdalScope scope;
  const std::string name = rangeRasterName(server.address("/a.tif"));
  for (const char* access : {"w", "wb", "r+", "a"})
    EXPECT_EQ(VSIFOpenL(name.c_str(), access), nullptr) << access;
  EXPECT_TRUE(server.requests().empty());
}

}  // namespace
}  // namespace vlclientui::client::ranges
