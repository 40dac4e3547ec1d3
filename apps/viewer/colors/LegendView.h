#pragma once

#include <QString>
#include <QWidget>
#include <optional>
#include <vector>

#include "viewer/colors/Legend.h"

namespace vlclientui::viewer {

/// A legend, as tall and wide as it needs to be. Sharp at any density.
class LegendView : public QWidget {
  Q_OBJECT

 public:
  explicit LegendView(QWidget* parent = nullptr);

  /// @param title empty for none. @param lines none hides all but the title.
  void showLines(const QString& title, std::vector<LegendLine> lines);
  [[nodiscard]] const std::vector<LegendLine>& lines() const { return lines_; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] int heightOf(const LegendLine& line) const;
  void paintLine(QPainter& painter, const LegendLine& line, int top) const;
  void paintPatch(QPainter& painter, const LegendLine& line, const QRect& place) const;

  QString title_;
  std::vector<LegendLine> lines_;
};

}  // namespace vlclientui::viewer
