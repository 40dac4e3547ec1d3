#include "viewer/map/MapColors.h"

#include <QPalette>

namespace vlclientui::viewer {
namespace {

constexpr int middleLightness = 128;

}  // namespace

MapColors mapColorsBy(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  if (window.lightness() >= middleLightness)
    return {QColor(0xdf, 0xe9, 0xee), QColor(0x4a, 0x5f, 0x6b), QColor(255, 255, 255, 200),
            QColor(0xb9, 0xca, 0xd3, 150), QColor(255, 255, 255, 225)};
  // Black windows are those of people who need all the contrast there is.
  const bool isBlack = window.lightness() == 0;
  return {isBlack ? QColor(Qt::black) : QColor(0x1b, 0x26, 0x2c),
          isBlack ? QColor(Qt::white) : QColor(0xd5, 0xe2, 0xea), QColor(0, 0, 0, 200),
          isBlack ? QColor(0xff, 0xff, 0xff, 170) : QColor(0x6f, 0x86, 0x92, 150), QColor(0, 0, 0, 215)};
}

}  // namespace vlclientui::viewer
