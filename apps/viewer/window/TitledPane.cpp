#include "viewer/window/TitledPane.h"

#include <QLabel>
#include <QVBoxLayout>

namespace vlclientui::viewer {

QWidget* titledPane(const QString& title, QWidget& content, QWidget& buddy) {
  auto* const heading = new QLabel(title);
  heading->setBuddy(&buddy);
  heading->setContentsMargins(4, 4, 4, 2);
  auto* const pane = new QWidget;
  auto* const rows = new QVBoxLayout(pane);
  rows->setContentsMargins(4, 4, 4, 4);
  rows->setSpacing(2);
  rows->addWidget(heading);
  rows->addWidget(&content, 1);
  return pane;
}

}  // namespace vlclientui::viewer
