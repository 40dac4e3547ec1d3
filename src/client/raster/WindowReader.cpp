#include "client/raster/WindowReader.h"

#include <algorithm>
#include <chrono>
#include <new>
#include <utility>

#include <gdal_priv.h>

#include "client/raster/GdalScope.h"
#include "client/raster/SteppedReading.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t ahead = 2;
constexpr auto patience = std::chrono::milliseconds(100);

int blocksWithin(std::size_t bytes, std::size_t blockBytes) {
  return static_cast<int>(std::max<std::size_t>(1, bytes / std::max<std::size_t>(1, blockBytes)));
}

int limited(int blocks, int blockSize, int most) {
  return blocks >= most / blockSize + 1 ? most : std::min(blocks * blockSize, most);
}

std::size_t sampleBytes(GDALDataset& dataset) {
  return static_cast<std::size_t>(GDALGetDataTypeSizeBytes(dataset.GetRasterBand(1)->GetRasterDataType()));
}

std::size_t pixelBytes(GDALDataset& dataset) {
  return product(sampleBytes(dataset), dataset.GetRasterCount());
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

WindowReader::WindowReader(GDALDataset& dataset, std::vector<Window> windows, std::size_t readBytes,
                           WindowContent content, StepKeeper* keeper)
    : dataset_(dataset),
      windows_(std::move(windows)),
      readBytes_(readBytes),
      content_(content),
      outside_(WaitScope::link()),
      keeper_(keeper),
      thread_([this] { readAll(); }) {}

WindowReader::~WindowReader() {
  {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
  }
  stop_.cancel();
  changed_.notify_all();
  thread_.join();
}

WindowPixels WindowReader::take(const ExportProgress& waiting) {
  std::unique_lock lock(mutex_);
  while (ready_.empty() && !failure_) {
    const double share = share_;
    lock.unlock();
    report(waiting, share);
    lock.lock();
    changed_.wait_for(lock, patience, [&] { return !ready_.empty() || failure_ || share_ != share; });
  }
  if (ready_.empty()) throw RuntimeFailure(*failure_);
  WindowPixels pixels = std::move(ready_.front());
  ready_.pop_front();
  ++taken_;
  lock.unlock();
  changed_.notify_all();
  return pixels;
}

void WindowReader::readAll() {
  const WaitScope outside(outside_);
  const WaitScope own(nullptr, stop_);
  const GdalScope scope;
  for (const Window& window : windows_) {
    if (!waitForRoom()) return;
    try {
      WindowPixels pixels{window, {}, {}};
      if (!readWindow(pixels)) {
        return putFailure(scope.readFailure());
      }
      put(std::move(pixels));
    } catch (const std::bad_alloc&) {
      return putFailure("There is not enough memory to read the source");
    }
  }
}

// The mask reads the sources a second time, so each counts as half.
bool WindowReader::readWindow(WindowPixels& pixels) {
  const double valuesShare = content_ == WindowContent::ValuesAndMask ? 0.5 : 1;
  if (content_ == WindowContent::Mask) return readMask(pixels, 0);
  if (!readValues(pixels, valuesShare)) return false;
  return content_ == WindowContent::Values || readMask(pixels, valuesShare);
}

bool WindowReader::readValues(WindowPixels& pixels, double shareOfWindow) {
  const Window& window = pixels.window;
  const std::size_t sample = sampleBytes(dataset_);
  const std::size_t line = product(sample, window.width);
  const std::size_t band = product(line, window.height);
  pixels.values.resize(product(band, dataset_.GetRasterCount()));
  const PixelTarget target{pixels.values.data(),          dataset_.GetRasterBand(1)->GetRasterDataType(),
                           dataset_.GetRasterCount(),     nullptr,
                           static_cast<GSpacing>(sample), static_cast<GSpacing>(line),
                           static_cast<GSpacing>(band)};
  return readInSteps(
      dataset_, window, target, readBytes_, [&](double share) { return tellShare(share * shareOfWindow); },
      keeper_);
}

bool WindowReader::readMask(WindowPixels& pixels, double shareBefore) {
  const Window& window = pixels.window;
  pixels.mask.resize(product(static_cast<std::size_t>(window.width), window.height));
  PixelTarget target{reinterpret_cast<std::byte*>(pixels.mask.data()), GDT_Byte, 1, nullptr, 1, window.width};
  target.part = PixelPart::Mask;
  const std::size_t masksInStep = std::max<std::size_t>(1, readBytes_ / pixelBytes(dataset_));
  return readInSteps(
      dataset_, window, target, masksInStep,
      [&](double share) { return tellShare(shareBefore + share * (1 - shareBefore)); }, keeper_);
}

bool WindowReader::tellShare(double share) {
  bool isStopped = false;
  {
    const std::lock_guard lock(mutex_);
    share_ = share;
    isStopped = isStopped_;
  }
  changed_.notify_all();
  return !isStopped;
}

bool WindowReader::waitForRoom() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return isStopped_ || ready_.size() < ahead; });
  return !isStopped_;
}

void WindowReader::put(WindowPixels pixels) {
  {
    const std::lock_guard lock(mutex_);
    ready_.push_back(std::move(pixels));
    share_ = 0;
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
