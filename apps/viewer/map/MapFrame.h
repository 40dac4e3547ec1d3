#pragma once

#include <QPointF>
#include <QSize>
#include <memory>
#include <optional>
#include <vector>

#include "client/mapping/MapPoint.h"
#include "client/mapping/MapSystem.h"
#include "client/mapping/PointWay.h"
#include "host/Services.h"

namespace vlclientui::viewer {

/// Which part of the earth a map shows, on so many pixels: its coordinate system, its middle and its scale.
class MapFrame {
 public:
  /// In degrees.
  MapFrame();

  /// Shows the same place at the same scale on the ground; the same part where the middle has no place in the
  /// other system. @returns false, and stays, where no way leads there.
  bool setSystem(const client::MapSystem& system);
  [[nodiscard]] const client::MapSystem& system() const { return system_; }

  void resize(QSize size) { size_ = size; }
  [[nodiscard]] QSize size() const { return size_; }
  /// Both are brought within the bounds of the system.
  void place(client::MapPoint middle, double pixel);
  /// The extent in the middle, whole. @param margin 1 for none.
  void show(const host::GeographicEnvelope& extent, double margin);
  /// In coordinates of the map.
  void showArea(const client::Bounds& area, double margin);

  [[nodiscard]] client::MapPoint middle() const { return middle_; }
  /// Of the widget, in units of the map.
  [[nodiscard]] double pixel() const { return pixel_; }
  /// What a pixel may be.
  [[nodiscard]] double nearestPixel(double pixel) const;
  [[nodiscard]] client::Bounds area() const;
  /// How many meters on the ground a pixel in the middle is across. Nothing where no earth is there.
  [[nodiscard]] std::optional<double> groundPixel() const;
  /// What it shows, WGS 84 degrees; of other systems the rectangle around it.
  [[nodiscard]] host::GeographicEnvelope view() const { return degreesOf(area()); }
  /// Of a rectangle on the map, the same.
  [[nodiscard]] host::GeographicEnvelope degreesOf(const client::Bounds& area) const;

  [[nodiscard]] QPointF toPixel(client::MapPoint place) const;
  [[nodiscard]] client::MapPoint toMap(QPointF pixel) const;
  /// Nothing where the map has no such place.
  [[nodiscard]] std::optional<QPointF> pixelOf(double longitude, double latitude) const;
  /// WGS 84 degrees, x before y. Nothing where the map shows no place of the earth.
  [[nodiscard]] std::optional<client::MapPoint> degreesAt(QPointF pixel) const;
  /// The line between places in degrees, bent as the map's system bends it, in coordinates of the map: they
  /// stay the same wherever the frame is. Without places that the map does not have.
  [[nodiscard]] std::vector<client::MapPoint> line(client::MapPoint from, client::MapPoint to,
                                                   int steps) const;
  /// Places in degrees, in coordinates of the map: as many, in the same order; unknown where it has none.
  [[nodiscard]] std::vector<client::MapPoint> places(std::vector<client::MapPoint> degrees) const;
  /// Whether it counts the same degrees as everything else here.
  [[nodiscard]] bool isInDegrees() const { return toDegrees_->changesNothing(); }

 private:
  void takeOver(const MapFrame& former);

  client::MapSystem system_;
  std::shared_ptr<const client::PointWay> toDegrees_;
  std::shared_ptr<const client::PointWay> fromDegrees_;
  client::MapPoint middle_;
  double pixel_ = 0.5;
  QSize size_{1, 1};
};

}  // namespace vlclientui::viewer
