#include "client/drawing/MosaicSpacing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace vlclientui::client {
namespace {

// Position along the axis in question, and across it.
struct Center {
  double along = 0;
  double beside = 0;
};

// Flights of different years over the same ground never match exactly.
constexpr double samePlace = 0.05;

// The centers are sorted, so the search stops when nothing nearer can follow.
std::optional<double> stepFrom(const std::vector<Center>& sorted, std::size_t index, double least) {
  const Center& from = sorted[index];
  double nearest = std::numeric_limits<double>::max();
  std::optional<double> step;
  for (std::size_t i = index + 1; i < sorted.size() && sorted[i].along - from.along < nearest; ++i) {
    const double along = sorted[i].along - from.along;
    const double beside = std::abs(sorted[i].beside - from.beside);
    if (along < least || beside > along || std::hypot(along, beside) >= nearest) continue;
    nearest = std::hypot(along, beside);
    step = along;
  }
  return step;
}

double meanStep(std::vector<Center> centers, double size) {
  std::sort(centers.begin(), centers.end(),
            [](const Center& a, const Center& b) { return a.along < b.along; });
  double sum = 0;
  int count = 0;
  for (std::size_t i = 0; i < centers.size(); ++i) {
    const auto step = stepFrom(centers, i, size * samePlace);
    if (!step) continue;
    sum += *step;
    ++count;
  }
  return count > 0 ? sum / count : size;
}

template <class Length>
double mean(const std::vector<ImageSource>& sources, Length length) {
  double sum = 0;
  for (const ImageSource& source : sources) sum += length(source.place);
  return sum / static_cast<double>(sources.size());
}

}  // namespace

Spacing averageSpacing(const std::vector<ImageSource>& sources) {
  std::vector<Center> across;
  std::vector<Center> down;
  for (const ImageSource& source : sources) {
    const double x = (source.place.xMin + source.place.xMax) / 2;
    const double y = (source.place.yMin + source.place.yMax) / 2;
    across.push_back({x, y});
    down.push_back({y, x});
  }
  return {meanStep(std::move(across), mean(sources, [](const Bounds& b) { return b.xMax - b.xMin; })),
          meanStep(std::move(down), mean(sources, [](const Bounds& b) { return b.yMax - b.yMin; }))};
}

}  // namespace vlclientui::client
