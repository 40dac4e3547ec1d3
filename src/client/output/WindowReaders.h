#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "client/raster/WindowReader.h"

namespace vlclientui::client {

/// Windows of a raster that was opened once or several times, read side by side and taken in their order.
class WindowReaders {
 public:
  /// @param rasters alike; at least one. The rest is as for a WindowReader.
  WindowReaders(const std::vector<GDALDataset*>& rasters, const std::vector<Window>& windows,
                std::size_t readBytes, WindowContent content, StepKeeper* keeper) {
    for (std::size_t first = 0; first < rasters.size(); ++first) {
      std::vector<Window> own;
      for (std::size_t i = first; i < windows.size(); i += rasters.size()) own.push_back(windows[i]);
      readers_.push_back(
          std::make_unique<WindowReader>(*rasters[first], std::move(own), readBytes, content, keeper));
    }
  }

  /// @pre not all have been taken. @throws RuntimeFailure as a WindowReader does.
  [[nodiscard]] WindowPixels take(const ExportProgress& waiting) {
    return readers_[taken_++ % readers_.size()]->take(waiting);
  }

 private:
  std::vector<std::unique_ptr<WindowReader>> readers_;
  std::size_t taken_ = 0;
};

}  // namespace vlclientui::client
