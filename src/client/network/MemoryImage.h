#pragma once

#include <string>
#include <string_view>

#include "client/raster/GdalScope.h"

namespace vlclientui::client {

/// An image file in memory, opened as a raster.
class MemoryImage {
 public:
  /// @param bytes must outlive this object.
  explicit MemoryImage(std::string_view bytes);
  ~MemoryImage();
  MemoryImage(const MemoryImage&) = delete;
  MemoryImage& operator=(const MemoryImage&) = delete;

  /// Null where the bytes are no image; then the text says why.
  [[nodiscard]] GDALDataset* raster() const { return raster_.get(); }
  [[nodiscard]] const std::string& problem() const { return problem_; }

 private:
  std::string name_;
  DatasetPtr raster_;
  std::string problem_;
};

}  // namespace vlclientui::client
