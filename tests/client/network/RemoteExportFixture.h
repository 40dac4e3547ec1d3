#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/NetworkServers.h"
#include "client/network/NetworkAccess.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
#include "platform/LibXmlService.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "servers/OfferedRaster.h"

namespace vlclientui::test {

/// What is asked of the coverage "Photograph", in its pixels.
struct RemoteRequest {
  std::array<int, 4> window{};  ///< column, row, width, height
  int columns = 0;
  int rows = 0;
  std::string format = "Tiff";
  bool metadata = false;
};

/// A coverage of a MapServer of its own behind the fault proxy, and exports from it.
class RemoteExportFixture : public testing::Test {
 protected:
  static constexpr double west = 500000;
  static constexpr double north = 5000000;

  /// @param side pixels. @param mostPixels that the server gives at once, across or down.
  explicit RemoteExportFixture(int side = 1500, int mostPixels = 8192) : side_(side) {
    folder_ = std::filesystem::temp_directory_path() /
              ("vl_remote_" + std::to_string(getpid()) + "_" + std::to_string(count_++));
    std::filesystem::create_directories(folder_ / "out");
    makeSource(1);
    offerRasters(
        folder_,
        {{"Photograph", source(), 32632, {west, north - side, west + side, north}, side, side, 3, "RGB"}},
        mostPixels);
    server_ = std::make_unique<MapServer>(folder_);
    proxy_ = std::make_unique<FaultProxy>(server_->address().substr(7));
    client::NetworkAccess::shared().forget();
  }
  ~RemoteExportFixture() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::filesystem::path source() const { return folder_ / "source.tif"; }
  [[nodiscard]] std::string out(const std::string& name) const { return (folder_ / "out" / name).string(); }
  [[nodiscard]] RemoteRequest whole() const { return {{0, 0, side_, side_}, side_, side_}; }

  /// Other pixels for another seed.
  void makeSource(unsigned seed) const {
    GDALAllRegister();
    CPLStringList options;
    options.SetNameValue("PHOTOMETRIC", "RGB");
    const client::DatasetPtr raster(GetGDALDriverManager()->GetDriverByName("GTiff")->Create(
        source().c_str(), side_, side_, 3, GDT_Byte, options.List()));
    std::array<double, 6> transform = {west, 1, 0, north, 0, -1};
    raster->SetGeoTransform(transform.data());
    OGRSpatialReference system;
    system.importFromEPSG(32632);
    raster->SetSpatialRef(&system);
    unsigned state = seed;
    constexpr int rowsAtATime = 100;
    for (int row = 0; row < side_; row += rowsAtATime) {
      const int rows = std::min(rowsAtATime, side_ - row);
      std::vector<std::uint8_t> values(static_cast<std::size_t>(side_) * static_cast<std::size_t>(rows) * 3);
      for (std::uint8_t& value : values) {
        state = state * 1664525U + 1013904223U;
        value = static_cast<std::uint8_t>(state >> 24U);
      }
      ASSERT_EQ(raster->RasterIO(GF_Write, 0, row, side_, rows, values.data(), side_, rows, GDT_Byte, 3,
                                 nullptr, 0, 0, 0, nullptr),
                CE_None);
    }
  }

  [[nodiscard]] std::shared_ptr<client::CatalogueImageService> service(const std::string& query = {}) const {
    const auto catalogue =
        std::make_shared<client::CatalogueServer>(xml_, client::CatalogueSettings{folder_, {}});
    client::addNetworkServers(*catalogue);
    return std::make_shared<client::CatalogueImageService>(
        catalogue, xml_, "ImageService://" + proxy_->address("/wcs") + query + "/Photograph");
  }
  [[nodiscard]] std::string document(const RemoteRequest& request, const std::string& name) const {
    const auto& [column, row, width, height] = request.window;
    const auto element = [](const std::string& tag, const std::string& text) {
      return "<" + tag + ">" + text + "</" + tag + ">";
    };
    return "<Vorlane><Client><GetImage>" + element("Left", client::numberText(west + column)) +
           element("Right", client::numberText(west + column + width)) +
           element("Top", client::numberText(north - row)) +
           element("Bottom", client::numberText(north - row - height)) +
           element("Cols", std::to_string(request.columns)) + element("Rows", std::to_string(request.rows)) +
           element("Format", request.format) +
           element("ExportMetadataXml", request.metadata ? "True" : "False") +
           element("FileName", out(name)) + "</GetImage></Client></Vorlane>";
  }
  /// @returns why it broke off; empty where the file is whole.
  std::string exportTo(const std::string& name, const RemoteRequest& request,
                       client::Keeping keeping = client::Keeping::Nothing,
                       const std::function<bool(double)>& progress = {},
                       const std::string& query = {}) const {
    client::NetworkAccess::shared().forget();
    const auto made = service(query);
    made->setKeeping(keeping);
    made->setProgress(progress);
    made->ExportProperties(document(request, name));
    return made->ExportImage() ? std::string() : made->status();
  }

  [[nodiscard]] std::vector<std::string> outputs() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_ / "out"))
      names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
  }
  [[nodiscard]] static std::string contentOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  /// Values of all bands; empty where it cannot be read.
  [[nodiscard]] static std::vector<std::uint8_t> valuesOf(const std::string& file,
                                                          const std::array<int, 4>& window) {
    const client::DatasetPtr raster = client::openRaster(file);
    const auto& [column, row, width, height] = window;
    if (!raster) return {};
    std::vector<std::uint8_t> values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    const CPLErr read = raster->RasterIO(GF_Read, column, row, width, height, values.data(), width, height,
                                         GDT_Byte, 3, nullptr, 0, 0, 0, nullptr);
    return read == CE_None ? values : std::vector<std::uint8_t>();
  }
  /// Of more than a sample.
  struct Asked {
    std::size_t requests = 0;
    std::int64_t pixels = 0;
  };
  [[nodiscard]] Asked asked() const {
    Asked all;
    for (const std::string& request : proxy_->requests()) {
      const std::int64_t width = lengthOf(request, "SUBSET=x%28");
      if (width <= 64) continue;
      ++all.requests;
      all.pixels += width * lengthOf(request, "SUBSET=y%28");
    }
    return all;
  }
  [[nodiscard]] std::int64_t wholePixels() const { return std::int64_t{side_} * side_; }

  int side_;
  std::filesystem::path folder_;
  std::unique_ptr<MapServer> server_;
  std::unique_ptr<FaultProxy> proxy_;
  platform::LibXmlService xml_{platform::PathTranslation("/")};

 private:
  static std::int64_t lengthOf(const std::string& request, const std::string& subset) {
    const std::size_t at = request.find(subset);
    if (at == std::string::npos) return 0;
    const double begin = std::stod(request.substr(at + subset.size()));
    const double end = std::stod(request.substr(request.find("%2C", at) + 3));
    return std::llround(end - begin);
  }

  static inline int count_ = 0;
};

}  // namespace vlclientui::test
