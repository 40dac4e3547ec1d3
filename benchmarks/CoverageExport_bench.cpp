#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <cpl_conv.h>
#include <cpl_string.h>
#include <gdal_priv.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include "MeasuredProgram.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/NetworkServers.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
#include "platform/LibXmlService.h"
#include "servers/FaultProxy.h"
#include "servers/MapServer.h"
#include "servers/OfferedRaster.h"
#include "servers/WebAnswer.h"

// Exports a coverage of a MapServer on this machine; beside it a plain client asks for all of it at once and
// decodes the answer, and the raster library's own WCS driver copies it. Each is a program of its own, in
// turns, with and without a delay put before every answer.
namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

constexpr int usualRuns = 5;
constexpr int usualSize = 4000;
constexpr int bandCount = 3;
constexpr int stripRows = 250;
constexpr double west = 500000;
constexpr double north = 5000000;

// Slopes with a little noise, as photographs have.
int makeSource(const std::string& file, int size) {
  GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("GTiff");
  CPLStringList options;
  options.SetNameValue("TILED", "YES");
  options.SetNameValue("PHOTOMETRIC", "RGB");
  const DatasetPtr raster(driver.Create(file.c_str(), size, size, bandCount, GDT_Byte, options.List()));
  if (!raster) return 1;
  std::array<double, 6> transform = {west, 1, 0, north, 0, -1};
  raster->SetGeoTransform(transform.data());
  OGRSpatialReference system;
  system.importFromEPSG(32632);
  raster->SetSpatialRef(&system);
  std::uint32_t state = 1;
  for (int y = 0; y < size; y += stripRows) {
    const int rows = std::min(stripRows, size - y);
    std::vector<std::uint8_t> values(static_cast<std::size_t>(rows) * static_cast<std::size_t>(size) *
                                     bandCount);
    for (std::size_t i = 0; i < values.size(); ++i) {
      state = state * 1664525U + 1013904223U;
      values[i] = static_cast<std::uint8_t>(60 + i / 8 % 128 + (state >> 29U));
    }
    if (raster->RasterIO(GF_Write, 0, y, size, rows, values.data(), size, rows, GDT_Byte, bandCount, nullptr,
                         0, 0, 0, nullptr) != CE_None) {
      return 1;
    }
  }
  return 0;
}

std::string element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + xmlEscaped(text) + "</" + name + ">";
}

int exportAll(const std::string& address, const std::string& target, int size) {
  const platform::LibXmlService xml(platform::PathTranslation("/"));
  const auto server =
      std::make_shared<CatalogueServer>(xml, CatalogueSettings{fs::path(target).parent_path(), {}});
  addNetworkServers(*server);
  CatalogueImageService service(server, xml, "ImageService://" + address + "/Photograph");
  service.ExportProperties("<Vorlane><Client><GetImage>" + element("Left", numberText(west)) +
                           element("Right", numberText(west + size)) + element("Top", numberText(north)) +
                           element("Bottom", numberText(north - size)) +
                           element("Cols", std::to_string(size)) + element("Rows", std::to_string(size)) +
                           element("Format", "Tiff") + element("FileName", target) +
                           "</GetImage></Client></Vorlane>");
  if (service.ExportImage()) return 0;
  std::fprintf(stderr, "%s\n", service.status().c_str());
  return 1;
}

int fetchAtOnce(const std::string& address, int size) {
  const std::string request =
      address +
      "?SERVICE=WCS&VERSION=2.0.1&REQUEST=GetCoverage&COVERAGEID=Photograph&FORMAT=GEOTIFF_RGB&SUBSET=x(" +
      numberText(west) + "," + numberText(west + size) + ")&SUBSET=y(" + numberText(north - size) + "," +
      numberText(north) + ")";
  const test::WebAnswer answer = test::fetchPlainly(request);
  const auto* bytes = reinterpret_cast<const GByte*>(answer.body.data());
  VSIFCloseL(
      VSIFileFromMemBuffer("/vsimem/answer.tif", const_cast<GByte*>(bytes), answer.body.size(), FALSE));
  const DatasetPtr image = openRaster("/vsimem/answer.tif");
  if (!image || image->GetRasterXSize() != size) return 1;
  std::vector<std::uint8_t> values(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) *
                                   bandCount);
  const CPLErr read = image->RasterIO(GF_Read, 0, 0, size, size, values.data(), size, size, GDT_Byte,
                                      bandCount, nullptr, 0, 0, 0, nullptr);
  return read == CE_None ? 0 : 1;
}

// As a person types it who tries it for the first time, with no memory of earlier tries: gdal_translate where
// it is installed, else the function that it is made of.
int translateAll(const std::string& address, const std::string& target) {
  const std::string source = "WCS:" + address + "?version=2.0.1&coverage=Photograph";
  const std::string cache = target + ".cache";
  fs::create_directories(cache);
  setenv("GDAL_DEFAULT_WCS_CACHE_DIR", cache.c_str(), 1);
  execlp("gdal_translate", "gdal_translate", "-q", source.c_str(), target.c_str(), nullptr);
  GDALTranslateOptions* options = GDALTranslateOptionsNew(nullptr, nullptr);
  GDALDatasetH from = GDALOpen(source.c_str(), GA_ReadOnly);
  GDALDatasetH to = from == nullptr ? nullptr : GDALTranslate(target.c_str(), from, options, nullptr);
  const bool isMade = to != nullptr;
  if (isMade) GDALClose(to);
  if (from != nullptr) GDALClose(from);
  GDALTranslateOptionsFree(options);
  return isMade ? 0 : 1;
}

void compare(const char* name, const std::string& address, const fs::path& folder, const std::string& size,
             int runs) {
  benchmarks::Runs ours;
  benchmarks::Runs direct;
  benchmarks::Runs driver;
  for (int run = 0; run < runs; ++run) {
    ours.add(benchmarks::costOf({"export", address, folder / "ours.Tif", size}));
    direct.add(benchmarks::costOf({"direct", address, "-", size}));
    driver.add(benchmarks::costOf({"driver", address, folder / "driver.tif", size}));
    fs::remove(folder / "ours.Tif");
    fs::remove(folder / "driver.tif");
    fs::remove_all(folder / "driver.tif.cache");
  }
  if (ours.empty() || direct.empty()) std::exit(1);
  std::printf("%-12s %8.2f s %6.0f MB %8.2f s %6.2f", name, ours.seconds(), ours.megabytes(),
              direct.seconds(), ours.seconds() / direct.seconds());
  if (!driver.empty()) std::printf(" %8.2f s %6.2f\n", driver.seconds(), driver.seconds() / ours.seconds());
  if (driver.empty()) std::printf(" %10s %6s\n", "fails", "-");
  std::fflush(stdout);
}

int compareAll(const std::string& size, int runs) {
  const fs::path folder = fs::temp_directory_path() / ("vl_coverage_bench_" + std::to_string(getpid()));
  fs::create_directories(folder);
  const int pixels = std::stoi(size);
  if (!benchmarks::costOf({"make", "-", folder / "source.tif", size})) return 1;
  test::offerRasters(folder,
                     {{"Photograph",
                       folder / "source.tif",
                       32632,
                       {west, north - pixels, west + pixels, north},
                       pixels,
                       pixels,
                       bandCount,
                       "RGB"}},
                     std::max(8192, pixels));
  {
    const test::MapServer server(folder);
    const test::FaultProxy proxy(server.address().substr(7));
    std::printf(
        "Ratio of the export to one direct request, and of the WCS driver to the export; the middle of %d\n",
        runs);
    std::printf("%-12s %10s %9s %10s %6s %10s %6s\n", "", "export", "peak", "direct", "ratio", "driver",
                "ratio");
    compare("loopback", server.coverages(), folder, size, runs);
    proxy.always("delay=20");
    compare("20 ms", proxy.address("/wcs"), folder, size, runs);
  }
  fs::remove_all(folder);
  return 0;
}

int runStep(const Arguments& arguments) {
  GDALAllRegister();
  const int size = std::stoi(arguments.at(3));
  if (arguments.front() == "make") return makeSource(arguments.at(2), size);
  if (arguments.front() == "export") return exportAll(arguments.at(1), arguments.at(2), size);
  if (arguments.front() == "direct") return fetchAtOnce(arguments.at(1), size);
  return translateAll(arguments.at(1), arguments.at(2));
}

}  // namespace
}  // namespace vlclientui::client

// Usage: CoverageExport_bench [PIXELS A SIDE [RUNS]]
int main(int count, char** words) {
  const std::vector<std::string> arguments(words + 1, words + count);
  static constexpr std::size_t wordsOfStep = 4;
  if (arguments.size() == wordsOfStep) return vlclientui::client::runStep(arguments);
  return vlclientui::client::compareAll(
      arguments.empty() ? std::to_string(vlclientui::client::usualSize) : arguments.front(),
      arguments.size() > 1 ? std::stoi(arguments[1]) : vlclientui::client::usualRuns);
}
