#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <cpl_string.h>
#include <gdal_priv.h>
#include <gdal_utils.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include "MeasuredProgram.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/output/ExportPlan.h"
#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
#include "platform/LibXmlService.h"

// Exports a window of a generated raster in every format, and has gdal_translate cut out the same window with
// the options that make the same file and the same block cache; how many threads it takes is left to it. Both
// run as programs of their own, in turns, so that time and peak memory are those of one whole export each.
// Where gdal_translate is not installed, the function of the raster library that it is made of does the same
// in its place.
namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr int runs = 3;
constexpr int usualSize = 20000;
constexpr int bandCount = 3;
constexpr int tile = 256;
constexpr int marginPixels = 100;  ///< of the window within the raster, so that blocks do not coincide

struct Format {
  const char* name;
  const char* format;
  const char* compression;
  const char* tileSize;
  const char* quality;
};

constexpr std::array<Format, 6> formats = {{{"TIFF-No Compression", "Tiff", "", "None", "0"},
                                            {"TIFF-JPEG", "Tiff", "JPEG", "256", "75"},
                                            {"TIFF-LZ77", "Tiff", "LZ77", "512", "75"},
                                            {"JPEG", "JPEG", "", "None", "80"},
                                            {"JP2", "JPEG2000", "", "None", "100"},
                                            {"PNG", "PNG", "", "None", "0"}}};

// Slopes with a little noise, as photographs have.
std::vector<std::uint8_t> rowOfTiles(int size, int firstRow, int rows, std::uint32_t& state) {
  std::vector<std::uint8_t> values;
  values.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(rows) * bandCount);
  for (int band = 0; band < bandCount; ++band) {
    for (int y = firstRow; y < firstRow + rows; ++y) {
      const double wave = 40 * std::sin(y / 300.0);
      for (int x = 0; x < size; ++x) {
        state = state * 1664525U + 1013904223U;
        const int slope = (x / 8 + band * 30) % 128;
        values.push_back(static_cast<std::uint8_t>(60 + slope + static_cast<int>(wave) + (state >> 29U)));
      }
    }
  }
  return values;
}

int makeSource(const std::string& file, int size) {
  CPLStringList options;
  options.SetNameValue("TILED", "YES");
  options.SetNameValue("PHOTOMETRIC", "RGB");
  GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("GTiff");
  GDALDataset* dataset = driver.Create(file.c_str(), size, size, bandCount, GDT_Byte, options.List());
  if (dataset == nullptr) return 1;
  std::array<double, 6> transform = {500000, 1, 0, 5000000, 0, -1};
  dataset->SetGeoTransform(transform.data());
  OGRSpatialReference system;
  system.importFromEPSG(32632);
  dataset->SetSpatialRef(&system);
  std::uint32_t state = 1;
  for (int y = 0; y < size; y += tile) {
    const int rows = std::min(tile, size - y);
    std::vector<std::uint8_t> values = rowOfTiles(size, y, rows, state);
    if (dataset->RasterIO(GF_Write, 0, y, size, rows, values.data(), size, rows, GDT_Byte, bandCount, nullptr,
                          0, 0, 0, nullptr) != CE_None) {
      return 1;
    }
  }
  GDALClose(GDALDataset::ToHandle(dataset));
  return 0;
}

std::string element(const std::string& name, const std::string& text) {
  return "<" + name + ">" + xmlEscaped(text) + "</" + name + ">";
}

int exportWindow(const Format& format, const std::string& source, const std::string& target, int size) {
  const platform::LibXmlService xml(platform::PathTranslation("/"));
  const auto server =
      std::make_shared<CatalogueServer>(xml, CatalogueSettings{fs::path(source).parent_path(), {}});
  CatalogueImageService service(server, xml, source);
  const int pixels = size - 2 * marginPixels;
  service.ExportProperties(
      "<Vorlane><Client><GetImage>" + element("Left", numberText(500000 + marginPixels)) +
      element("Right", numberText(500000 + marginPixels + pixels)) +
      element("Top", numberText(5000000 - marginPixels)) +
      element("Bottom", numberText(5000000 - marginPixels - pixels)) +
      element("Cols", std::to_string(pixels)) + element("Rows", std::to_string(pixels)) +
      element("Format", format.format) + element("CompressionMethod", format.compression) +
      element("TileSize", format.tileSize) + element("CompressionQuality", format.quality) +
      element("FileName", target) + "</GetImage></Client></Vorlane>");
  if (service.ExportImage()) return 0;
  std::fprintf(stderr, "%s\n", service.status().c_str());
  return 1;
}

// What the export itself gives to the raster library. JPEG comes from a file of strips there, by other means.
ExportPlan planOf(const Format& format, const std::string& source, int size) {
  DatasetPtr dataset = openRaster(source);
  if (!dataset) std::exit(1);
  GetImageRequest request;
  request.grid = {{0, 0, 1, 1}, size - 2 * marginPixels, size - 2 * marginPixels};
  request.format = format.format;
  request.compression = format.compression;
  request.tileSize = std::atoi(format.tileSize);
  request.quality = std::atoi(format.quality);
  ExportPlan plan = planExport(request, pixelKindOf(*dataset));
  if (plan.order == WriteOrder::Strips) plan.options = {std::string("QUALITY=") + format.quality};
  return plan;
}

int translateWindow(const Format& format, const std::string& source, const std::string& target, int size) {
  const ExportPlan plan = planOf(format, source, size);
  const std::string margin = std::to_string(marginPixels);
  const std::string pixels = std::to_string(size - 2 * marginPixels);
  std::vector<std::string> words = {"-q", "-of", plan.driver, "-srcwin", margin, margin, pixels, pixels};
  for (const std::string& option : plan.options) {
    if (!option.starts_with("NUM_THREADS")) words.insert(words.end(), {"-co", option});
  }
  CPLStringList arguments;
  CPLStringList command;
  for (const char* word : {"gdal_translate", "--config", "GDAL_CACHEMAX", "64"}) command.AddString(word);
  for (const std::string& word : words) {
    arguments.AddString(word.c_str());
    command.AddString(word.c_str());
  }
  command.AddString(source.c_str()).AddString(target.c_str());
  execvp("gdal_translate", command.List());
  GDALSetCacheMax64(GIntBig{64} << 20U);
  GDALTranslateOptions* options = GDALTranslateOptionsNew(arguments.List(), nullptr);
  GDALDatasetH from = GDALOpen(source.c_str(), GA_ReadOnly);
  GDALDatasetH to = GDALTranslate(target.c_str(), from, options, nullptr);
  const bool isMade = to != nullptr;
  if (isMade) GDALClose(to);
  GDALClose(from);
  GDALTranslateOptionsFree(options);
  return isMade ? 0 : 1;
}

// One run, and the size of the file that it made.
void addRun(benchmarks::Runs& costs, const std::vector<std::string>& arguments, const fs::path& target,
            std::uintmax_t& fileBytes) {
  costs.add(benchmarks::costOf(arguments));
  fileBytes = fs::file_size(target);
  fs::remove(target);
  fs::remove(target.string() + ".aux.xml");
}

void compare(std::size_t format, const fs::path& folder, const std::string& size) {
  const std::string source = folder / "source.tif";
  const std::string number = std::to_string(format);
  benchmarks::Runs ours;
  benchmarks::Runs peer;
  std::uintmax_t ourBytes = 0;
  std::uintmax_t peerBytes = 0;
  for (int run = 0; run < runs; ++run) {
    addRun(ours, {"export", number, source, folder / "ours", size}, folder / "ours", ourBytes);
    addRun(peer, {"translate", number, source, folder / "peer", size}, folder / "peer", peerBytes);
  }
  if (ours.empty() || peer.empty()) std::exit(1);
  std::printf("%-20s %8.2f s %6.0f MB %8.2f s %6.0f MB %6.2f %10.2f %6.2f\n", formats.at(format).name,
              ours.seconds(), ours.megabytes(), peer.seconds(), peer.megabytes(),
              ours.seconds() / peer.seconds(), ours.processorSeconds() / peer.processorSeconds(),
              static_cast<double>(ourBytes) / static_cast<double>(peerBytes));
  std::fflush(stdout);
}

int compareAll(const std::string& size, const std::vector<std::string>& wanted) {
  const fs::path folder = fs::temp_directory_path() / ("vl_export_bench_" + std::to_string(getpid()));
  fs::create_directories(folder);
  if (!benchmarks::costOf({"make", "0", folder / "source.tif", "-", size})) return 1;
  std::printf("Ratios of the export to gdal_translate, the middle of %d runs each\n", runs);
  std::printf("%-20s %10s %9s %10s %9s %6s %10s %6s\n", "format", "export", "peak", "translate", "peak",
              "time", "processor", "size");
  for (std::size_t format = 0; format < formats.size(); ++format) {
    const bool isWanted =
        wanted.empty() || std::find(wanted.begin(), wanted.end(), formats.at(format).name) != wanted.end();
    if (isWanted) compare(format, folder, size);
  }
  fs::remove_all(folder);
  return 0;
}

int runStep(const std::vector<std::string>& arguments) {
  GDALAllRegister();
  const Format& format = formats.at(std::stoul(arguments.at(1)));
  const int size = std::stoi(arguments.at(4));
  if (arguments.front() == "make") return makeSource(arguments.at(2), size);
  if (arguments.front() == "export") return exportWindow(format, arguments.at(2), arguments.at(3), size);
  return translateWindow(format, arguments.at(2), arguments.at(3), size);
}

}  // namespace
}  // namespace vlclientui::client

// Usage: Export_bench [PIXELS A SIDE [FORMAT ENTRY ...]]
int main(int count, char** words) {
  std::vector<std::string> arguments(words + 1, words + count);
  static constexpr std::size_t wordsOfStep = 5;
  const bool isStep = arguments.size() == wordsOfStep &&
                      (arguments[0] == "make" || arguments[0] == "export" || arguments[0] == "translate");
  if (isStep) return vlclientui::client::runStep(arguments);
  const std::string size =
      arguments.empty() ? std::to_string(vlclientui::client::usualSize) : arguments.front();
  if (!arguments.empty()) arguments.erase(arguments.begin());
  return vlclientui::client::compareAll(size, arguments);
}
