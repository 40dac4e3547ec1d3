#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "client/drawing/DrawingProperties.h"
#include "client/drawing/ImageSource.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// How to draw a service by its properties.
struct Drawing {
  std::shared_ptr<const ImageServiceRecord> service;  ///< in the system asked for; never null
  DrawingProperties properties;                       ///< with the viewpoint in effect
  std::vector<std::size_t> order;                     ///< sources that take part, bottom first
  std::vector<std::string> remarks;                   ///< properties that could not be followed, readable
};

/// Never fails: leaves out what cannot be followed, with a remark.
[[nodiscard]] Drawing drawingOf(const ImageServiceRecord& service, const DrawingProperties& properties);

/// An image: how it is drawn, and where.
struct DrawnImage {
  Drawing drawing;
  OutputGrid grid;
};

}  // namespace vlclientui::client
