#include "viewer/colors/LegendView.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace vlclientui::viewer {
namespace {

constexpr int margin = 6;
constexpr int barHeight = 12;
constexpr int patchWidth = 22;
constexpr int leastLegendWidth = 150;
constexpr int mostTitle = 260;

QFont boldFont(QFont font) {
  font.setBold(true);
  return font;
}

}  // namespace

LegendView::LegendView(QWidget* parent) : QWidget(parent) {
  setObjectName("Legend");
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void LegendView::showLines(const QString& title, std::vector<LegendLine> lines) {
  title_ = title;
  lines_ = std::move(lines);
  QString text = title;
  for (const LegendLine& line : lines_) text += "\n" + line.text + " " + line.low + " " + line.high;
  setAccessibleName(tr("Legend"));
  setAccessibleDescription(text);
  updateGeometry();
  update();
}

int LegendView::heightOf(const LegendLine& line) const {
  const int text = fontMetrics().height();
  if (line.isPatch()) return text;
  const int words = line.text.isEmpty() ? 0 : text;
  const int bar = line.colors.isNull() ? 0 : barHeight;
  return words + bar + (line.low.isEmpty() ? 0 : text) + margin / 2;
}

QSize LegendView::sizeHint() const {
  int width = leastLegendWidth;
  int height = 2 * margin;
  if (!title_.isEmpty()) {
    height += fontMetrics().height();
    const int title = QFontMetrics(boldFont(font())).horizontalAdvance(title_) + 2 * margin;
    width = std::max(width, std::min(mostTitle, title));
  }
  for (const LegendLine& line : lines_) {
    const int patch = line.isPatch() ? patchWidth + margin : 0;
    width =
        std::max({width, std::min(mostTitle, fontMetrics().horizontalAdvance(line.text) + 2 * margin + patch),
                  fontMetrics().horizontalAdvance(line.low + "    " + line.high) + 2 * margin});
    height += heightOf(line);
  }
  return {width, height};
}

void LegendView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor paper = palette().color(QPalette::Base);
  paper.setAlpha(230);
  painter.setPen(palette().color(QPalette::Mid));
  painter.setBrush(paper);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
  painter.setRenderHint(QPainter::Antialiasing, false);
  int top = margin;
  if (!title_.isEmpty()) {
    const QFont bold = boldFont(font());
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::Text));
    const QString shown = QFontMetrics(bold).elidedText(title_, Qt::ElideMiddle, width() - 2 * margin);
    painter.drawText(QRect(margin, top, width() - 2 * margin, fontMetrics().height()), shown);
    painter.setFont(font());
    top += fontMetrics().height();
  }
  for (const LegendLine& line : lines_) {
    paintLine(painter, line, top);
    top += heightOf(line);
  }
}

void LegendView::paintLine(QPainter& painter, const LegendLine& line, int top) const {
  const int text = fontMetrics().height();
  const int wide = width() - 2 * margin;
  painter.setPen(palette().color(QPalette::Text));
  if (line.isPatch()) return paintPatch(painter, line, QRect(margin, top, wide, text));
  if (!line.text.isEmpty()) {
    painter.drawText(QRect(margin, top, wide, text), Qt::AlignLeft | Qt::AlignVCenter, line.text);
    top += text;
  }
  if (!line.colors.isNull()) {
    painter.drawImage(QRect(margin, top, wide, barHeight), line.colors);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRect(margin, top, wide - 1, barHeight - 1));
    top += barHeight;
  }
  const QRect values(margin, top, wide, text);
  painter.drawText(values, Qt::AlignLeft | Qt::AlignVCenter, line.low);
  painter.drawText(values, Qt::AlignRight | Qt::AlignVCenter, line.high);
}

void LegendView::paintPatch(QPainter& painter, const LegendLine& line, const QRect& place) const {
  const QRect patch(place.left(), place.top() + 2, patchWidth, place.height() - 4);
  painter.fillRect(patch, line.colors.pixelColor(0, 0));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(patch.adjusted(0, 0, -1, -1));
  const QRect words = place.adjusted(patchWidth + margin, 0, 0, 0);
  const QString shown = fontMetrics().elidedText(line.text, Qt::ElideRight, words.width());
  painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter, shown);
}

}  // namespace vlclientui::viewer
