// What leaving a box of the export window costs, from the refusal check to the last box formatted: the work
// on boxes in memory, without a window. Beside it stand the texts alone that one recalculation reads and
// writes.

#include <string>

#include <benchmark/benchmark.h>

#include "Counted.h"
#include "documents/NumberText.h"
#include "support/ExportFixture.h"

namespace {

using namespace vlclientui;

/// An open export window over a fake service, on the platform of the tests.
class Bench : public test::ExportFixture {
 public:
  explicit Bench(const LocaleFormat& locale) { system->locale = locale; }
  void TestBody() override {}

  template <class Act>
  void inWindow(Act act) {
    show([&](ExportDialogForm&, ExportControl& control) { act(control); });
  }
};

LocaleFormat localeOf(const benchmark::State& state) {
  return state.range(0) == 0 ? LocaleFormat{} : test::germanFormat();
}

/// Moves in and out of a box; the text differs each time, so that what follows the box is recalculated.
void leave(benchmark::State& state, TextBox ExportControl::*box, const std::string& one,
           const std::string& other) {
  Bench bench(localeOf(state));
  bench.inWindow([&](ExportControl& control) {
    bool first = false;
    for (auto _ : state) {
      first = !first;
      benchmarks::counted([&] {
        (control.*box).userFocuses();
        (control.*box).userTypes(first ? one : other);
        control.ExportMD.userFocuses();
      });
    }
    state.counters["estimateLength"] = static_cast<double>(control.uiTxtMB.text().size());
  });
}

void edgeLeft(benchmark::State& state) { leave(state, &ExportControl::uiTxtLeft, "1100", "1200"); }
void widthLeft(benchmark::State& state) { leave(state, &ExportControl::uiTxtWidth, "750", "800"); }
void columnsLeft(benchmark::State& state) { leave(state, &ExportControl::uiTxtCols, "500", "700"); }
void pixelSizeXLeft(benchmark::State& state) { leave(state, &ExportControl::uiTxtGSDX, "2", "3"); }

/// The nine numbers that a recalculation shows, each read and formatted once.
void textsAlone(benchmark::State& state) {
  const LocaleFormat locale = localeOf(state);
  const std::string text = formatDouble(1234.5678, "###.000", locale);
  for (auto _ : state) {
    for (int box = 0; box < 9; ++box) {
      benchmark::DoNotOptimize(formatDouble(textToDouble(text, locale), "###.000", locale));
    }
  }
}

// Argument: 0 for a point, 1 for a comma as decimal separator.
BENCHMARK(edgeLeft)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(widthLeft)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(columnsLeft)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(pixelSizeXLeft)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(textsAlone)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
