#pragma once

#include <QIcon>

/// Pictures of the map's tools, drawn with the painter.
namespace vlclientui::viewer {

/// A lens over a dashed box.
[[nodiscard]] QIcon zoomBoxIcon();
[[nodiscard]] QIcon zoomInIcon();
[[nodiscard]] QIcon zoomOutIcon();
/// Arrows.
[[nodiscard]] QIcon previousIcon();
[[nodiscard]] QIcon nextIcon();
/// Squares of a grid.
[[nodiscard]] QIcon nativePixelsIcon();

}  // namespace vlclientui::viewer
