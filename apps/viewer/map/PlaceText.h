#pragma once

#include <QString>

#include "client/mapping/MapPoint.h"

namespace vlclientui::viewer {

class MapFrame;

/// "7.5120 W, 46.1000 N" of a map in degrees, "2600000.1, 1200000.3 m" of others, with a digit for each tenth
/// of a pixel. Empty beyond the poles, and more than half a turn from Greenwich.
[[nodiscard]] QString placeText(const MapFrame& frame, client::MapPoint place);
/// "1:25,000" as a person writes numbers, across the middle of the map, where that shows some earth. @param
/// dotsPerInch of the screen.
[[nodiscard]] QString scaleText(const MapFrame& frame, int dotsPerInch);
/// "5.00 W to 10.00 E, 45.00 N to 47.00 N".
[[nodiscard]] QString extentText(const MapFrame& frame);

}  // namespace vlclientui::viewer
