#include "viewer/waiting/WaitLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

namespace vlclientui::viewer {

WaitLine::WaitLine(const QString& text, QWidget* parent) : QWidget(parent) {
  auto* const bar = new QProgressBar;
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setAccessibleName(text);
  auto* const cells = new QHBoxLayout(this);
  cells->setContentsMargins(0, 0, 0, 0);
  cells->addWidget(new QLabel(text));
  cells->addWidget(bar, 1);
  setObjectName("WaitLine");
  hide();
}

}  // namespace vlclientui::viewer
