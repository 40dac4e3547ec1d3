// Fetches a window of a cloud-optimized TIFF from a web server that takes 20 ms for each answer, beside
// gdal_translate with its defaults, which fetches and writes the same window. Both run in turns; requests are
// counted at the server. Ours is pixels in memory, by one handle
// of the raster library and by four side by side, and a whole export of the service.
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gdal_priv.h>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/NetworkServers.h"
#include "client/ranges/RangeFiles.h"
#include "client/ranges/RemoteFiles.h"
#include "client/raster/GdalScope.h"
#include "platform/LibXmlService.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;

constexpr int usualRuns = 5;
constexpr int bands = 3;
constexpr int side = 8000;    ///< of the raster
constexpr int window = 4000;  ///< of the part
constexpr int corner = 1900;  ///< where it begins; blocks do not coincide with it

// Slopes with a little noise, as photographs have.
void fill(GDALDataset& raster) {
  std::uint32_t state = 1;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(side) * bands);
  for (int y = 0; y < side; ++y) {
    const double wave = 40 * std::sin(y / 300.0);
    for (std::size_t i = 0; i < row.size(); ++i) {
      state = state * 1664525U + 1013904223U;
      row[i] = static_cast<std::uint8_t>(60 + (i / 24) % 128 + static_cast<std::size_t>(wave + 40) +
                                         (state >> 28U));
    }
    if (raster.RasterIO(GF_Write, 0, y, side, 1, row.data(), side, 1, GDT_Byte, bands, nullptr, bands, 0, 1,
                        nullptr) != CE_None) {
      std::abort();
    }
  }
}

void makeSource(const std::string& file) {
  GDALAllRegister();
  GDALDriverManager& drivers = *GetGDALDriverManager();
  const DatasetPtr memory(drivers.GetDriverByName("MEM")->Create("", side, side, bands, GDT_Byte, nullptr));
  fill(*memory);
  std::array<double, 6> place = {500000, 1, 0, 5000000, 0, -1};
  memory->SetGeoTransform(place.data());
  std::string compression = "COMPRESS=DEFLATE";
  std::string blocks = "BLOCKSIZE=256";
  std::array<char*, 3> options = {compression.data(), blocks.data(), nullptr};
  const DatasetPtr made(drivers.GetDriverByName("COG")->CreateCopy(file.c_str(), memory.get(), FALSE,
                                                                   options.data(), nullptr, nullptr));
  if (!made) std::abort();
}

struct Measured {
  double seconds = 1e9;
  std::size_t requests = 0;
};

void measure(const FaultProxy& server, const std::function<bool()>& work, Measured& best) {
  RemoteFiles::shared().forget();
  server.clear();
  server.always("delay=20");
  const auto begin = std::chrono::steady_clock::now();
  const bool isDone = work();
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  if (!isDone) std::abort();
  if (seconds < best.seconds) best = {seconds, server.counts().requests};
}

bool readRows(const std::string& name, int begin, int end, std::uint8_t* pixels) {
  const GdalScope scope;
  const DatasetPtr raster = openRaster(name);
  return raster && raster->RasterIO(GF_Read, corner, begin, window, end - begin, pixels, window, end - begin,
                                    GDT_Byte, bands, nullptr, bands, window * bands, 1, nullptr) == CE_None;
}

// Along the blocks of the file, so that none is read twice.
bool readWindow(const std::string& address, int handles) {
  constexpr int block = 256;
  const std::string name = rangeRasterName(address);
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(window) * window * bands);
  std::atomic<bool> isWhole = true;
  std::vector<std::jthread> readers;
  int begin = corner;
  for (int i = 1; i <= handles; ++i) {
    const int end = i == handles ? corner + window : (corner + window * i / handles) / block * block;
    std::uint8_t* const rows = pixels.data() + static_cast<std::size_t>(begin - corner) * window * bands;
    readers.emplace_back([&isWhole, &name, begin, end, rows] {
      if (!readRows(name, begin, end, rows)) isWhole = false;
    });
    begin = end;
  }
  readers.clear();
  return isWhole;
}

bool exportWindow(const std::string& address, const std::string& target) {
  const platform::LibXmlService xml(platform::PathTranslation("/"));
  const auto server = std::make_shared<CatalogueServer>(xml, CatalogueSettings());
  addNetworkServers(*server);
  CatalogueImageService service(server, xml, "ImageService://" + address + "/source");
  const auto number = [](int value) { return std::to_string(value); };
  service.ExportProperties("<Vorlane><Client><GetImage><Left>" + number(500000 + corner) + "</Left><Right>" +
                           number(500000 + corner + window) + "</Right><Top>" + number(5000000 - corner) +
                           "</Top><Bottom>" + number(5000000 - corner - window) + "</Bottom><Cols>" +
                           number(window) + "</Cols><Rows>" + number(window) +
                           "</Rows><Format>Tiff</Format><TileSize>None</TileSize>"
                           "<FileName>" +
                           target + "</FileName></GetImage></Client></Vorlane>");
  if (service.ExportImage()) return true;
  std::fprintf(stderr, "%s\n", service.status().c_str());
  return false;
}

bool translateWindow(const std::string& address, const std::string& target) {
  const std::string part = std::to_string(corner) + ' ' + std::to_string(corner) + ' ' +
                           std::to_string(window) + ' ' + std::to_string(window);
  const std::string command = "gdal_translate -q -srcwin " + part + " /vsicurl/" + address + ' ' + target;
  return std::system(command.c_str()) == 0;
}

int run(const std::string& folder, int runs) {
  makeSource(folder + "/source.tif");
  const FaultProxy server{fs::path(folder)};
  const std::string address = server.address("/source.tif");
  Measured peer;
  Measured pixels;
  Measured sideBySide;
  Measured whole;
  for (int i = 0; i < runs; ++i) {
    measure(
        server, [&] { return translateWindow(address, folder + "/peer.tif"); }, peer);
    measure(
        server, [&] { return readWindow(address, 1); }, pixels);
    measure(
        server, [&] { return readWindow(address, 4); }, sideBySide);
    measure(
        server, [&] { return exportWindow(address, folder + "/own.tif"); }, whole);
  }
  std::printf("%-28s %8s %9s %7s\n", "4,000 x 4,000, 20 ms", "seconds", "requests", "ratio");
  const auto tell = [&](const char* name, const Measured& measured) {
    std::printf("%-28s %8.2f %9zu %7.2f\n", name, measured.seconds, measured.requests,
                measured.seconds / peer.seconds);
  };
  tell("gdal_translate, /vsicurl", peer);
  tell("pixels, one handle", pixels);
  tell("pixels, four handles", sideBySide);
  tell("export of the service", whole);
  return 0;
}

}  // namespace
}  // namespace vlclientui::client

// Usage: RangeWindow_bench [RUNS]
int main(int count, char** words) {
  std::string folder = (std::filesystem::temp_directory_path() / "vl-ranges-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) return 1;
  const int result =
      vlclientui::client::run(folder, count > 1 ? std::atoi(words[1]) : vlclientui::client::usualRuns);
  std::filesystem::remove_all(folder);
  return result;
}
