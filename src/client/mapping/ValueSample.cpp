#include "client/mapping/ValueSample.h"

#include <algorithm>
#include <cmath>

namespace vlclientui::client {
namespace {

constexpr int enough = 256;         // pixels each way, to tell what a raster holds
constexpr double mostAtOnce = 1e6;  // pixels of a level that is read whole
constexpr int side = 64;            // pixels of a spot, where it is not
constexpr std::size_t mostSpots = 100;
constexpr int farthest = 16;  // pixels between which slopes are measured

// The coarsest that still tells enough.
std::size_t levelFor(const OpenRaster& raster) {
  std::size_t level = raster.levels.size() - 1;
  while (level > 0 && (raster.levels[level].columns < enough || raster.levels[level].rows < enough)) --level;
  return level;
}

std::vector<Window> spotsOf(const RasterLevel& level, std::size_t sources) {
  if (static_cast<double>(level.columns) * level.rows <= mostAtOnce) {
    return {{0, 0, level.columns, level.rows}};
  }
  const std::size_t wanted = std::max<std::size_t>(4, mostSpots / sources);
  const int across = std::max(2, static_cast<int>(std::sqrt(static_cast<double>(wanted))));
  std::vector<Window> spots;
  for (int row = 0; row < across; ++row) {
    for (int column = 0; column < across; ++column) {
      const auto at = [&](int number, int length) {
        return std::max(0, static_cast<int>((number + 0.5) / across * length) - side / 2);
      };
      spots.push_back({at(column, level.columns), at(row, level.rows), side, side});
    }
  }
  return spots;
}

}  // namespace

ReadingEnd ValueSample::add(const OpenRaster& raster, const SourceBands& bands, std::size_t sources) {
  PatchWish wish;
  wish.level = levelFor(raster);
  wish.bands = bands.numbers;
  wish.reduction = Reduction::Pick;
  for (const Window& spot : spotsOf(raster.levels[wish.level], sources)) {
    wish.window = spot;
    PixelPatch patch;
    const ReadingEnd end = readPatch(raster, wish, patch);
    if (end != ReadingEnd::Whole) return end;
    takeValues(patch, bands);
    takeSlopes(patch);
  }
  return ReadingEnd::Whole;
}

void ValueSample::takeValues(const PixelPatch& patch, const SourceBands& bands) {
  constexpr std::size_t most = 65536;
  const std::size_t step = std::max<std::size_t>(1, patch.alpha.size() / most);
  for (std::size_t i = 0; i < patch.alpha.size(); i += step) {
    if (patch.alpha[i] == 0) continue;
    const float* sample = patch.samples.data() + i * static_cast<std::size_t>(patch.bands);
    for (std::size_t band = 0; band < values_.size(); ++band)
      values_[band].push_back(sample[bands.from[band]]);
  }
}

void ValueSample::takeSlopes(const PixelPatch& patch) {
  for (int step = 1; step <= farthest; step *= 2) takeSlopes(patch, step);
}

void ValueSample::takeSlopes(const PixelPatch& patch, int step) {
  Squares& squares = squares_[step * patch.across];
  const auto valueAt = [&](int column, int row) {
    const std::size_t i = patch.index(column, row);
    return patch.alpha[i] == 0 ? std::nan("") : patch.samples[i * static_cast<std::size_t>(patch.bands)];
  };
  for (int row = step; row + step < patch.window.height; row += 3) {
    for (int column = step; column + step < patch.window.width; column += 3) {
      const double east = (valueAt(column + step, row) - valueAt(column - step, row)) / 2;
      const double south = (valueAt(column, row + step) - valueAt(column, row - step)) / 2;
      const double square = east * east + south * south;
      if (!std::isfinite(square)) continue;
      squares.sum += square;
      ++squares.count;
    }
  }
}

ValueSample::Range ValueSample::range(std::size_t band, double lowShare, double highShare) const {
  std::vector<float> sorted = values_[band];
  if (sorted.empty()) return {};
  const auto at = [&](double share) {
    const auto place = static_cast<std::ptrdiff_t>(share * static_cast<double>(sorted.size() - 1));
    std::ranges::nth_element(sorted, sorted.begin() + place);
    return static_cast<double>(sorted[static_cast<std::size_t>(place)]);
  };
  const Range range{at(lowShare), at(highShare)};
  return range.high > range.low ? range : Range{range.low, range.low + 1};
}

// Ground is alike at all scales: differences grow by a power of the distance, found as a line through their
// logarithms.
ValueSample::Slopes ValueSample::slopes() const {
  double count = 0;
  double x = 0;
  double y = 0;
  double xx = 0;
  double xy = 0;
  for (const auto& [distance, squares] : squares_) {
    if (!(squares.count > 0) || !(squares.sum > 0)) continue;
    const double across = std::log(distance);
    const double up = std::log(squares.sum / squares.count) / 2;
    ++count;
    x += across;
    y += up;
    xx += across * across;
    xy += across * up;
  }
  if (count == 0) return {};
  const double spread = count * xx - x * x;
  const double roughness = spread > 1e-9 ? std::clamp((count * xy - x * y) / spread, 0.0, 1.0) : 1;
  return {std::exp((y - roughness * x) / count), roughness};
}

}  // namespace vlclientui::client
