#pragma once

#include <optional>

#include <gdal.h>

#include "client/raster/WindowReader.h"

namespace vlclientui::client {

/// The value in an image's holes, until a pixel with data turns out to have it too.
class HoleValue {
 public:
  /// @param value for all bands; nothing when there is none.
  explicit HoleValue(std::optional<double> value) : value_(value) {}

  /// @param pixels with their mask.
  void compare(const WindowPixels& pixels, GDALDataType type);

  /// Nothing once any band of a pixel with data had it.
  [[nodiscard]] std::optional<double> ofHolesAlone() const { return value_; }

 private:
  std::optional<double> value_;
};

}  // namespace vlclientui::client
