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
constexpr int manyTotal = 100'000;
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
  explicit Folder(const std::string& name)
      : path_(fs::temp_directory_path() / ("vl_" + name + "_bench_" + std::to_string(getpid()))) {
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
  static const Folder made("catalogue");
  return made;
}

// Most of them further names of the same files; nothing that the client remembers goes by what a name leads
// to.
void addNames(const Folder& folder) {
  for (const fs::path& file : folder.files()) {
    for (int i = 1; i < manyTotal / fileCount; ++i) {
      fs::create_hard_link(file, file.parent_path() / (std::to_string(i) + file.filename().string()));
    }
  }
}

const XmlService& xml() {
  static const platform::LibXmlService service(platform::PathTranslation("/"));
  return service;
}

// With nothing remembered, as after each start of a program.
void answer(benchmark::State& state, const fs::path& catalogue, std::size_t total) {
  for (auto _ : state) {
    RasterCache cache;
    const CatalogueContent content = readCatalogue(catalogue, xml(), cache);
    if (content.services.size() != total) state.SkipWithError("services are missing");
    benchmark::DoNotOptimize(serverInfoAnswer(content.services));
  }
}

void firstAnswer(benchmark::State& state) { answer(state, folder().path(), fileCount); }
void answerOfManyFiles(benchmark::State& state) {
  const Folder many("many_files");
  addNames(many);
  answer(state, many.path(), manyTotal);
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
BENCHMARK(answerOfManyFiles)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(laterAnswer)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(bareOpen, nothing, Question::Nothing)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(bareOpen, system, Question::System)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vlclientui::client
