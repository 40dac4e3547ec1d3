#include "client/mapping/SpreadSources.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <set>
#include <utility>

namespace vlclientui::client {
namespace {

constexpr int ninthsAcross = 3;
constexpr int meshSide = 16;  // pixels between the places where means are mixed
constexpr std::size_t corners = 4;

Window boxOf(const OutputGrid& grid, const MapPoint* corner) {
  constexpr double far = std::numeric_limits<double>::max();
  double left = far;
  double top = far;
  double right = -far;
  double bottom = -far;
  for (std::size_t i = 0; i < corners; ++i) {
    if (!corner[i].isKnown()) return {0, 0, grid.columns, grid.rows};
    const double x = (corner[i].x - grid.extent.xMin) / grid.pixelWidth();
    const double y = (grid.extent.yMax - corner[i].y) / grid.pixelHeight();
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
  }
  const auto pixel = [](double place, int most) {
    return static_cast<int>(std::clamp(std::round(place), 0.0, static_cast<double>(most)));
  };
  const int x = pixel(left, grid.columns);
  const int y = pixel(top, grid.rows);
  return {x, y, pixel(right, grid.columns) - x, pixel(bottom, grid.rows) - y};
}

double middleAcross(const Window& box) { return box.x + box.width / 2.0; }
double middleDown(const Window& box) { return box.y + box.height / 2.0; }

// Squared; 0 for a box around the place.
double distanceTo(const Window& box, double x, double y) {
  const double across = std::max({box.x - x, x - box.x - box.width, 0.0});
  const double down = std::max({box.y - y, y - box.y - box.height, 0.0});
  return across * across + down * down;
}

// What a source looks like on the whole, and where.
struct Mean {
  double x = 0;
  double y = 0;
  std::vector<double> values;
};

class Filling {
 public:
  Filling(const std::vector<PlacedSource>& sources, SampleTile& tile) : sources_(sources), tile_(tile) {}

  bool learn(const std::vector<std::size_t>& chosen) {
    for (const std::size_t i : chosen) addMean(sources_[i].box);
    return !means_.empty();
  }

  void fill() {
    for (int row = 0; row < tile_.rows; row += meshSide) {
      for (int column = 0; column < tile_.columns; column += meshSide) {
        fillMesh(
            {column, row, std::min(meshSide, tile_.columns - column), std::min(meshSide, tile_.rows - row)});
      }
    }
  }

 private:
  [[nodiscard]] std::size_t at(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(tile_.columns) +
           static_cast<std::size_t>(column);
  }

  template <class Use>
  void forEach(const Window& box, Use use) const {
    for (int row = box.y; row < box.y + box.height; ++row) {
      for (int column = box.x; column < box.x + box.width; ++column) use(column, row);
    }
  }

  void addMean(const Window& box) {
    Mean mean{middleAcross(box), middleDown(box), std::vector<double>(tile_.bands)};
    double count = 0;
    forEach(box, [&](int column, int row) {
      const std::size_t i = at(column, row);
      if (tile_.alpha[i] == 0) return;
      for (std::size_t band = 0; band < tile_.bands; ++band) {
        mean.values[band] += static_cast<double>(tile_.samples[i * tile_.bands + band]);
      }
      ++count;
    });
    if (count == 0) return;
    for (double& value : mean.values) value /= count;
    means_.push_back(std::move(mean));
  }

  [[nodiscard]] std::vector<double> mixedAt(double x, double y) const {
    std::vector<double> mixed(tile_.bands);
    double weights = 0;
    for (const Mean& mean : means_) {
      const double distance = std::hypot(mean.x - x, mean.y - y) + 1;
      const double weight = 1 / (distance * distance * distance);
      weights += weight;
      for (std::size_t band = 0; band < mixed.size(); ++band) mixed[band] += weight * mean.values[band];
    }
    for (double& value : mixed) value /= weights;
    return mixed;
  }

  // Between the means at its corners.
  void fillMesh(const Window& mesh) {
    const std::vector<Window> boxes = boxesWithin(mesh);
    if (boxes.empty()) return;
    const auto upperLeft = mixedAt(mesh.x, mesh.y);
    const auto upperRight = mixedAt(mesh.x + meshSide, mesh.y);
    const auto lowerLeft = mixedAt(mesh.x, mesh.y + meshSide);
    const auto lowerRight = mixedAt(mesh.x + meshSide, mesh.y + meshSide);
    const auto put = [&](int column, int row) {
      const std::size_t i = at(column, row);
      if (tile_.alpha[i] != 0) return;
      tile_.alpha[i] = 255;
      const double across = (column - mesh.x + 0.5) / meshSide;
      const double down = (row - mesh.y + 0.5) / meshSide;
      for (std::size_t band = 0; band < tile_.bands; ++band) {
        tile_.samples[i * tile_.bands + band] =
            static_cast<float>(std::lerp(std::lerp(upperLeft[band], upperRight[band], across),
                                         std::lerp(lowerLeft[band], lowerRight[band], across), down));
      }
    };
    for (const Window& box : boxes) forEach(box, put);
  }

  [[nodiscard]] std::vector<Window> boxesWithin(const Window& mesh) const {
    std::vector<Window> boxes;
    for (const auto& [source, box] : sources_) {
      const int left = std::max(box.x, mesh.x);
      const int top = std::max(box.y, mesh.y);
      const int right = std::min(box.x + box.width, mesh.x + mesh.width);
      const int bottom = std::min(box.y + box.height, mesh.y + mesh.height);
      if (left < right && top < bottom) boxes.push_back({left, top, right - left, bottom - top});
    }
    return boxes;
  }

  const std::vector<PlacedSource>& sources_;
  SampleTile& tile_;
  std::vector<Mean> means_;
};

}  // namespace

std::vector<PlacedSource> placedOn(const OutputGrid& grid, const PointWay& toMap,
                                   const std::vector<const ImageSource*>& sources) {
  std::vector<MapPoint> places;
  places.reserve(sources.size() * corners);
  for (const ImageSource* source : sources) {
    const auto& [xMin, yMin, xMax, yMax] = source->place;
    places.insert(places.end(), {{xMin, yMin}, {xMax, yMin}, {xMin, yMax}, {xMax, yMax}});
  }
  toMap.apply(places);
  std::vector<PlacedSource> placed;
  placed.reserve(sources.size());
  for (std::size_t i = 0; i < sources.size(); ++i) {
    placed.push_back({sources[i], boxOf(grid, places.data() + i * corners)});
  }
  return placed;
}

std::vector<std::size_t> spreadOver(const OutputGrid& grid, const std::vector<PlacedSource>& sources) {
  std::set<std::size_t> chosen;
  for (int ninth = 0; ninth < ninthsAcross * ninthsAcross; ++ninth) {
    const double x = grid.columns * (ninth % ninthsAcross + 0.5) / ninthsAcross;
    const double y = grid.rows * (ninth / ninthsAcross + 0.5) / ninthsAcross;
    std::optional<std::size_t> nearest;
    double least = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < sources.size(); ++i) {
      const Window& box = sources[i].box;
      const double distance = distanceTo(box, x, y);
      if (box.width == 0 || box.height == 0 || distance >= least) continue;
      least = distance;
      nearest = i;
    }
    if (nearest) chosen.insert(*nearest);
  }
  return {chosen.begin(), chosen.end()};
}

bool fillBetween(const std::vector<PlacedSource>& sources, const std::vector<std::size_t>& chosen,
                 SampleTile& tile) {
  Filling filling(sources, tile);
  if (!filling.learn(chosen)) return false;
  filling.fill();
  return true;
}

}  // namespace vlclientui::client
