#include "client/output/PngRows.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace vlclientui::client {
namespace {

// The one of three neighbors that is nearest to left + up - upLeft.
int nearestNeighbor(int left, int up, int upLeft) {
  const int toLeft = std::abs(up - upLeft);
  const int toUp = std::abs(left - upLeft);
  const int toUpLeft = std::abs(left + up - 2 * upLeft);
  const int other = toUp <= toUpLeft ? up : upLeft;
  const int nearest = std::min(toUp, toUpLeft);
  return toLeft <= nearest ? left : other;
}

}  // namespace

PngFilter::PngFilter(std::size_t pixelBytes, std::size_t rowBytes, bool isPlain)
    : pixelBytes_(pixelBytes),
      rowBytes_(rowBytes),
      isPlain_(isPlain),
      best_(rowBytes + 1),
      next_(rowBytes + 1) {}

const std::vector<std::uint8_t>& PngFilter::filtered(const PngRow& row, const PngRow& above) {
  leastCost_ = std::numeric_limits<std::uint32_t>::max();
  attempt(0, row, above, [](int, int, int) { return 0; });
  if (isPlain_) return best_;
  attempt(1, row, above, [](int left, int, int) { return left; });
  attempt(2, row, above, [](int, int up, int) { return up; });
  attempt(3, row, above, [](int left, int up, int) { return (left + up) / 2; });
  attempt(4, row, above, nearestNeighbor);
  return best_;
}

template <class Guess>
void PngFilter::attempt(std::uint8_t number, const PngRow& row, const PngRow& above, Guess guess) {
  const std::uint8_t* const left = row.data();
  const std::uint8_t* const here = left + pixelBytes_;
  const std::uint8_t* const upLeft = above.data();
  const std::uint8_t* const up = upLeft + pixelBytes_;
  std::uint8_t* const out = next_.data() + 1;
  std::uint32_t cost = 0;
  for (std::size_t i = 0; i < rowBytes_; ++i) {
    const auto rest = static_cast<std::uint8_t>(here[i] - guess(left[i], up[i], upLeft[i]));
    out[i] = rest;
    cost += static_cast<std::uint32_t>(std::abs(static_cast<int>(static_cast<std::int8_t>(rest))));
  }
  next_[0] = number;
  if (cost >= leastCost_) return;
  leastCost_ = cost;
  std::swap(best_, next_);
}

}  // namespace vlclientui::client
