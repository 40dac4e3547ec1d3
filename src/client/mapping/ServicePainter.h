#pragma once

#include <optional>
#include <string>
#include <vector>

#include "client/drawing/Drawing.h"
#include "client/mapping/Coloring.h"
#include "client/mapping/RasterHandles.h"
#include "client/mapping/ServicePicture.h"
#include "client/mapping/SourceSampler.h"
#include "client/mapping/Stretch.h"
#include "client/raster/OutputGrid.h"

namespace vlclientui::client {

/// Pixels of a map.
struct MapGrid {
  std::string wkt;  ///< the map's system; empty for plain pixels of services without a system
  OutputGrid grid;
};

/// Draws a service by its properties on maps of any system. For one thread at a time.
class ServicePainter {
 public:
  /// All of them must outlive this object.
  ServicePainter(const Drawing& drawing, const Stretch& stretch, RasterHandles& handles);

  /// Looks every few milliseconds whether the work of this thread was given up (waiting/Wait.h).
  /// @returns nothing when it was. @throws RuntimeFailure when no source that lies there can be read.
  [[nodiscard]] std::optional<ServicePicture> paint(const MapGrid& map, Pass pass = Pass::Fine);

 private:
  void learnModel();
  [[nodiscard]] bool isElsewhere(const MapGrid& map);
  [[nodiscard]] double usualScale(const MapGrid& map);
  [[nodiscard]] TileGround groundOf(const MapGrid& map, const OutputGrid& part);
  [[nodiscard]] std::vector<const ImageSource*> touched(const MapGrid& map);
  [[nodiscard]] bool sampleSources(const MapGrid& map, Pass pass, SampleTile& tile, ServicePicture& picture);
  [[nodiscard]] ReadingEnd sampleSome(const MapGrid& map, const std::vector<const ImageSource*>& sources,
                                      SampleTile& tile, ServicePicture& picture);
  [[nodiscard]] ReadingEnd sampleOne(const MapGrid& map, Pass pass, const ImageSource& source,
                                     SampleTile& tile, ServicePicture& picture);
  [[nodiscard]] bool paintPart(const MapGrid& map, Pass pass, const Window& part, ServicePicture& picture);

  const Drawing& drawing_;
  const Stretch& stretch_;
  RasterHandles& handles_;
  std::vector<int> shown_;
  std::vector<int> model_;  ///< bands of the service, but transparency
  ClassColors classes_;
  bool isAnyRead_ = false;
};

}  // namespace vlclientui::client
