#pragma once

#include <QString>

class QPainter;

namespace vlclientui::viewer {

class MapFrame;
struct MapColors;

/// A round length, as a bar on a map.
struct ScaleBar {
  double meters = 0;
  double pixels = 0;

  /// "500 m", "2 km", "20 cm".
  [[nodiscard]] QString text() const;
};

/// The longest of 1, 2 and 5 times a power of ten that fits. @param groundPixel meters on the ground for a
/// pixel, above 0. @param most pixels, above 0.
[[nodiscard]] ScaleBar scaleBarFor(double groundPixel, double most);

/// In the lower right corner; true in the middle of the map. Nothing where no earth is there.
void drawScaleBar(QPainter& painter, const MapFrame& frame, const MapColors& colors);

}  // namespace vlclientui::viewer
