#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "client/drawing/DrawingProperties.h"
#include "client/drawing/ImageSource.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// How a service is drawn as its properties tell.
struct Drawing {
  std::shared_ptr<const ImageServiceRecord> service;  ///< in the system asked for; never null
  DrawingProperties properties;                       ///< with the viewpoint that counts
  std::vector<std::size_t> order;                     ///< of the sources that take part, bottom first
  std::vector<std::string> remarks;  ///< what of the properties could not be followed, for a person
};

/// Never fails: what cannot be followed is left out and remarked.
[[nodiscard]] Drawing drawingOf(const ImageServiceRecord& service, const DrawingProperties& properties);

/// An image: how it is or was drawn, and where.
struct DrawnImage {
  Drawing drawing;
  OutputGrid grid;
};

}  // namespace vlclientui::client
