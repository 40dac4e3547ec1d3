#include "client/mapping/SourceBands.h"

#include <algorithm>
#include <cstddef>

namespace vlclientui::client {
namespace {

constexpr std::size_t colorCount = 3;

void addNumber(SourceBands& bands, int number) {
  const auto found = std::ranges::find(bands.numbers, number);
  bands.from.push_back(static_cast<std::size_t>(found - bands.numbers.begin()));
  if (found == bands.numbers.end()) bands.numbers.push_back(number);
}

}  // namespace

std::optional<SourceBands> sourceBandsOf(const OpenRaster& source, const std::vector<int>& model,
                                         const std::vector<int>& shown) {
  SourceBands bands;
  // One band lies over three colors as gray, or in the colors of its palette.
  const bool spreads = source.colors.size() == 1 && model.size() == colorCount;
  if (spreads) bands.palette = source.palette;
  for (const int band : shown) {
    const auto position = static_cast<std::size_t>(std::ranges::find(model, band) - model.begin());
    if (position >= (spreads ? model : source.colors).size()) return std::nullopt;
    addNumber(bands, source.colors[spreads ? 0 : position]);
    bands.components.push_back(static_cast<int>(std::min(position, colorCount - 1)));
  }
  return bands;
}

}  // namespace vlclientui::client
