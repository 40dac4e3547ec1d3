// How long the rows of a list take to reach the screen's model, beside one bare parse of the same document.

#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "engine/ListModel.h"
#include "platform/LibXmlService.h"

namespace vlclientui {
namespace {

const platform::LibXmlService& xmlService() {
  static const platform::LibXmlService service(platform::PathTranslation::ofUser());
  return service;
}

std::string listValues(std::int64_t rows) {
  std::string text = "<list_values>";
  for (std::int64_t row = 0; row < rows; ++row) {
    const auto number = std::to_string(row);
    text += "<Service_" + number + " icon=\"VLSERVICE\" displayName=\"Service " + number +
            "\" Geographic_Region=\"Alps\" Pixel_Unit=\"Metre\" Pixel_Source=\"Elevation\" "
            "Color_Space=\"Grayscale\" Pixel_Type=\"Int16\" Bit_Depth=\"16\" Bands=\"1\"/>";
  }
  return text + "</list_values>";
}

void bareParse(benchmark::State& state) {
  const auto text = listValues(state.range(0));
  for (auto _ : state) {
    const auto document = xmlService().createDocument();
    benchmark::DoNotOptimize(document->loadXml(text));
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(bareParse)->Arg(5'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

void listRows(benchmark::State& state) {
  const auto text = listValues(state.range(0));
  for (auto _ : state) {
    auto rows = engine::ListRows::parse(xmlService(), text);
    benchmark::DoNotOptimize(rows);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(listRows)->Arg(5'000)->Arg(50'000)->Unit(benchmark::kMillisecond);

/// What a view does for a screenful of rows.
void cellsOfAScreen(benchmark::State& state) {
  const auto columns = engine::parseListFields(
      xmlService(),
      "<list_fields><Name width='15'/><Geographic_Region width='8'/><Pixel_Source width='8'/>"
      "<Pixel_Unit width='8'/><Color_Space width='8'/><Pixel_Type width='8'/><Bit_Depth width='8'/>"
      "<Bands width='5'/></list_fields>");
  const engine::ListModel model(*columns, engine::ListRows::parse(xmlService(), listValues(50'000)));
  for (auto _ : state) {
    for (std::size_t row = 25'000; row < 25'050; ++row) {
      for (std::size_t column = 0; column < model.columnCount(); ++column) {
        benchmark::DoNotOptimize(model.cell(row, column));
      }
    }
  }
}
BENCHMARK(cellsOfAScreen)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vlclientui
