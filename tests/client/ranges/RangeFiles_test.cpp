// Files of a web server beside the same files of this machine, both read by the raster library.
#include "client/ranges/RangeFiles.h"

#include <array>
#include <filesystem>

#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/ranges/RemoteFiles.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "support/TestFolders.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;
using vlclientui::test::StaticServer;

DatasetPtr opened(const std::string& name) {
  const GdalScope scope;
  DatasetPtr raster = openRaster(name);
  EXPECT_TRUE(raster) << name << ": " << scope.firstFailure("");
  return raster;
}

std::vector<std::byte> pixelsOf(GDALDataset& raster, int width, int height) {
  const GdalScope scope;
  const GDALDataType type = raster.GetRasterBand(1)->GetRasterDataType();
  std::vector<std::byte> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                                static_cast<std::size_t>(raster.GetRasterCount()) *
                                static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type)));
  EXPECT_EQ(raster.RasterIO(GF_Read, 0, 0, raster.GetRasterXSize(), raster.GetRasterYSize(), pixels.data(),
                            width, height, type, raster.GetRasterCount(), nullptr, 0, 0, 0, nullptr),
            CE_None)
      << scope.firstFailure("");
  return pixels;
}

std::vector<std::byte> pixelsOf(GDALDataset& raster) {
  return pixelsOf(raster, raster.GetRasterXSize(), raster.GetRasterYSize());
}

void expectSame(GDALDataset& one, GDALDataset& other) {
  GeoTransform here{};
  GeoTransform there{};
  EXPECT_EQ(readGeoTransform(one, here), readGeoTransform(other, there));
  EXPECT_EQ(here, there);
  if (one.GetSpatialRef() != nullptr) {
    EXPECT_TRUE(one.GetSpatialRef()->IsSame(other.GetSpatialRef()));
  }
  EXPECT_EQ(one.GetRasterBand(1)->GetOverviewCount(), other.GetRasterBand(1)->GetOverviewCount());
  EXPECT_EQ(pixelsOf(one), pixelsOf(other));
}

/// A made raster with overviews, inside the file.
class RangeFiles : public platform::TemporaryFolder {
 protected:
  RangeFiles() { RemoteFiles::shared().forget(); }

  /// @param driver that writes the file by copying. @param bands 1 or 3.
  void make(const std::string& name, const std::string& driver, int side,
            std::vector<std::string> options = {}) {
    const GdalScope scope;
    GDALDriverManager& drivers = *GetGDALDriverManager();
    DatasetPtr memory(drivers.GetDriverByName("MEM")->Create("", side, side, 3, GDT_Byte, nullptr));
    std::vector<std::uint8_t> row(static_cast<std::size_t>(side) * 3);
    for (int y = 0; y < side; ++y) {
      for (int i = 0; i < side * 3; ++i)
        row[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>((i * 7 + y * 13 + i * y / 64) % 251);
      ASSERT_EQ(memory->RasterIO(GF_Write, 0, y, side, 1, row.data(), side, 1, GDT_Byte, 3, nullptr, 0, 0, 0,
                                 nullptr),
                CE_None);
    }
    std::array<double, 6> place = {500000, 10, 0, 5000000, 0, -10};
    memory->SetGeoTransform(place.data());
    std::vector<char*> list;
    for (std::string& option : options) list.push_back(option.data());
    list.push_back(nullptr);
    const DatasetPtr made(
        drivers.GetDriverByName(driver.c_str())
            ->CreateCopy(path(name).c_str(), memory.get(), FALSE, list.data(), nullptr, nullptr));
    ASSERT_TRUE(made) << scope.firstFailure("");
  }
};

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
