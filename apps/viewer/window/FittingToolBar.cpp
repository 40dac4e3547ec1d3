#include "viewer/window/FittingToolBar.h"

#include <QEvent>
#include <QLayout>
#include <utility>

namespace vlclientui::viewer {

FittingToolBar::FittingToolBar(const QString& title) : QToolBar(title) {
  setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
}

void FittingToolBar::resizeEvent(QResizeEvent* event) {
  QToolBar::resizeEvent(event);
  fit();
}

void FittingToolBar::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) widths_.clear();
}

int FittingToolBar::widthWith(Qt::ToolButtonStyle style) {
  const auto known = widths_.find(style);
  if (known != widths_.end()) return known->second;
  setToolButtonStyle(style);
  layout()->activate();
  return widths_[style] = layout()->sizeHint().width();
}

// Measuring resizes the bar.
void FittingToolBar::fit() {
  if (std::exchange(fitting_, true)) return;
  auto chosen = Qt::ToolButtonIconOnly;
  for (const auto style : {Qt::ToolButtonTextUnderIcon, Qt::ToolButtonTextBesideIcon}) {
    if (widthWith(style) <= width()) chosen = style;
  }
  setToolButtonStyle(chosen);
  fitting_ = false;
}

}  // namespace vlclientui::viewer
