#include "Drainage.h"

#include <array>
#include <cmath>
#include <functional>
#include <queue>
#include <utility>

#include "Noise.h"

namespace vlclientui::samples {
namespace {

constexpr std::array<std::pair<int, int>, 8> neighbors = {
    {{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {1, -1}, {-1, 1}, {1, 1}}};
constexpr float fillStep = 1e-5F;
constexpr double areaPower = 0.45;

double lengthOf(const std::pair<int, int>& step) {
  return step.first != 0 && step.second != 0 ? 1.4142 : 1.0;
}

// Floods inwards from the edge, lowest first; the order of flooding is the order of drainage.
class Flood {
 public:
  explicit Flood(const Grid& heights) : heights_(heights), size_(static_cast<int>(heights.values.size())) {
    out_.receiver.assign(heights.values.size(), -1);
    out_.filled = heights.values;
    out_.area.assign(heights.values.size(), 1.0F);
    out_.order.reserve(heights.values.size());
  }

  Drainage run() {
    for (int cell = 0; cell < size_; ++cell) {
      if (isEdge(cell)) reach(cell, cell, heights_.values[static_cast<std::size_t>(cell)]);
    }
    while (!waiting_.empty()) floodFrom(takeLowest());
    for (const int cell : out_.order) turnDownhill(cell);
    for (auto it = out_.order.rbegin(); it != out_.order.rend(); ++it) passOn(*it);
    return std::move(out_);
  }

 private:
  using Waiting = std::pair<float, int>;

  [[nodiscard]] int column(int cell) const { return cell % heights_.width; }
  [[nodiscard]] int row(int cell) const { return cell / heights_.width; }
  [[nodiscard]] bool isEdge(int cell) const {
    return column(cell) == 0 || row(cell) == 0 || column(cell) == heights_.width - 1 ||
           row(cell) == heights_.height - 1;
  }

  void reach(int cell, int from, float level) {
    out_.receiver[static_cast<std::size_t>(cell)] = from;
    out_.filled[static_cast<std::size_t>(cell)] = level;
    waiting_.push({level, cell});
  }

  int takeLowest() {
    const int cell = waiting_.top().second;
    waiting_.pop();
    out_.order.push_back(cell);
    return cell;
  }

  void floodFrom(int cell) {
    const float level = out_.filled[static_cast<std::size_t>(cell)];
    for (const auto& [dx, dy] : neighbors) {
      const int x = column(cell) + dx;
      const int y = row(cell) + dy;
      if (x < 0 || y < 0 || x >= heights_.width || y >= heights_.height) continue;
      const int next = y * heights_.width + x;
      if (out_.receiver[static_cast<std::size_t>(next)] >= 0) continue;
      reach(next, cell, std::max(heights_.at(x, y), level + fillStep));
    }
  }

  // Down the steepest way. A little chance in the choice keeps rivers from following the grid.
  void turnDownhill(int cell) {
    if (isEdge(cell)) return;
    double steepest = 0;
    for (std::size_t i = 0; i < neighbors.size(); ++i) {
      const int next = cell + neighbors[i].second * heights_.width + neighbors[i].first;
      const double drop = static_cast<double>(out_.filled[static_cast<std::size_t>(cell)] -
                                              out_.filled[static_cast<std::size_t>(next)]);
      const double chance = 0.7 + 0.6 * hashedUnit(cell, static_cast<int>(i), 17);
      const double slope = chance * drop / lengthOf(neighbors[i]);
      if (slope <= steepest) continue;
      steepest = slope;
      out_.receiver[static_cast<std::size_t>(cell)] = next;
    }
  }

  void passOn(int cell) {
    const auto to = static_cast<std::size_t>(out_.receiver[static_cast<std::size_t>(cell)]);
    if (to != static_cast<std::size_t>(cell)) out_.area[to] += out_.area[static_cast<std::size_t>(cell)];
  }

  const Grid& heights_;
  int size_;
  Drainage out_;
  std::priority_queue<Waiting, std::vector<Waiting>, std::greater<>> waiting_;
};

double distanceBetween(int one, int other, int width) {
  return one / width != other / width && one % width != other % width ? 1.4142 : 1.0;
}

// Implicit in time, so that it is stable for any step: each cell is solved after the one it drains to.
void erodeOnce(Grid& heights, const Grid& uplift) {
  const Drainage drainage = drainageOf(heights);
  const double cell = 1.0 / heights.width;
  for (const int index : drainage.order) {
    const auto here = static_cast<std::size_t>(index);
    const auto below = static_cast<std::size_t>(drainage.receiver[here]);
    if (below == here) continue;
    const double run = cell * distanceBetween(index, drainage.receiver[here], heights.width);
    const double wear = std::pow(static_cast<double>(drainage.area[here]) * cell * cell, areaPower) / run;
    const double lifted = static_cast<double>(drainage.filled[here] + uplift.values[here]);
    heights.values[here] =
        static_cast<float>((lifted + wear * static_cast<double>(heights.values[below])) / (1 + wear));
  }
}

// Soil creeps towards the mean of what is around; it rounds crests.
void creep(Grid& heights, float share) {
  const Grid around = blurred(heights, 1);
  for (std::size_t i = 0; i < heights.values.size(); ++i) {
    heights.values[i] += share * (around.values[i] - heights.values[i]);
  }
}

}  // namespace

Drainage drainageOf(const Grid& heights) { return Flood(heights).run(); }

void erode(Grid& heights, const Grid& uplift, int steps) {
  for (int i = 0; i < steps; ++i) {
    erodeOnce(heights, uplift);
    creep(heights, 0.12F);
  }
}

void limitSlopes(Grid& heights, float steepest, float cell) {
  const Drainage drainage = drainageOf(heights);
  for (const int index : drainage.order) {
    const auto here = static_cast<std::size_t>(index);
    const auto below = static_cast<std::size_t>(drainage.receiver[here]);
    if (below == here) continue;
    const auto run =
        cell * static_cast<float>(distanceBetween(index, drainage.receiver[here], heights.width));
    heights.values[here] = std::min(drainage.filled[here], heights.values[below] + steepest * run);
  }
}

}  // namespace vlclientui::samples
