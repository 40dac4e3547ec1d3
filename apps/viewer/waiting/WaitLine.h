#pragma once

#include <QWidget>

namespace vlclientui::viewer {

/// One line of a window that waits: for what, and that it goes on. Hidden at first.
class WaitLine : public QWidget {
  Q_OBJECT

 public:
  explicit WaitLine(const QString& text, QWidget* parent = nullptr);
};

}  // namespace vlclientui::viewer
