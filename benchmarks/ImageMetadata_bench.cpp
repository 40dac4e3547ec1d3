#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <unistd.h>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "platform/LibXmlService.h"

// The metadata document of a mosaic of 5,000 source rasters: made anew for another image, and asked for
// again. What the files tell was read before, as it is remembered. Beside it the floor of the second: the
// files' times and sizes, which are looked at each time.
namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr int sourceTotal = 5000;

class Mosaic {
 public:
  Mosaic() : folder_(fs::temp_directory_path() / ("vl_metadata_bench_" + std::to_string(getpid()))) {
    GDALAllRegister();
    fs::create_directories(folder_ / "m.sources");
    makeRaster(folder_ / "m.sources" / "r0.tif");
    std::ofstream definition(folder_ / "m.VLDef");
    definition << "<Vorlane><MosaicDefinition><Sources>";
    for (int i = 0; i < sourceTotal; ++i) {
      const std::string name = "m.sources/r" + std::to_string(i) + ".tif";
      if (i > 0) fs::create_hard_link(folder_ / "m.sources" / "r0.tif", folder_ / name);
      definition << "<Source><File>" << name << "</File><Attributes><Year>2020</Year></Attributes></Source>";
    }
    definition << "</Sources></MosaicDefinition></Vorlane>";
  }
  ~Mosaic() { fs::remove_all(folder_); }
  Mosaic(const Mosaic&) = delete;
  Mosaic& operator=(const Mosaic&) = delete;

  [[nodiscard]] const fs::path& folder() const { return folder_; }

 private:
  static void makeRaster(const fs::path& file) {
    GDALDriver& driver = *GetGDALDriverManager()->GetDriverByName("GTiff");
    GDALDataset* dataset = driver.Create(file.c_str(), 64, 64, 3, GDT_Byte, nullptr);
    double transform[] = {400000, 30, 0, 5000000, 0, -30};
    dataset->SetGeoTransform(transform);
    dataset->SetMetadataItem("TITLE", "Source");
    GDALClose(GDALDataset::ToHandle(dataset));
  }

  fs::path folder_;
};

const Mosaic& mosaic() {
  static const Mosaic made;
  return made;
}

const XmlService& xml() {
  static const platform::LibXmlService service(platform::PathTranslation("/"));
  return service;
}

CatalogueImageService& service() {
  static CatalogueImageService made(
      std::make_shared<CatalogueServer>(xml(), CatalogueSettings{mosaic().folder(), {}}), xml(),
      "ImageService://localhost/m");
  benchmark::DoNotOptimize(made.GetImageMetadata(""));
  return made;
}

void madeAnew(benchmark::State& state) {
  CatalogueImageService& asked = service();
  const std::string properties = asked.ServiceProperties();
  for (auto _ : state) {
    asked.setServiceProperties(properties);
    benchmark::DoNotOptimize(asked.GetImageMetadata(""));
  }
}

void askedAgain(benchmark::State& state) {
  CatalogueImageService& asked = service();
  for (auto _ : state) benchmark::DoNotOptimize(asked.GetImageMetadata(""));
}

void filesLookedAt(benchmark::State& state) {
  for (auto _ : state) {
    for (const auto& entry : fs::directory_iterator(mosaic().folder() / "m.sources")) {
      benchmark::DoNotOptimize(fs::last_write_time(entry.path()));
      benchmark::DoNotOptimize(fs::file_size(entry.path()));
    }
  }
}

BENCHMARK(madeAnew)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(askedAgain)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(filesLookedAt)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace vlclientui::client
