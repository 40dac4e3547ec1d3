#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <unistd.h>

#include "client/catalogue/Catalogue.h"
#include "client/facade/ServerInfoAnswer.h"
#include "platform/LibXmlService.h"

// A folder of 2,000 small rasters in several UTM zones, told as a catalogue. Beside it two floors, both on
// one thread: the same files opened and nothing asked of them, and asked for their coordinate system alone,
// which the raster library builds anew for each file and which is nearly all of the work.
namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr int fileCount = 2000;
constexpr int folders = 20;
constexpr int zones = 8;

void makeRaster(const fs::path& file, int number) {
  GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("GTiff");
  GDALDataset* dataset = driver.Create(file.c_str(), 64, 64, 1, GDT_Int16, nullptr);
  std::array<double, 6> transform = {400000.0 + number * 10, 30, 0, 5000000.0, 0, -30};
  dataset->SetGeoTransform(transform.data());
  OGRSpatialReference system;
  system.importFromEPSG(32630 + number % zones);
  dataset->SetSpatialRef(&system);
  dataset->SetMetadataItem("TITLE", ("Raster " + std::to_string(number)).c_str());
  GDALClose(GDALDataset::ToHandle(dataset));
}

class Folder {
 public:
  Folder() : path_(fs::temp_directory_path() / ("vl_catalogue_bench_" + std::to_string(getpid()))) {
    GDALAllRegister();
    for (int i = 0; i < fileCount; ++i) {
      const fs::path folder = path_ / ("folder" + std::to_string(i % folders));
      fs::create_directories(folder);
      files_.push_back(folder / ("raster" + std::to_string(i) + ".tif"));
      makeRaster(files_.back(), i);
    }
  }
  ~Folder() { fs::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  [[nodiscard]] const fs::path& path() const { return path_; }
  [[nodiscard]] const std::vector<fs::path>& files() const { return files_; }

 private:
  fs::path path_;
  std::vector<fs::path> files_;
};

const Folder& folder() {
  static const Folder made;
  return made;
}

const XmlService& xml() {
  static const platform::LibXmlService service(platform::PathTranslation("/"));
  return service;
}

void firstAnswer(benchmark::State& state) {
  // Made before the clock runs.
  const fs::path catalogue = folder().path();
  for (auto _ : state) {
    RasterCache cache;
    const CatalogueContent content = readCatalogue(catalogue, xml(), cache);
    if (content.services.size() != fileCount) state.SkipWithError("services are missing");
    benchmark::DoNotOptimize(serverInfoAnswer(content.services));
  }
}

void laterAnswer(benchmark::State& state) {
  RasterCache cache;
  benchmark::DoNotOptimize(readCatalogue(folder().path(), xml(), cache));
  for (auto _ : state) {
    const CatalogueContent content = readCatalogue(folder().path(), xml(), cache);
    benchmark::DoNotOptimize(serverInfoAnswer(content.services));
  }
}

enum class Question { Nothing, System };

void bareOpen(benchmark::State& state, Question question) {
  const std::vector<fs::path>& files = folder().files();
  for (auto _ : state) {
    for (const fs::path& file : files) {
      GDALDataset* dataset = GDALDataset::FromHandle(GDALOpen(file.c_str(), GA_ReadOnly));
      if (dataset == nullptr) return state.SkipWithError("a file does not open");
      if (question == Question::System) benchmark::DoNotOptimize(dataset->GetSpatialRef());
      GDALClose(GDALDataset::ToHandle(dataset));
    }
  }
}

// Real time: part of the work is done by helpers.
BENCHMARK(firstAnswer)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(laterAnswer)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(bareOpen, nothing, Question::Nothing)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(bareOpen, system, Question::System)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vlclientui::client
