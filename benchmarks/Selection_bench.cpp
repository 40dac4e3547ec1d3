// The add-service window's list, from a server's answer to the rows that the form engine gets, beside one
// bare parse of the same answer. The engine is a recording fake, so that only the window's work counts.

#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Counted.h"
#include "frame/ThreadState.h"
#include "selection/ImageServicesControl.h"
#include "support/SelectionFixture.h"

namespace {

using namespace vlclientui;

/// As servers describe a service, in about 700 characters.
std::string description(std::int64_t number) {
  const std::string west = std::to_string(number % 360 - 180) + ".25";
  return "<ImageServiceInfo><Name>service" + std::to_string(number) +
         "</Name><Source>Aerial survey</Source><MaxNCols>4096</MaxNCols><MaxNRows>4096</MaxNRows>"
         "<GeographicEnvelope><XMin>" +
         west + "</XMin><YMin>44.5</YMin><XMax>" + west +
         "</XMax><YMax>48.125</YMax></GeographicEnvelope><KeyDetails><Title>Survey of region " +
         std::to_string(number) +
         "</Title><GeographicRegion>Alps</GeographicRegion><PixelUnit>metre</PixelUnit>"
         "<PixelSource>Aerial camera</PixelSource></KeyDetails><ColorSpace>1</ColorSpace>"
         "<PixelType>Byte</PixelType><BitDepth>8</BitDepth><NBands>3</NBands></ImageServiceInfo>";
}

/// Services spread over that many folders; at the root with none.
std::string answer(std::int64_t services, std::int64_t folders) {
  std::vector<test::ServiceText> texts;
  for (std::int64_t i = 0; i < services; ++i) {
    const std::string folder = folders > 0 ? "folder" + std::to_string(i % folders) + "/" : "";
    texts.push_back({folder + "service" + std::to_string(i), description(i)});
  }
  return test::serverInfo(texts);
}

/// Services of one provider each.
std::string answerOfManyProviders(std::int64_t services) {
  std::string xml = "<Vorlane><Server><Info><Detailed><ServiceProviders>";
  for (std::int64_t i = 0; i < services; ++i) {
    xml += "<ServiceProvider><Services><Service><Name>service" + std::to_string(i) + "</Name>" +
           description(i) + "</Service></Services></ServiceProvider>";
  }
  return xml + "</ServiceProviders></Detailed></Info></Server></Vorlane>";
}

/// A control over a fake server, on the platform of the tests.
class Bench : public test::SelectionFixture {
 public:
  explicit Bench(std::string xml) : control_(nullptr) {
    server->answer = std::move(xml);
    control_.myClient = std::make_shared<test::FakeServerClient>(server);
    threadState().ClientXADefPath = "C:\\Program\\VLClient.XADef";
  }
  void TestBody() override {}

  void load() {
    forgetRecords();
    control_.ShowThePlexa();
  }

  void enterAndLeave(const std::string& folder) {
    forgetRecords();
    const auto engine = plexa->lastEngine();
    engine->Notify.raise(*engine, {"DblClick", "", "/", folder, 0});
    engine->Notify.raise(*engine, {"DblClick", "", "/" + folder, "", 8});
  }

  void parse() const {
    const auto document = currentPlatform().xml->createDocument();
    benchmark::DoNotOptimize(document->loadXml(server->answer));
  }

  /// Characters of the rows that the engine got last; 0 means that the measured step did not happen.
  [[nodiscard]] double rowCharacters() const { return static_cast<double>(plexa->lastListValues().size()); }

 private:
  void forgetRecords() {
    plexa->record->calls.clear();
    server->requests.clear();
  }

  ImageServicesControl control_;
};

void finish(benchmark::State& state, const Bench& bench) {
  state.counters["rowCharacters"] = bench.rowCharacters();
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}

/// Arguments: services, folders.
void answerToRowsAtTheRoot(benchmark::State& state) {
  Bench bench(answer(state.range(0), state.range(1)));
  for (auto _ : state) benchmarks::counted([&] { bench.load(); });
  finish(state, bench);
}
BENCHMARK(answerToRowsAtTheRoot)->Args({5000, 100})->Unit(benchmark::kMillisecond);

void answerToRowsOfAFlatList(benchmark::State& state) {
  Bench bench(answer(state.range(0), 0));
  for (auto _ : state) benchmarks::counted([&] { bench.load(); });
  finish(state, bench);
}
BENCHMARK(answerToRowsOfAFlatList)
    ->Arg(5000)
    ->Arg(25000)
    ->Arg(50000)
    ->Arg(500000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

void answerToRowsOfManyProviders(benchmark::State& state) {
  Bench bench(answerOfManyProviders(state.range(0)));
  for (auto _ : state) benchmarks::counted([&] { bench.load(); });
  finish(state, bench);
}
BENCHMARK(answerToRowsOfManyProviders)
    ->Arg(2000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

/// Into one of 100 folders and back.
void folderEnteredAndLeft(benchmark::State& state) {
  Bench bench(answer(state.range(0), 100));
  bench.load();
  for (auto _ : state) benchmarks::counted([&] { bench.enterAndLeave("folder7"); });
  finish(state, bench);
}
BENCHMARK(folderEnteredAndLeft)->Arg(5000)->Unit(benchmark::kMillisecond);

/// Into the folder that holds everything, and back.
void oneFolderEnteredAndLeft(benchmark::State& state) {
  Bench bench(answer(state.range(0), 1));
  bench.load();
  for (auto _ : state) benchmarks::counted([&] { bench.enterAndLeave("folder0"); });
  finish(state, bench);
}
BENCHMARK(oneFolderEnteredAndLeft)
    ->Arg(5000)
    ->Arg(25000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

void bareParse(benchmark::State& state) {
  const Bench bench(answer(state.range(0), 0));
  for (auto _ : state) bench.parse();
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(bareParse)
    ->Arg(5000)
    ->Arg(25000)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
