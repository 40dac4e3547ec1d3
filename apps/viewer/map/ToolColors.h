#pragma once

#include <QColor>
#include <QGuiApplication>
#include <QPalette>

namespace vlclientui::viewer {

/// Of lines in pictures of tools.
[[nodiscard]] inline QColor toolInk() { return QGuiApplication::palette().color(QPalette::ButtonText); }

/// Of what stands out in them: seen on dark buttons as well as on light ones.
[[nodiscard]] inline QColor toolAccent() {
  constexpr int middle = 128;
  const bool isDark = QGuiApplication::palette().color(QPalette::Button).lightness() < middle;
  return isDark ? QColor(0x6c, 0xc4, 0xe0) : QColor(0x17, 0x60, 0x7a);
}

}  // namespace vlclientui::viewer
