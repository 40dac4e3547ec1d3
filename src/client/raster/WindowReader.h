#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "client/raster/ExportProgress.h"
#include "client/raster/Window.h"
#include "client/waiting/Wait.h"

class GDALDataset;

namespace vlclientui::client {

class StepKeeper;

/// Cuts a raster along its blocks into windows of about the given size, row of blocks by row of blocks.
/// @param pixelBytes of one pixel with all its bands.
[[nodiscard]] std::vector<Window> windowsAlongBlocks(const Window& whole, int blockWidth, int blockHeight,
                                                     std::size_t pixelBytes, std::size_t windowBytes);
/// The same in windows of full width, at least one row each.
[[nodiscard]] std::vector<Window> windowsOfRows(const Window& whole, std::size_t pixelBytes,
                                                std::size_t windowBytes);

/// What to read of each window.
enum class WindowContent { Values, Mask, ValuesAndMask };

/// A window with its pixels.
struct WindowPixels {
  Window window;
  std::vector<std::byte> values;   ///< one band after the other, in the type of the first band; may be empty
  std::vector<std::uint8_t> mask;  ///< 0 in holes, 255 elsewhere; may be empty
};

/// Reads windows on its own thread, a few ahead of the consumer. Nobody else may use the raster meanwhile.
/// What gives up the work of the thread that made it ends the reading too.
class WindowReader {
 public:
  /// @param readBytes bytes to read at once, at least one pixel. A reduced raster reads many times as much of
  /// its source. @param keeper gives and gets what is read; may be null.
  WindowReader(GDALDataset& dataset, std::vector<Window> windows, std::size_t readBytes,
               WindowContent content = WindowContent::Values, StepKeeper* keeper = nullptr);
  /// Stops reading, even within a window.
  ~WindowReader();
  WindowReader(const WindowReader&) = delete;
  WindowReader& operator=(const WindowReader&) = delete;

  /// The next window to be taken. @pre not all have been taken.
  [[nodiscard]] const Window& next() const { return windows_[taken_]; }
  /// Takes the next window with its pixels. @pre not all have been taken.
  /// @param waiting called several times a second with the share read, while the call waits.
  /// @throws RuntimeFailure when reading fails, or when waiting cancels the export.
  [[nodiscard]] WindowPixels take(const ExportProgress& waiting = {});

 private:
  void readAll();
  [[nodiscard]] bool readWindow(WindowPixels& pixels);
  [[nodiscard]] bool readValues(WindowPixels& pixels, double shareOfWindow);
  [[nodiscard]] bool readMask(WindowPixels& pixels, double shareBefore);
  [[nodiscard]] bool tellShare(double share);
  [[nodiscard]] bool waitForRoom();
  void put(WindowPixels pixels);
  void putFailure(const std::string& failure);

  GDALDataset& dataset_;
  const std::vector<Window> windows_;
  const std::size_t readBytes_;
  const WindowContent content_;
  const WaitScope::Link outside_;  ///< what may give up the reading from there
  CancelToken stop_;
  StepKeeper* const keeper_;
  std::size_t taken_ = 0;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<WindowPixels> ready_;
  std::optional<std::string> failure_;
  double share_ = 0;  ///< read of the present window, 0 to 1
  bool isStopped_ = false;
  std::thread thread_;
};

}  // namespace vlclientui::client
