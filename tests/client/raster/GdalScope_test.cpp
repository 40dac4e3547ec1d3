#include "client/raster/GdalScope.h"

#include <array>
#include <cstdint>
#include <fstream>

#include <gtest/gtest.h>

#include "platform/TemporaryFolder.h"

namespace vlclientui::client {
namespace {

class MemoryNames : public platform::TemporaryFolder {
 protected:
  MemoryNames() { const GdalScope drivers; }

  /// Of the pixels of this object, as a host may name them.
  std::string name() {
    std::array<char, 64> pointer{};
    pointer.at(static_cast<std::size_t>(CPLPrintPointer(pointer.data(), pixels_.data(), 63))) = 0;
    return std::string("MEM:::DATAPOINTER=") + pointer.data() + ",PIXELS=2,LINES=2";
  }

  std::string mosaicOf(const std::string& source) {
    write(
        "mosaic.vrt",
        R"(<VRTDataset rasterXSize="2" rasterYSize="2"><VRTRasterBand dataType="Byte" band="1"><SimpleSource>)"
        R"(<SourceFilename relativeToVRT="0">)" +
            source +
            R"(</SourceFilename><SourceBand>1</SourceBand><SourceProperties RasterXSize="2" RasterYSize="2" )"
            R"(DataType="Byte"/></SimpleSource></VRTRasterBand></VRTDataset>)");
    return path("mosaic.vrt");
  }

  std::array<std::uint8_t, 4> pixels_ = {1, 2, 3, 4};
};

CPLErr readCorner(GDALDataset& raster, std::uint8_t& value) {
  return raster.GetRasterBand(1)->RasterIO(GF_Read, 1, 1, 1, 1, &value, 1, 1, GDT_Byte, 0, 0, nullptr);
}

TEST_F(MemoryNames, OpenForAHostThatSharesTheRasterLibrary) {
  const DatasetPtr raster(
      GDALDataset::FromHandle(GDALOpenEx(name().c_str(), GDAL_OF_RASTER, nullptr, nullptr, nullptr)));
  ASSERT_TRUE(raster);
  std::uint8_t value = 0;
  EXPECT_EQ(readCorner(*raster, value), CE_None);
  EXPECT_EQ(value, 4);
}

TEST_F(MemoryNames, DoNotOpenForThisLibrary) {
  const GdalScope scope;
  EXPECT_FALSE(openRaster(name()));
}

TEST_F(MemoryNames, DoNotOpenForFilesThatItReads) {
  const std::string file = mosaicOf(name());
  std::uint8_t value = 0;
  {
    const GdalScope scope;
    const DatasetPtr raster = openRaster(file);
    EXPECT_TRUE(!raster || readCorner(*raster, value) != CE_None);
  }
  EXPECT_EQ(value, 0);
  const DatasetPtr ofHost(
      GDALDataset::FromHandle(GDALOpenEx(file.c_str(), GDAL_OF_RASTER, nullptr, nullptr, nullptr)));
  ASSERT_TRUE(ofHost);
  EXPECT_EQ(readCorner(*ofHost, value), CE_None);
  EXPECT_EQ(value, 4) << "the host's own business";
}

}  // namespace
}  // namespace vlclientui::client
