#pragma once

#include <QColor>

/// Of the pictures on buttons, light, dark and of high contrast.
namespace vlclientui::viewer {

/// Of lines.
[[nodiscard]] QColor toolInk();

/// The color itself, or as much nearer to the ink as a shape needs to be seen on a button.
[[nodiscard]] QColor seenOnButtons(const QColor& color);

/// Of what stands out.
[[nodiscard]] QColor toolAccent();

}  // namespace vlclientui::viewer
