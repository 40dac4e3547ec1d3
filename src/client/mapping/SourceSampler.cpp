#include "client/mapping/SourceSampler.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include <gdal_priv.h>

#include "client/mapping/MixedPixels.h"
#include "client/mapping/SamplingPlan.h"

namespace vlclientui::client {
namespace {

constexpr int smallestPart = 32;   // pixels of the tile that are read together
constexpr double quickArea = 4e6;  // pixels of a level: more are read in some blocks first
constexpr double exactArea = 2e6;  // pixels of a level: of so many the nearest are taken exactly
constexpr double blur = 1.2;       // so many pixels of the tile may come from one that was read

class Sampler {
 public:
  Sampler(const SampledSource& source, const OutputGrid& grid, SampleTile& tile)
      : source_(source),
        raster_(source.raster),
        grid_(grid),
        tile_(tile),
        part_(partFor(source.placing.reach(), grid)),
        places_(pixelsAt(grid, source.placing, part_)) {}

  SamplingEnd sample() {
    result_.end = samplePart(part_);
    return result_;
  }

 private:
  [[nodiscard]] std::size_t at(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(tile_.columns) +
           static_cast<std::size_t>(column);
  }

  [[nodiscard]] const MapPoint& placeAt(int column, int row) const {
    return places_[static_cast<std::size_t>(row - part_.y) * static_cast<std::size_t>(part_.width) +
                   static_cast<std::size_t>(column - part_.x)];
  }

  [[nodiscard]] bool isWithin(const MapPoint& pixel) const {
    return pixel.x >= 0 && pixel.y >= 0 && pixel.x < raster_.columns && pixel.y < raster_.rows;
  }

  template <class Use>
  void forEach(const Window& part, Use use) const {
    for (int row = part.y; row < part.y + part.height; ++row) {
      for (int column = part.x; column < part.x + part.width; ++column) {
        const std::size_t i = at(column, row);
        const MapPoint& place = placeAt(column, row);
        if (tile_.alpha[i] == 0 && isWithin(place)) use(i, place);
      }
    }
  }

  // What of a part has no pixels yet, and some around.
  [[nodiscard]] Window emptyIn(const Window& part) const {
    int left = part.width;
    int right = 0;
    int top = part.height;
    int bottom = 0;
    for (int row = 0; row < part.height; ++row) {
      const std::uint8_t* const begin = tile_.alpha.data() + at(part.x, part.y + row);
      const std::uint8_t* const end = begin + part.width;
      const auto* const first = std::find(begin, end, std::uint8_t{0});
      if (first == end) continue;
      const std::uint8_t* last = end;
      while (last[-1] != 0) --last;
      left = std::min(left, static_cast<int>(first - begin));
      right = std::max(right, static_cast<int>(last - begin));
      top = std::min(top, row);
      bottom = row + 1;
    }
    return {part.x + left, part.y + top, std::max(0, right - left), std::max(0, bottom - top)};
  }

  [[nodiscard]] Reached reachedBy(const Window& part) const {
    Reached reached;
    if (!isStraight()) {
      forEach(part, [&](std::size_t /*i*/, const MapPoint& place) { reached.add(place); });
      return reached;
    }
    const Window empty = emptyIn(part);
    if (empty.width == 0) return reached;
    // Its corners tell all.
    const auto clamped = [](double pixel, int count) { return std::clamp(pixel, 0.0, count - 1e-9); };
    const MapPoint& first = placeAt(empty.x, empty.y);
    const MapPoint& last = placeAt(empty.x + empty.width - 1, empty.y + empty.height - 1);
    const bool isBeside = std::max(first.x, last.x) < 0 || std::min(first.x, last.x) >= raster_.columns ||
                          std::max(first.y, last.y) < 0 || std::min(first.y, last.y) >= raster_.rows;
    if (isBeside) return reached;
    reached.add({clamped(first.x, raster_.columns), clamped(first.y, raster_.rows)});
    reached.add({clamped(last.x, raster_.columns), clamped(last.y, raster_.rows)});
    return reached;
  }

  // Near a pole, or where the earth's edges meet, neighbors of the map lie far apart in the raster: quarters
  // need less of it.
  ReadingEnd samplePart(const Window& part) {
    const Reached reached = reachedBy(part);
    if (reached.count == 0) return ReadingEnd::Whole;
    const double scale = scaleOf(part);
    const double needed = scale * scale * part.width * part.height;
    const bool isLarge = part.width > smallestPart || part.height > smallestPart;
    if (isLarge && reached.area() > 4 * needed + 65536) return sampleQuarters(part);
    return samplePlanned(part, planOf(reached, scale));
  }

  ReadingEnd sampleQuarters(const Window& part) {
    const int left = (part.width + 1) / 2;
    const int top = (part.height + 1) / 2;
    const std::array<Window, 4> quarters = {
        {{part.x, part.y, left, top},
         {part.x + left, part.y, part.width - left, top},
         {part.x, part.y + top, left, part.height - top},
         {part.x + left, part.y + top, part.width - left, part.height - top}}};
    for (const Window& quarter : quarters) {
      const ReadingEnd end = samplePart(quarter);
      if (end != ReadingEnd::Whole) return end;
    }
    return ReadingEnd::Whole;
  }

  // Pixels of the raster for one of the tile: the usual one of the part.
  [[nodiscard]] double scaleOf(const Window& part) const {
    std::vector<double> areas;
    const int step = std::max(1, std::max(part.width, part.height) / 24);
    for (int row = part.y; row + 1 < part.y + part.height; row += step) {
      for (int column = part.x; column + 1 < part.x + part.width; column += step) {
        const MapPoint& here = placeAt(column, row);
        const MapPoint& right = placeAt(column + 1, row);
        const MapPoint& below = placeAt(column, row + 1);
        if (!isWithin(here) || !right.isKnown() || !below.isKnown()) continue;
        areas.push_back(
            std::abs((right.x - here.x) * (below.y - here.y) - (right.y - here.y) * (below.x - here.x)));
      }
    }
    if (areas.empty()) return 1;
    const auto middle = areas.begin() + static_cast<std::ptrdiff_t>(areas.size() / 2);
    std::ranges::nth_element(areas, middle);
    return std::max(1e-6, std::sqrt(*middle));
  }

  // Whether rows and columns of the part run along those of the raster.
  [[nodiscard]] bool isStraight() const {
    if (!source_.placing.isStraight(grid_) || part_.width < 2 || part_.height < 2) return false;
    const MapPoint& first = placeAt(part_.x, part_.y);
    const MapPoint& right = placeAt(part_.x + 1, part_.y);
    const MapPoint& below = placeAt(part_.x, part_.y + 1);
    return first.isKnown() && right.y == first.y && below.x == first.x;
  }

  // Edges of the raster in pixels of the tile, where rows and columns run along its own.
  [[nodiscard]] std::optional<GridPlace> straightPlace() const {
    if (!isStraight()) return std::nullopt;
    const MapPoint& first = placeAt(part_.x, part_.y);
    const double across = placeAt(part_.x + 1, part_.y).x - first.x;
    const double down = placeAt(part_.x, part_.y + 1).y - first.y;
    if (!(across > 0) || !(down > 0)) return std::nullopt;
    const auto edge = [](double pixel) {
      const double whole = std::round(pixel);
      return std::abs(pixel - whole) < 1e-3 ? whole : pixel;
    };
    const double left = edge(part_.x + 0.5 - first.x / across);
    const double top = edge(part_.y + 0.5 - first.y / down);
    return GridPlace{left, top, edge(part_.x + 0.5 + (raster_.columns - first.x) / across) - left,
                     edge(part_.y + 0.5 + (raster_.rows - first.y) / down) - top};
  }

  [[nodiscard]] Resampling resamplingFor(double scale) const {
    const PixelMeaning meaning = raster_.isLabel ? PixelMeaning::Label : PixelMeaning::Quantity;
    if (const auto place = straightPlace()) {
      return chooseResampling(*place, raster_.columns, raster_.rows, meaning, source_.wish);
    }
    if (meaning == PixelMeaning::Label) return Resampling::Nearest;
    if (source_.wish) return *source_.wish;
    return scale > 1 ? Resampling::Average : Resampling::Bilinear;
  }

  // The coarsest level that is fine enough.
  [[nodiscard]] std::size_t levelFor(double coarsest) const {
    std::size_t level = 0;
    while (level + 1 < raster_.levels.size() && raster_.levels[level + 1].across <= coarsest) ++level;
    return level;
  }

  [[nodiscard]] ReadingPlan planOf(const Reached& reached, double scale) const {
    const Resampling resampling = resamplingFor(scale);
    const bool isNearest = resampling == Resampling::Nearest;
    ReadingPlan plan;
    plan.taking = isNearest ? Taking::Nearest : Taking::Between;
    plan.wish.bands = source_.bands.numbers;
    plan.wish.mayBeBytes = true;
    plan.wish.reduction = isNearest ? Reduction::Pick : Reduction::Mean;
    plan.wish.level = levelFor(isNearest ? scale * (1 + 1e-6) : scale * blur);
    const RasterLevel& level = raster_.levels[plan.wish.level];
    const double area = reached.area() / level.across / level.down;
    const double rest = scale / level.across;
    plan.isQuick = source_.pass != Pass::Fine && area > quickArea;
    plan.least = std::exp2(std::ceil(std::log2(scale * 4)));
    const bool isExact = isNearest && area <= exactArea;
    if (!isExact) plan.wish.step = std::max(1, static_cast<int>(isNearest ? rest : rest * blur));
    plan.wish.window = windowOf(reached, level.across * plan.wish.step, level.down * plan.wish.step);
    return plan;
  }

  // With the neighbors that are mixed in.
  static Window windowOf(const Reached& reached, double across, double down) {
    const int left = std::max(0, static_cast<int>(std::floor(reached.left / across)) - 1);
    const int top = std::max(0, static_cast<int>(std::floor(reached.top / down)) - 1);
    return {left, top, static_cast<int>(reached.right / across) + 2 - left,
            static_cast<int>(reached.bottom / down) + 2 - top};
  }

  ReadingEnd samplePlanned(const Window& part, const ReadingPlan& plan) {
    PixelPatch patch;
    const ReadingEnd end = plan.isQuick ? readQuickly(plan, patch) : readPatch(raster_, plan.wish, patch);
    if (end != ReadingEnd::Whole) return end;
    result_.isQuick = result_.isQuick || plan.isQuick;
    if (patch.bytes.empty())
      take(part, plan.taking, patch, patch.samples.data());
    else
      take(part, plan.taking, patch, patch.bytes.data());
    return ReadingEnd::Whole;
  }

  ReadingEnd readQuickly(const ReadingPlan& plan, PixelPatch& patch) const {
    const RasterLevel& level = raster_.levels[plan.wish.level];
    const double across = level.across * plan.wish.step;
    const double down = level.down * plan.wish.step;
    const auto scaled = [](int value, double by) { return static_cast<int>(std::min(value * by, 2e9)); };
    const int margin = static_cast<int>(plan.least);
    const Window& window = plan.wish.window;
    const Window reach{scaled(window.x, across) - margin, scaled(window.y, down) - margin,
                       scaled(window.width, across) + 2 * margin, scaled(window.height, down) + 2 * margin};
    return readSparsely(raster_, reach, plan.least, plan.wish.bands, plan.wish.reduction, patch);
  }

  static int clampedTo(double value, int count) {
    return value > 0 ? std::min(static_cast<int>(value), count - 1) : 0;
  }

  template <class Sample>
  void put(std::size_t i, const Sample* samples, std::uint8_t alpha) {
    float* to = tile_.samples.data() + i * tile_.bands;
    if (source_.bands.palette != nullptr) return putColor(i, static_cast<float>(samples[0]), alpha);
    for (std::size_t band = 0; band < tile_.bands; ++band) {
      to[band] = static_cast<float>(samples[source_.bands.from[band]]);
    }
    tile_.alpha[i] = alpha;
  }

  void putColor(std::size_t i, float number, std::uint8_t alpha) {
    GDALColorEntry entry{0, 0, 0, 0};
    source_.bands.palette->GetColorEntryAsRGB(static_cast<int>(number), &entry);
    const std::array<short, 3> parts = {entry.c1, entry.c2, entry.c3};
    for (std::size_t band = 0; band < tile_.bands; ++band) {
      tile_.samples[i * tile_.bands + band] = parts[static_cast<std::size_t>(source_.bands.components[band])];
    }
    tile_.alpha[i] = alpha;
  }

  [[nodiscard]] std::size_t nearestIn(const PixelPatch& patch, const MapPoint& pixel) const {
    return patch.index(clampedTo(pixel.x / patch.across - patch.window.x, patch.window.width),
                       clampedTo(pixel.y / patch.down - patch.window.y, patch.window.height));
  }

  // @param samples of the patch.
  template <class Sample>
  void take(const Window& part, Taking taking, const PixelPatch& patch, const Sample* samples) {
    static_assert(mostSamples == 4);
    if (taking == Taking::Nearest) {
      if (isStraight()) return takeNearestAlong(part, patch, samples);
      return forEach(part,
                     [&](std::size_t i, const MapPoint& place) { takeNearest(patch, samples, i, place); });
    }
    if (patch.bands == 1) return takeBetween<1>(part, patch, samples);
    if (patch.bands == 2) return takeBetween<2>(part, patch, samples);
    if (patch.bands == 3) return takeBetween<3>(part, patch, samples);
    takeBetween<4>(part, patch, samples);
  }

  template <class Sample>
  void takeNearest(const PixelPatch& patch, const Sample* samples, std::size_t i, const MapPoint& place) {
    const std::size_t from = nearestIn(patch, place);
    if (patch.alpha[from] == 0) return;
    put(i, samples + from * static_cast<std::size_t>(patch.bands), patch.alpha[from]);
  }

  // Where columns and rows run along those of the raster: each is found once.
  template <class Sample>
  void takeNearestAlong(const Window& part, const PixelPatch& patch, const Sample* samples) {
    constexpr int beyond = -1;
    const auto bands = static_cast<std::size_t>(patch.bands);
    std::vector<int> columns;
    for (int column = part.x; column < part.x + part.width; ++column) {
      const double x = placeAt(column, part.y).x;
      const bool isThere = x >= 0 && x < raster_.columns;
      columns.push_back(isThere ? clampedTo(x / patch.across - patch.window.x, patch.window.width) : beyond);
    }
    for (int row = part.y; row < part.y + part.height; ++row) {
      const double y = placeAt(part.x, row).y;
      if (!(y >= 0 && y < raster_.rows)) continue;
      const std::size_t first =
          patch.index(0, clampedTo(y / patch.down - patch.window.y, patch.window.height));
      std::size_t i = at(part.x, row);
      for (const int column : columns) {
        const std::size_t from = first + static_cast<std::size_t>(std::max(column, 0));
        const bool isTaken = column != beyond && tile_.alpha[i] == 0 && patch.alpha[from] != 0;
        if (isTaken) put(i, samples + from * bands, patch.alpha[from]);
        ++i;
      }
    }
  }

  template <std::size_t bands, class Sample>
  void takeBetween(const Window& part, const PixelPatch& patch, const Sample* samples) {
    const double perColumn = 1 / patch.across;
    const double perRow = 1 / patch.down;
    if (isStraight()) return takeStraight<bands>(part, patch, samples);
    forEach(part, [&](std::size_t i, const MapPoint& place) {
      const Between across = between(place.x * perColumn - patch.window.x - 0.5, patch.window.width);
      const Between down = between(place.y * perRow - patch.window.y - 0.5, patch.window.height);
      takeMixed<bands>(patch, samples, across, down, i);
    });
  }

  // Where columns and rows run along those of the raster: each is found once.
  template <std::size_t bands, class Sample>
  void takeStraight(const Window& part, const PixelPatch& patch, const Sample* samples) {
    const bool isPlain = isAlike(bands) && isWhole(patch);
    std::vector<Between> columns;
    for (int column = part.x; column < part.x + part.width; ++column) {
      const double x = placeAt(column, part.y).x;
      columns.push_back(between(x * (1 / patch.across) - patch.window.x - 0.5, patch.window.width));
      columns.back().isBeyond = !(x >= 0 && x < raster_.columns);
    }
    const bool isClosed = std::ranges::all_of(
        columns, [](const Between& across) { return across.isInside || across.isBeyond; });
    FloatRows<bands, Sample> rows(patch, samples);
    for (int row = part.y; row < part.y + part.height; ++row) {
      const double y = placeAt(part.x, row).y;
      if (!(y >= 0 && y < raster_.rows)) continue;
      const Between down = between(y * (1 / patch.down) - patch.window.y - 0.5, patch.window.height);
      std::size_t i = at(part.x, row);
      if (isPlain && down.isInside) {
        mixRow<bands>(rows.row(down.first), rows.row(down.first + 1), columns, down.share,
                      tile_.samples.data() + i * bands, tile_.alpha.data() + i);
        if (isClosed) continue;
      }
      for (const Between& across : columns) {
        if (tile_.alpha[i] == 0 && !across.isBeyond) takeMixed<bands>(patch, samples, across, down, i);
        ++i;
      }
    }
  }

  // Whether bands of the patch are those of the tile.
  [[nodiscard]] bool isAlike(std::size_t bands) const {
    if (source_.bands.palette != nullptr || tile_.bands != bands) return false;
    for (std::size_t band = 0; band < bands; ++band) {
      if (source_.bands.from[band] != band) return false;
    }
    return true;
  }

  // Most pixels lie between four that are whole.
  template <std::size_t bands, class Sample>
  void takeMixed(const PixelPatch& patch, const Sample* samples, const Between& across, const Between& down,
                 std::size_t i) {
    if (!across.isInside || !down.isInside) return takeAround(patch, samples, across, down, i);
    const auto width = static_cast<std::size_t>(patch.window.width);
    const std::size_t corner = patch.index(across.first, down.first);
    const std::uint8_t* alpha = patch.alpha.data() + corner;
    if ((alpha[0] & alpha[1] & alpha[width] & alpha[width + 1]) != 255) {
      return takeAround(patch, samples, across, down, i);
    }
    const Sample* upper = samples + corner * bands;
    std::array<float, bands> values{};
    mix<bands>(upper, upper + width * bands, across.share, down.share, values.data());
    put(i, values.data(), 255);
  }

  // The nearest pixel tells whether there is a hole; holes are not mixed in.
  template <class Sample>
  void takeAround(const PixelPatch& patch, const Sample* samples, const Between& across, const Between& down,
                  std::size_t i) {
    const auto width = static_cast<std::size_t>(tile_.columns);
    const MapPoint& place = placeAt(static_cast<int>(i % width), static_cast<int>(i / width));
    if (patch.alpha[nearestIn(patch, place)] == 0) return;
    std::array<float, mostSamples> sums{};
    float weights = 0;
    float alpha = 0;
    const auto bands = static_cast<std::size_t>(patch.bands);
    for (int corner = 0; corner < 4; ++corner) {
      const bool isRight = (corner & 1) != 0;
      const bool isBelow = (corner & 2) != 0;
      const float weight =
          (isRight ? across.share : 1 - across.share) * (isBelow ? down.share : 1 - down.share);
      const std::size_t from =
          patch.index(std::clamp(across.first + (isRight ? 1 : 0), 0, patch.window.width - 1),
                      std::clamp(down.first + (isBelow ? 1 : 0), 0, patch.window.height - 1));
      if (patch.alpha[from] == 0) continue;
      weights += weight;
      alpha += weight * static_cast<float>(patch.alpha[from]);
      const Sample* sample = samples + from * bands;
      for (std::size_t band = 0; band < bands; ++band) {
        sums[band] += weight * static_cast<float>(sample[band]);
      }
    }
    for (std::size_t band = 0; band < bands; ++band) sums[band] /= weights;
    put(i, sums.data(), static_cast<std::uint8_t>(std::clamp(alpha / weights + 0.5F, 1.0F, 255.0F)));
  }

  const SampledSource& source_;
  const OpenRaster& raster_;
  const OutputGrid& grid_;
  SampleTile& tile_;
  const Window part_;
  const std::vector<MapPoint> places_;
  SamplingEnd result_;
};

}  // namespace

SamplingEnd sampleSource(const SampledSource& source, const OutputGrid& grid, SampleTile& tile) {
  return Sampler(source, grid, tile).sample();
}

}  // namespace vlclientui::client
