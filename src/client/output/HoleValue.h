#pragma once

#include <optional>

#include <gdal.h>

#include "client/raster/WindowReader.h"

namespace vlclientui::client {

/// The value that holes of an image hold, until a pixel with data turns out to hold it too.
class HoleValue {
 public:
  /// @param value of all bands; nothing where there is none.
  explicit HoleValue(std::optional<double> value) : value_(value) {}

  /// @param pixels with their mask.
  void compare(const WindowPixels& pixels, GDALDataType type);

  /// Nothing once a pixel with data held it in any band.
  [[nodiscard]] std::optional<double> ofHolesAlone() const { return value_; }

 private:
  std::optional<double> value_;
};

}  // namespace vlclientui::client
