// The metadata page over an image of many source rasters, from the arrival of the document to the page of the
// first raster and from row to row, beside one bare parse of the same document. Engine and service are fakes,
// so that only the pages' own work is measured.

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Counted.h"
#include "metadata/MetadataDocuments.h"
#include "support/MetadataFixture.h"

namespace {

using namespace vlclientui;

/// As services describe a raster, in about 700 characters.
std::string imageOf(std::int64_t rasters) {
  std::vector<test::RasterText> texts;
  for (std::int64_t number = 1; number <= rasters; ++number) {
    texts.push_back(
        {.id = std::to_string(number),
         .name = "flight line " + std::to_string(number % 40),
         .visible = number % 3 == 0 ? "False" : "True",
         .metadata = "<Metadata><Domain name='default'><Sensor>frame camera</Sensor>"
                     "<FocalLength>153.2</FocalLength><Acquired>1998-07-21</Acquired></Domain></Metadata>",
         .attributes = "<Attributes><Year>1998</Year><Sun>low</Sun><Cloud>0.05</Cloud><Owner>survey</Owner>"
                       "<LowPS>0.25</LowPS></Attributes>",
         .process = "<ProcessMetadata><Source>C:\\Images\\line.tif</Source><Resampling>cubic</Resampling>"
                    "<Reprojection>EPSG:25832</Reprojection></ProcessMetadata>"});
  }
  return test::imageOf(texts);
}

class Bench : public test::MetadataFixture {
 public:
  explicit Bench(std::int64_t rasters) {
    imageMetadata = imageOf(rasters);
    openPage();
  }
  void TestBody() override {}

  /// A new image has come: nothing that was read of the one before serves it.
  void takeNewImage() {
    isOther_ = !isOther_;
    service->answers["GetImageMetadata "] = imageMetadata + (isOther_ ? "<!-- other -->" : "");
  }
  void openSource() {
    clickNode("Raster");
    forgetCalls();
  }
  void clickRow(std::size_t row) {
    controls->RasterList.userSelects(row);
    forgetCalls();
  }
  [[nodiscard]] const std::string& document() const { return imageMetadata; }

 private:
  /// The log of the fakes is no part of the page.
  void forgetCalls() {
    plexa->record->calls.clear();
    service->calls.clear();
  }

  bool isOther_ = false;
};

void bareParse(benchmark::State& state) {
  const Bench bench(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(parsedDocument(bench.document()));
  state.counters["bytes"] = static_cast<double>(bench.document().size());
}

void sourceOpens(benchmark::State& state) {
  Bench bench(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    bench.takeNewImage();
    state.ResumeTiming();
    benchmarks::counted([&] { bench.openSource(); });
  }
}

void rowClick(benchmark::State& state) {
  Bench bench(state.range(0));
  bench.openSource();
  std::size_t row = 0;
  for (auto _ : state) {
    benchmarks::counted([&] { bench.clickRow(row++ % static_cast<std::size_t>(state.range(0))); });
  }
}

}  // namespace

BENCHMARK(bareParse)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(sourceOpens)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);
BENCHMARK(rowClick)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);
