// How long the rows of a list and the nodes of a tree take to reach the screen's model, beside one bare parse
// of the same document by the XML library itself, and what a key in an editable page costs.

#include <memory>
#include <string>

#include <benchmark/benchmark.h>
#include <libxml/parser.h>

#include "Counted.h"
#include "engine/EditableForm.h"
#include "engine/ListModel.h"
#include "engine/TreeModel.h"
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
    benchmarks::counted([&] {
      auto rows = engine::ListRows::parse(xmlService(), text);
      benchmark::DoNotOptimize(rows);
    });
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

std::string treeDocument(std::int64_t nodes) {
  std::string text = "<All>";
  for (std::int64_t node = 0; node < nodes / 100; ++node) {
    text += "<Group>";
    for (std::int64_t leaf = 0; leaf < 99; ++leaf)
      text += "<Leaf>value " + std::to_string(node * 100 + leaf) + "</Leaf>";
    text += "</Group>";
  }
  return text + "</All>";
}

/// The floor: libxml2 alone.
void libxml2Parse(benchmark::State& state) {
  const auto text = treeDocument(state.range(0));
  for (auto _ : state) {
    xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
    benchmark::DoNotOptimize(document);
    xmlFreeDoc(document);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(libxml2Parse)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// Until the first screenful can be drawn.
void treeShown(benchmark::State& state) {
  const auto text = treeDocument(state.range(0));
  for (auto _ : state) {
    benchmarks::counted([&] {
      const auto tree = engine::TreeModel::parse(xmlService(), text);
      for (std::size_t row = 0; row < 50; ++row) {
        const auto node = tree->child(engine::TreeModel::root, row);
        benchmark::DoNotOptimize(tree->childCount(node));
        benchmark::DoNotOptimize(tree->value(node));
      }
    });
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(treeShown)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

/// A search that finds nothing: the first one makes every node, a later one only reads them.
void treeSearched(benchmark::State& state) {
  const auto tree = engine::TreeModel::parse(xmlService(), treeDocument(state.range(0)));
  if (state.range(1) > 0) (void)tree->find("nowhere", 0, engine::TreeModel::Direction::Forward, true);
  for (auto _ : state) {
    benchmark::DoNotOptimize(tree->find("nowhere", 0, engine::TreeModel::Direction::Forward, true));
  }
}
BENCHMARK(treeSearched)->Args({100'000, 0})->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(treeSearched)->Args({100'000, 1})->Unit(benchmark::kMillisecond);

/// A key in a field of a page with 40 fields, and the result that a host asks for.
void keyInAPage(benchmark::State& state) {
  std::string definition = "<V>";
  std::string data = "<V>";
  for (int field = 0; field < 40; ++field) {
    const auto name = "F" + std::to_string(field);
    definition += "<" + name + " " + name + "_KIND_='number'/>";
    data += "<" + name + ">" + std::to_string(field) + "</" + name + ">";
  }
  engine::EditableForm form(xmlService(), {definition + "</V>", "", data + "</V>", "//"},
                            engine::PageMode::Editable);
  int text = 0;
  for (auto _ : state) {
    benchmarks::counted([&] {
      form.edit("V/F7", std::to_string(++text));
      benchmark::DoNotOptimize(form.result());
    });
  }
}
BENCHMARK(keyInAPage)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vlclientui
