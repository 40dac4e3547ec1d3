#pragma once

#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "client/mapping/MapPoint.h"
#include "client/mapping/OpenRaster.h"
#include "client/mapping/PointWay.h"
#include "client/raster/OutputGrid.h"
#include "client/raster/Window.h"

namespace vlclientui::client {

/// Tells which pixels of a raster lie at places of a map. For one thread at a time.
class RasterPlacing {
 public:
  /// @param way from the map's system to the raster's.
  /// @returns null when nothing tells where the raster lies.
  [[nodiscard]] static std::unique_ptr<RasterPlacing> of(const OpenRaster& raster,
                                                         std::shared_ptr<const PointWay> way);
  ~RasterPlacing();
  RasterPlacing(const RasterPlacing&) = delete;
  RasterPlacing& operator=(const RasterPlacing&) = delete;

  /// Places of the map become columns and rows from the upper left corner of the raster, also beyond its
  /// edges; unknown where there are none.
  void toPixels(std::vector<MapPoint>& places) const;
  /// Whether columns and rows of the map run straight in the raster, so that three of them tell all.
  [[nodiscard]] bool isStraight(const OutputGrid& grid) const;

  /// What of the map the raster may cover; nothing when that is not known, and it may lie anywhere.
  [[nodiscard]] const std::optional<Bounds>& reach() const { return reach_; }
  void setReach(const std::optional<Bounds>& reach) { reach_ = reach; }

  [[nodiscard]] int columns() const { return columns_; }
  [[nodiscard]] int rows() const { return rows_; }

 private:
  RasterPlacing(const OpenRaster& raster, std::shared_ptr<const PointWay> way);
  void byPoints(std::vector<MapPoint>& places) const;
  [[nodiscard]] MapPoint byTransform(MapPoint place) const;

  std::shared_ptr<const PointWay> way_;
  int columns_;
  int rows_;
  std::array<double, 6> inverse_{};
  void* points_ = nullptr;  ///< of the raster library; null unless control points place the raster
  bool isInDegrees_;
  std::optional<Bounds> reach_;
  double middle_ = 0;  ///< longitude; places are looked for within half a turn of it
};

/// The pixel of a raster at the middle of each pixel of a part of the grid, row by row: within an eighth of a
/// pixel of the grid, wherever the projection breaks off. Unknown, or beyond the raster, where the raster has
/// none. @param part of the grid, within it.
[[nodiscard]] std::vector<MapPoint> pixelsAt(const OutputGrid& grid, const RasterPlacing& placing,
                                             const Window& part);

}  // namespace vlclientui::client
