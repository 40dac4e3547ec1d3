#include "client/WindowReader.h"

#include <algorithm>
#include <new>
#include <utility>

#include <gdal_priv.h>

#include "client/GdalScope.h"
#include "client/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t kAhead = 2;

int blocksWithin(std::size_t bytes, std::size_t blockBytes) {
  return static_cast<int>(std::max<std::size_t>(1, bytes / std::max<std::size_t>(1, blockBytes)));
}

std::size_t product(std::size_t bytes, int count) { return bytes * static_cast<std::size_t>(count); }

int limited(int blocks, int blockSize, int most) {
  return blocks >= most / blockSize + 1 ? most : std::min(blocks * blockSize, most);
}

bool read(GDALDataset& dataset, WindowPixels& pixels) {
  const Window& window = pixels.window;
  const GDALDataType type = dataset.GetRasterBand(1)->GetRasterDataType();
  const std::size_t bandBytes =
      product(product(static_cast<std::size_t>(GDALGetDataTypeSizeBytes(type)), window.width), window.height);
  pixels.values.resize(product(bandBytes, dataset.GetRasterCount()));
  return dataset.RasterIO(GF_Read, window.x, window.y, window.width, window.height, pixels.values.data(),
                          window.width, window.height, type, dataset.GetRasterCount(), nullptr, 0, 0,
                          static_cast<GSpacing>(bandBytes)) == CE_None;
}

}  // namespace

std::vector<Window> windowsAlongBlocks(const Window& whole, int blockWidth, int blockHeight,
                                       std::size_t pixelBytes, std::size_t windowBytes) {
  const std::size_t blockBytes = product(product(pixelBytes, blockWidth), blockHeight);
  const int width = limited(blocksWithin(windowBytes, blockBytes), blockWidth, whole.width);
  const std::size_t rowBytes = product(product(pixelBytes, whole.width), blockHeight);
  const int rowsOfBlocks = width < whole.width ? 1 : blocksWithin(windowBytes, rowBytes);
  const int height = limited(rowsOfBlocks, blockHeight, whole.height);
  std::vector<Window> windows;
  for (int y = 0; y < whole.height; y += std::min(height, whole.height - y)) {
    for (int x = 0; x < whole.width; x += std::min(width, whole.width - x)) {
      windows.push_back({x, y, std::min(width, whole.width - x), std::min(height, whole.height - y)});
    }
  }
  return windows;
}

std::vector<Window> windowsOfRows(const Window& whole, std::size_t pixelBytes, std::size_t windowBytes) {
  return windowsAlongBlocks(whole, whole.width, 1, pixelBytes, windowBytes);
}

WindowReader::WindowReader(GDALDataset& dataset, std::vector<Window> windows)
    : dataset_(dataset), windows_(std::move(windows)), thread_([this] { readAll(); }) {}

WindowReader::~WindowReader() {
  {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

WindowPixels WindowReader::take() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return !ready_.empty() || failure_; });
  if (ready_.empty()) throw RuntimeFailure(*failure_);
  WindowPixels pixels = std::move(ready_.front());
  ready_.pop_front();
  lock.unlock();
  changed_.notify_all();
  return pixels;
}

void WindowReader::readAll() {
  const GdalScope scope;
  for (const Window& window : windows_) {
    if (!waitForRoom()) return;
    try {
      WindowPixels pixels{window, {}};
      if (!read(dataset_, pixels)) {
        return putFailure("The source cannot be read: " + utf8FromAny(scope.firstFailure("no reason known")));
      }
      put(std::move(pixels));
    } catch (const std::bad_alloc&) {
      return putFailure("There is not enough memory to read the source");
    }
  }
}

bool WindowReader::waitForRoom() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isStopped_ || ready_.size() < kAhead; });
  return !isStopped_;
}

void WindowReader::put(WindowPixels pixels) {
  {
    const std::lock_guard lock(mutex_);
    ready_.push_back(std::move(pixels));
  }
  changed_.notify_all();
}

void WindowReader::putFailure(const std::string& failure) {
  {
    const std::lock_guard lock(mutex_);
    failure_ = failure;
  }
  changed_.notify_all();
}

}  // namespace vlclientui::client
