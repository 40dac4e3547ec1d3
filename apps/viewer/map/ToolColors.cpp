#include "viewer/map/ToolColors.h"

#include <QGuiApplication>
#include <QPalette>

#include "widgets/ReadableColors.h"

namespace vlclientui::viewer {
namespace {

constexpr double leastOfShapes = 3;  // of contrast; texts want more

QColor buttonColor(QPalette::ColorRole role) { return QGuiApplication::palette().color(role); }

}  // namespace

QColor toolInk() { return buttonColor(QPalette::ButtonText); }

QColor seenOnButtons(const QColor& color) {
  const QColor button = buttonColor(QPalette::Button);
  const QColor towards = toolInk();
  constexpr int steps = 10;
  for (int step = 0; step < steps; ++step) {
    const auto mixed = [step](int from, int to) { return from + (to - from) * step / steps; };
    const QColor nearer(mixed(color.red(), towards.red()), mixed(color.green(), towards.green()),
                        mixed(color.blue(), towards.blue()));
    if (widgets::contrastOf(nearer, button) >= leastOfShapes) return nearer;
  }
  return towards;
}

QColor toolAccent() { return seenOnButtons(QColor(0x17, 0x60, 0x7a)); }

}  // namespace vlclientui::viewer
