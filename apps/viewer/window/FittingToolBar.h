#pragma once

#include <QToolBar>
#include <map>

namespace vlclientui::viewer {

/// A tool bar whose buttons all show, however narrow the window: with their texts beside the icons, below
/// them, or without texts, as the room allows.
class FittingToolBar : public QToolBar {
  Q_OBJECT

 public:
  explicit FittingToolBar(const QString& title);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fit();
  [[nodiscard]] int widthWith(Qt::ToolButtonStyle style);

  std::map<Qt::ToolButtonStyle, int> widths_;  ///< as measured, until fonts or style change
  bool fitting_ = false;
};

}  // namespace vlclientui::viewer
