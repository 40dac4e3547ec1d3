// Conversions under a locale, beside the bare conversions of the standard library.

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "documents/NumberText.h"

namespace {

using namespace vlclientui;

const LocaleFormat locale{".", ",", "$"};

// Coordinates and pixel sizes as the dialogs show them.
const std::vector<double> values = {
    -179.987654321, 0.000277777777777778, 512345.25, 4649776.224729, 30, 1e-7};

std::vector<std::string> texts() {
  std::vector<std::string> written;
  for (const double value : values) written.push_back(doubleToText(value, locale));
  return written;
}

void countItems(benchmark::State& state) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values.size()));
}

void textToDoubleUnderALocale(benchmark::State& state) {
  const auto inputs = texts();
  for (auto _ : state) {
    for (const auto& text : inputs) benchmark::DoNotOptimize(textToDouble(text, locale));
  }
  countItems(state);
}
BENCHMARK(textToDoubleUnderALocale);

void bareFromChars(benchmark::State& state) {
  const auto inputs = texts();
  for (auto _ : state) {
    for (const auto& text : inputs) {
      double value = 0;
      std::from_chars(text.data(), text.data() + text.size(), value);
      benchmark::DoNotOptimize(value);
    }
  }
  countItems(state);
}
BENCHMARK(bareFromChars);

void doubleToTextUnderALocale(benchmark::State& state) {
  for (auto _ : state) {
    for (const double value : values) benchmark::DoNotOptimize(doubleToText(value, locale));
  }
  countItems(state);
}
BENCHMARK(doubleToTextUnderALocale);

void bareSnprintf(benchmark::State& state) {
  char buffer[64];
  for (auto _ : state) {
    for (const double value : values) {
      std::snprintf(buffer, sizeof buffer, "%.15g", value);
      benchmark::DoNotOptimize(buffer);
      benchmark::ClobberMemory();
    }
  }
  countItems(state);
}
BENCHMARK(bareSnprintf);

void pictureUnderALocale(benchmark::State& state) {
  for (auto _ : state) {
    for (const double value : values) {
      benchmark::DoNotOptimize(formatDouble(value, "###.000000000", locale));
    }
  }
  countItems(state);
}
BENCHMARK(pictureUnderALocale);

}  // namespace
