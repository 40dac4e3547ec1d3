#pragma once

#include <QIcon>

class QPainter;

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

/// Side of the square in which pictures of icons are designed.
inline constexpr double iconDesignSize = 16;

/// Draws a picture on that square. The painter smooths edges; colors may be those of the palette.
using IconDrawing = void (*)(QPainter& painter, QIcon::State state);

/// Drawn anew at every size and density, so that it is sharp at each; half transparent while disabled.
[[nodiscard]] QIcon drawnIcon(IconDrawing drawing);

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
