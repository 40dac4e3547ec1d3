#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteFiles.h"
#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/reach/Places.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::ranges {

inline DatasetPtr opened(const std::string& name) {
  const GdalScope scope;
  DatasetPtr raster = openRaster(name);
  EXPECT_TRUE(raster) << name << ": " << scope.firstFailure("");
  return raster;
}

inline std::vector<std::byte> pixelsOf(GDALDataset& raster, int width, int height) {
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

inline std::vector<std::byte> pixelsOf(GDALDataset& raster) {
  return pixelsOf(raster, raster.GetRasterXSize(), raster.GetRasterYSize());
}

inline void expectSame(GDALDataset& one, GDALDataset& other) {
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
class RangeFixture : public platform::TemporaryFolder {
 protected:
  // Drivers that write open what they have written so far.
  RangeFixture() {
    RemoteFiles::shared().forget();
    Places::shared().pointAt(folder_);
  }

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

}  // namespace vlclientui::client::ranges
