#include "client/mapping/PixelPatch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <type_traits>

#include "client/mapping/PatchReading.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

constexpr int pieceSide = 512;      // pixels
constexpr int everySome = 4;        // of the pixels of a block, each way, for a quick picture
constexpr int leastThinned = 64;    // pixels of a block
constexpr int pieceArea = 1 << 20;  // pixels of the blocks that are unpacked for a piece

Window common(const Window& one, const Window& other) {
  const int left = std::max(one.x, other.x);
  const int top = std::max(one.y, other.y);
  const int right = std::min(one.x + one.width, other.x + other.width);
  const int bottom = std::min(one.y + one.height, other.y + other.height);
  return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

int roundedUp(int value, int step) { return (value + step - 1) / step * step; }

ReadingEnd endOfFailure() { return WaitScope::isGivenUp() ? ReadingEnd::GivenUp : ReadingEnd::Failed; }

void makeRoom(PixelPatch& patch, std::size_t bands) {
  const std::size_t count =
      static_cast<std::size_t>(patch.window.width) * static_cast<std::size_t>(patch.window.height);
  patch.bands = static_cast<int>(bands);
  patch.samples.assign(count * bands, 0);
  patch.alpha.assign(count, 0);
}

// Pixels that were read.
template <class Sample>
struct ReadPixels {
  const Sample* samples;
  std::size_t stride;  ///< samples for each pixel
  const std::uint8_t* alpha;
  int width;

  [[nodiscard]] std::size_t at(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(width) + static_cast<std::size_t>(column);
  }
};

ReadPixels<float> readOf(const LevelPixels& pixels, int width) {
  return {pixels.samples.data(), static_cast<std::size_t>(pixels.stride), pixels.alpha.data(), width};
}

// The mean of the pixels with data in a rectangle of what was read.
template <class Sample>
void takeMean(const ReadPixels<Sample>& pixels, const Window& part, PixelPatch& patch, std::size_t to) {
  using Sum = std::conditional_t<std::is_integral_v<Sample>, std::uint64_t, double>;
  const auto bands = static_cast<std::size_t>(patch.bands);
  std::array<Sum, mostSamples> sums{};
  std::uint64_t alpha = 0;
  std::uint64_t count = 0;
  for (int row = part.y; row < part.y + part.height; ++row) {
    for (int column = part.x; column < part.x + part.width; ++column) {
      const std::size_t from = pixels.at(column, row);
      if (pixels.alpha[from] == 0) continue;
      const Sample* sample = pixels.samples + from * pixels.stride;
      for (std::size_t band = 0; band < bands; ++band) sums[band] += static_cast<Sum>(sample[band]);
      alpha += pixels.alpha[from];
      ++count;
    }
  }
  if (count == 0) return;
  const auto pixelsWithData = static_cast<double>(count);
  for (std::size_t band = 0; band < bands; ++band) {
    patch.samples[to * bands + band] = static_cast<float>(static_cast<double>(sums[band]) / pixelsWithData);
  }
  const double meanAlpha = static_cast<double>(alpha) / pixelsWithData + 0.5;
  patch.alpha[to] = static_cast<std::uint8_t>(std::max(1.0, meanAlpha));
}

template <class Sample>
void takeReduced(const ReadPixels<Sample>& pixels, const Window& cell, Reduction reduction, PixelPatch& patch,
                 std::size_t to) {
  const bool isOne = cell.width == 1 && cell.height == 1;
  if (!isOne && reduction == Reduction::Mean) return takeMean(pixels, cell, patch, to);
  const auto bands = static_cast<std::size_t>(patch.bands);
  const std::size_t from = pixels.at(cell.x + cell.width / 2, cell.y + cell.height / 2);
  std::copy_n(pixels.samples + from * pixels.stride, bands, patch.samples.data() + to * bands);
  patch.alpha[to] = pixels.alpha[from];
}

class PatchReader {
 public:
  PatchReader(const OpenRaster& raster, const PatchWish& wish, PixelPatch& patch)
      : raster_(raster), wish_(wish), level_(raster.levels[wish.level]), patch_(patch) {
    const Window whole{0, 0, (level_.columns + wish.step - 1) / wish.step,
                       (level_.rows + wish.step - 1) / wish.step};
    patch.window = common(wish.window, whole);
    patch.across = level_.across * wish.step;
    patch.down = level_.down * wish.step;
  }

  ReadingEnd read() {
    const Window& window = patch_.window;
    if (isReadAtOnce()) return readAtOnce() ? ReadingEnd::Whole : endOfFailure();
    makeRoom(patch_, wish_.bands.size());
    const int side = std::max(1, roundedUp(pieceSide, wish_.step) / wish_.step);
    const int height = std::clamp(pieceArea / std::max(level_.blockWidth, pieceSide) / wish_.step, 1, side);
    for (int row = 0; row < window.height; row += height) {
      for (int column = 0; column < window.width; column += side) {
        const Window part{column, row, std::min(side, window.width - column),
                          std::min(height, window.height - row)};
        if (!readPart(part)) return endOfFailure();
      }
    }
    return ReadingEnd::Whole;
  }

 private:
  // Bytes as they are, so few that it takes some milliseconds.
  [[nodiscard]] bool isReadAtOnce() const {
    const Window& window = patch_.window;
    return wish_.mayBeBytes && wish_.step == 1 && window.width > 0 && window.height > 0 &&
           window.width <= pieceArea / window.height && areBytes(raster_, wish_.bands);
  }

  bool readAtOnce() {
    patch_.bands = static_cast<int>(wish_.bands.size());
    return readBytes(raster_, level_, patch_.window, wish_.bands, patch_.bytes, patch_.alpha);
  }

  // @param part in pixels of the patch, from its corner.
  bool readPart(const Window& part) {
    const int step = wish_.step;
    const Window window = common({(patch_.window.x + part.x) * step, (patch_.window.y + part.y) * step,
                                  part.width * step, part.height * step},
                                 {0, 0, level_.columns, level_.rows});
    if (step > 1 && areBytes(raster_, wish_.bands)) {
      if (!readBytes(raster_, level_, window, wish_.bands, bytes_, pixels_.alpha)) return false;
      reduce(part, window,
             ReadPixels<std::uint8_t>{bytes_.data(), wish_.bands.size(), pixels_.alpha.data(), window.width});
      return true;
    }
    if (!readLevel(raster_, level_, window, wish_.bands, pixels_)) return false;
    if (step == 1 && pixels_.stride == patch_.bands) return takeRows(part);
    reduce(part, window, readOf(pixels_, window.width));
    return true;
  }

  template <class Sample>
  void reduce(const Window& part, const Window& window, const ReadPixels<Sample>& pixels) {
    const int step = wish_.step;
    for (int row = 0; row < part.height; ++row) {
      for (int column = 0; column < part.width; ++column) {
        const Window cell =
            common({column * step, row * step, step, step}, {0, 0, window.width, window.height});
        takeReduced(pixels, cell, wish_.reduction, patch_, patch_.index(part.x + column, part.y + row));
      }
    }
  }

  // As they are.
  bool takeRows(const Window& part) {
    const auto bands = static_cast<std::size_t>(patch_.bands);
    const auto width = static_cast<std::size_t>(part.width);
    for (int row = 0; row < part.height; ++row) {
      const std::size_t from = static_cast<std::size_t>(row) * width;
      const std::size_t to = patch_.index(part.x, part.y + row);
      std::copy_n(pixels_.samples.data() + from * bands, width * bands, patch_.samples.data() + to * bands);
      std::copy_n(pixels_.alpha.data() + from, width, patch_.alpha.data() + to);
    }
    return true;
  }

  const OpenRaster& raster_;
  const PatchWish& wish_;
  const RasterLevel& level_;
  PixelPatch& patch_;
  LevelPixels pixels_;
  std::vector<std::uint8_t> bytes_;
};

// The grid of a sparse reading along one direction.
struct SparseSide {
  int cell = 1;  ///< pixels of the raster for one of the patch
  int read = 1;  ///< of these so many in the middle are read
};

// Of blocks every fourth; of what is one block from edge to edge some pixels.
SparseSide sparseSide(int block, double least) {
  constexpr int everyFourth = 4;
  constexpr int widest = 1024;
  const int cells = static_cast<int>(std::ceil(least));
  if (block > widest) return {std::max(cells, everyFourth), std::max(cells, everyFourth)};
  return {roundedUp(std::max(cells, everyFourth * block), block), block};
}

class SparseReader {
 public:
  SparseReader(const OpenRaster& raster, double least, const std::vector<int>& bands, Reduction reduction,
               PixelPatch& patch)
      : raster_(raster),
        level_(raster.levels.front()),
        bands_(bands),
        reduction_(reduction),
        patch_(patch),
        across_(sparseSide(level_.blockWidth, least)),
        down_(sparseSide(level_.blockHeight, least)) {}

  ReadingEnd read(const Window& reach) {
    const Window wanted = common(reach, {0, 0, raster_.columns, raster_.rows});
    const int left = wanted.x / across_.cell;
    const int top = wanted.y / down_.cell;
    patch_.window = {left, top, (wanted.x + wanted.width - 1) / across_.cell - left + 1,
                     (wanted.y + wanted.height - 1) / down_.cell - top + 1};
    patch_.across = across_.cell;
    patch_.down = down_.cell;
    makeRoom(patch_, bands_.size());
    for (int row = 0; row < patch_.window.height; ++row) {
      for (int column = 0; column < patch_.window.width; ++column) {
        if (!readCell(column, row)) return endOfFailure();
      }
    }
    return ReadingEnd::Whole;
  }

 private:
  // The block that holds the middle of the cell.
  static int begin(int cell, const SparseSide& side, int most) {
    const int middle = std::min(cell * side.cell + side.cell / 2, most - 1);
    return std::max(cell * side.cell, middle / side.read * side.read);
  }

  bool readCell(int column, int row) {
    const Window window =
        common({begin(patch_.window.x + column, across_, raster_.columns),
                begin(patch_.window.y + row, down_, raster_.rows), across_.read, down_.read},
               {0, 0, raster_.columns, raster_.rows});
    // A mean of some is as good here; files of JPEG unpack fewer then.
    const int every = window.width >= leastThinned && window.height >= leastThinned ? everySome : 1;
    if (!readLevel(raster_, level_, window, bands_, pixels_, every)) return false;
    const Window all{0, 0, (window.width + every - 1) / every, (window.height + every - 1) / every};
    takeReduced(readOf(pixels_, all.width), all, reduction_, patch_, patch_.index(column, row));
    return true;
  }

  const OpenRaster& raster_;
  const RasterLevel& level_;
  const std::vector<int>& bands_;
  const Reduction reduction_;
  PixelPatch& patch_;
  const SparseSide across_;
  const SparseSide down_;
  LevelPixels pixels_;
};

}  // namespace

ReadingEnd readPatch(const OpenRaster& raster, const PatchWish& wish, PixelPatch& patch) {
  return PatchReader(raster, wish, patch).read();
}

ReadingEnd readSparsely(const OpenRaster& raster, const Window& reach, double least,
                        const std::vector<int>& bands, Reduction reduction, PixelPatch& patch) {
  return SparseReader(raster, least, bands, reduction, patch).read(reach);
}

}  // namespace vlclientui::client
