#include "servers/RasterWindow.h"

#include <algorithm>
#include <filesystem>
#include <future>
#include <memory>

#include <cpl_string.h>
#include <cpl_vsi.h>
#include <gdal_utils.h>

#include "support/TestFolders.h"

namespace vlclientui::test {
namespace {

struct Closer {
  void operator()(GDALDataset* dataset) const { GDALClose(GDALDataset::ToHandle(dataset)); }
};
using DatasetPtr = std::unique_ptr<GDALDataset, Closer>;

DatasetPtr opened(const std::string& name) {
  GDALAllRegister();
  return DatasetPtr(GDALDataset::Open(name.c_str(), GDAL_OF_RASTER));
}

RasterContent content(GDALDataset& raster, const PixelWindow& window) {
  RasterContent out{window.width, window.height, raster.GetRasterCount(), GDT_Unknown, {}, {}, 1};
  out.type = raster.GetRasterBand(1)->GetRasterDataType();
  out.scale = raster.GetRasterBand(1)->GetScale();
  out.values.resize(static_cast<std::size_t>(out.width) * static_cast<std::size_t>(out.height) *
                    static_cast<std::size_t>(out.bands));
  if (raster.RasterIO(GF_Read, window.column, window.row, out.width, out.height, out.values.data(), out.width,
                      out.height, GDT_Float64, out.bands, nullptr, 0, 0, 0, nullptr) != CE_None) {
    return {};
  }
  std::array<double, 6> grid{};
  raster.GetGeoTransform(grid.data());
  const double west = grid[0] + grid[1] * window.column;
  const double north = grid[3] + grid[5] * window.row;
  out.extent = {west, north + grid[5] * out.height, west + grid[1] * out.width, north};
  return out;
}

}  // namespace

RasterContent readWindow(const std::string& name, const PixelWindow& window) {
  // As another program would: on a thread of its own, where nothing bounds what files lead to.
  return std::async(std::launch::async,
                    [&] {
                      const DatasetPtr raster = opened(name);
                      return raster ? content(*raster, window) : RasterContent{};
                    })
      .get();
}

RasterContent readFetched(const std::string& bytes) {
  const char* name = "/vsimem/fetched";
  std::string copy = bytes;
  VSIFCloseL(VSIFileFromMemBuffer(name, reinterpret_cast<GByte*>(copy.data()), copy.size(), FALSE));
  RasterContent out;
  if (const DatasetPtr raster = opened(name)) {
    out = content(*raster, {0, 0, raster->GetRasterXSize(), raster->GetRasterYSize()});
  }
  VSIUnlink(name);
  return out;
}

std::string joinedSources(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(samplesFolder() + "/" + folder)) {
    names.push_back(entry.path().string());
  }
  std::ranges::sort(names);
  CPLStringList files;
  for (const std::string& name : names) files.AddString(name.c_str());
  GDALAllRegister();
  const char* joined = "/vsimem/joined.vrt";
  GDALClose(GDALBuildVRT(joined, files.Count(), nullptr, files.List(), nullptr, nullptr));
  return joined;
}

}  // namespace vlclientui::test
