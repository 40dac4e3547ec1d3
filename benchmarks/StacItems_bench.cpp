// From the pages of a collection's items to a mosaic that can be drawn and steered, beside parsers alone.
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <ogr_spatialref.h>
#include <simdjson.h>
#include <sys/resource.h>

#include "client/drawing/Drawing.h"
#include "client/drawing/MosaicSpacing.h"
#include "client/drawing/SourceOrder.h"
#include "client/facade/MosaicReading.h"
#include "client/raster/SystemTexts.h"
#include "client/stac/StacMosaic.h"
#include "client/stac/StacReader.h"

namespace vlclientui::client {
namespace {

constexpr std::int64_t pageLength = 1000;
constexpr int assetsOfItem = 16;

std::string assetsText(const std::string& id) {
  std::string text;
  for (int i = 0; i < assetsOfItem; ++i) {
    const std::string key = i == 0 ? "visual" : "B" + std::to_string(i);
    text +=
        (i == 0 ? "\"" : ",\"") + key + R"(":{"href":"https://images.example/collection/)" + id + "/" + key +
        R"(.tif","type":"image/tiff; application=geotiff; profile=cloud-optimized","title":"Band )" + key +
        R"(","roles":[")" + (i == 0 ? "visual" : "data") +
        R"("],"eo:bands":[{"name":"x","common_name":"red","center_wavelength":0.665,"full_width_half_max":0.038}],)"
        R"("raster:bands":[{"data_type":"uint16","nodata":0,"scale":0.0001,"offset":-0.1}]})";
  }
  return text;
}

// A grid of scenes, 6 KB each, as services tell them; one after another lies in another zone.
std::string itemText(std::int64_t number, std::int64_t zones) {
  const std::string id = "S2_32T_" + std::to_string(20200000 + number) + "_" + std::to_string(number);
  const double west = 6 + static_cast<double>(number % 100) * 0.1;
  const double south = 40 + static_cast<double>(number / 100) * 0.1;
  const auto corner = [](double x, double y) {
    return "[" + std::to_string(x) + "," + std::to_string(y) + "]";
  };
  const std::string ring = corner(west, south) + "," + corner(west + 1, south) + "," +
                           corner(west + 1, south + 1) + "," + corner(west, south + 1) + "," +
                           corner(west, south);
  const std::string day = std::to_string(10 + number % 19);
  return R"({"type":"Feature","stac_version":"1.0.0","id":")" + id + R"(","collection":"scenes","bbox":[)" +
         std::to_string(west) + "," + std::to_string(south) + "," + std::to_string(west + 1) + "," +
         std::to_string(south + 1) + R"(],"geometry":{"type":"Polygon","coordinates":[[)" + ring +
         R"(]]},"properties":{"datetime":"2021-06-)" + day + R"(T10:26:01Z","eo:cloud_cover":)" +
         std::to_string(number % 100) +
         R"(,"platform":"sentinel","instruments":["msi"],"gsd":10,"view:sun_elevation":52.25,"proj:epsg":)" +
         std::to_string(32631 + number % zones) + R"(,"proj:shape":[10980,10980],"proj:transform":[10,0,)" +
         std::to_string(300000 + (number % 100) * 1000) + R"(,0,-10,)" +
         std::to_string(5000000 + (number / 100) * 1000) + R"(]},"assets":{)" + assetsText(id) +
         R"(},"links":[{"rel":"self","href":"https://api.example/collections/scenes/items/)" + id +
         R"("},{"rel":"collection","href":"https://api.example/collections/scenes"}]})";
}

std::string pageText(std::int64_t page, std::int64_t zones) {
  std::string text = R"({"type":"FeatureCollection","features":[)";
  for (std::int64_t i = 0; i < pageLength; ++i)
    text += (i == 0 ? "" : ",") + itemText(page * pageLength + i, zones);
  return text + R"(],"links":[],"numberMatched":10000})";
}

const std::vector<std::string>& pages() {
  static const std::vector<std::string> made = [] {
    std::vector<std::string> texts;
    for (std::int64_t page = 0; page < 10; ++page) texts.push_back(pageText(page, 4));
    return texts;
  }();
  return made;
}

RasterFacts sampleFacts() {
  RasterFacts facts;
  facts.title = "sample";
  facts.pixelType = "Byte";
  facts.bandCount = 3;
  facts.colorBands = 3;
  facts.bitDepth = 8;
  facts.columns = facts.rows = facts.fileColumns = facts.fileRows = 10980;
  facts.pixelSize = facts.pixelHeight = 10;
  facts.envelope = {300000, 4890200, 409800, 5000000};
  facts.srsId = "EPSG:32631";
  OGRSpatialReference system;
  if (system.importFromEPSG(32631) == OGRERR_NONE) setSystem(facts, system);
  return facts;
}

void parseBySimdjson(benchmark::State& state) {
  for (auto _ : state) {
    simdjson::dom::parser parser;
    for (const std::string& page : pages()) {
      simdjson::dom::element root;
      benchmark::DoNotOptimize(parser.parse(page).get(root));
    }
  }
}

void parseByNlohmann(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string& page : pages()) benchmark::DoNotOptimize(nlohmann::json::parse(page));
  }
}

void addItems(std::vector<StacFound>& items, StacReader& reader, const std::string& page) {
  static const auto base =
      std::make_shared<const std::string>("https://api.example/collections/scenes/items");
  auto read = reader.read(page);
  for (StacItem& item : std::get<StacDocument>(read).items) items.push_back({std::move(item), base});
}

std::vector<StacFound> itemsOf(const std::vector<std::string>& texts) {
  std::vector<StacFound> items;
  StacReader reader;
  for (const std::string& text : texts) addItems(items, reader, text);
  return items;
}

void readItems(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(itemsOf(pages()));
}

// Holds the items, as a catalogue does, and nothing else.
class Items final : public MosaicOrigin {
 public:
  explicit Items(const std::vector<StacFound>& items) : items_(items) {}

  [[nodiscard]] std::vector<std::string> choices() const override { return assetNames(items_); }
  [[nodiscard]] std::variant<MosaicDefinition, std::string> definition(
      const std::string& /*choice*/) override {
    MosaicDefinition made;
    made.title = "Scenes";
    made.sources = mosaicSources(items_, {}, made.problems);
    return made;
  }
  [[nodiscard]] bool learn(const Bounds& /*geographic*/) override { return false; }

 private:
  const std::vector<StacFound>& items_;
};

ImageServiceRecord mosaicOf(const std::vector<StacFound>& items) {
  CatalogueEntry entry{EntryKind::Mosaic, {}, "scenes", {}};
  entry.origin = std::make_shared<Items>(items);
  entry.definition = std::get<MosaicDefinition>(entry.origin->definition({}));
  MosaicReading mosaic(std::move(entry), [](const auto& files) {
    return std::vector<RasterResult>(files.size(), RasterResult(sampleFacts()));
  });
  ImageServiceRecord service;
  service.kind = ServiceKind::Mosaic;
  return mosaic.read(std::move(service), {});
}

// So many items in so many zones. Their text is made page by page, beside the clock.
void makeMosaic(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    std::vector<StacFound> items;
    {
      StacReader reader;
      for (std::int64_t page = 0; items.size() < count; ++page) {
        state.PauseTiming();
        const std::string text = pageText(page, state.range(1));
        state.ResumeTiming();
        addItems(items, reader, text);
      }
    }
    const ImageServiceRecord service = mosaicOf(items);
    if (service.sources.size() != count) state.SkipWithError("sources are missing");
    benchmark::DoNotOptimize(drawingOf(service, {}));
    benchmark::DoNotOptimize(averageSpacing(service.sources));
  }
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  state.counters["peak_MB"] = static_cast<double>(usage.ru_maxrss) / 1024;
}

// Which items an image shows.
void findItemsOfAnArea(benchmark::State& state) {
  const Drawing drawing = drawingOf(mosaicOf(itemsOf(pages())), {});
  const Bounds area{310000, 4900000, 320000, 4910000};
  for (auto _ : state) {
    std::size_t found = 0;
    for (const std::size_t i : drawing.order) {
      const Bounds& place = drawing.service->sources[i].place;
      found += place.xMin < area.xMax && area.xMin < place.xMax && place.yMin < area.yMax &&
               area.yMin < place.yMax;
    }
    benchmark::DoNotOptimize(found);
  }
}

void orderByDate(benchmark::State& state) {
  std::vector<ImageSource> sources;
  for (const StacFound& found : itemsOf(pages())) {
    sources.push_back({found.item.id, found.item.id, found.item.attributes, {}, {}});
  }
  DrawingProperties properties;
  properties.method = MosaicMethod::ByAttribute;
  properties.orderField = "datetime";
  properties.orderBase = "2021-06-15";
  for (auto _ : state) benchmark::DoNotOptimize(orderedSources(sources, properties));
}

BENCHMARK(parseBySimdjson)->Unit(benchmark::kMillisecond);
BENCHMARK(parseByNlohmann)->Unit(benchmark::kMillisecond);
BENCHMARK(readItems)->Unit(benchmark::kMillisecond);
BENCHMARK(makeMosaic)
    ->Args({10000, 1})
    ->Args({10000, 4})
    ->Args({10000, 12})
    ->Args({100000, 12})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(findItemsOfAnArea)->Unit(benchmark::kMillisecond);
BENCHMARK(orderByDate)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vlclientui::client
