#include "widgets/SymbolIcons.h"

#include <QIconEngine>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace vlclientui::widgets {

namespace {

/// Side of the square in which the pictures are designed.
constexpr qreal designSize = 16.0;

using Drawing = void (*)(QPainter&);

class DrawnIcon : public QIconEngine {
 public:
  explicit DrawnIcon(Drawing drawing) : drawing_(drawing) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State /*state*/) override {
    const int side = qMin(place.width(), place.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(place.center().x() + 0.5 - side / 2.0, place.center().y() + 0.5 - side / 2.0);
    painter->scale(side / designSize, side / designSize);
    if (mode == QIcon::Disabled) painter->setOpacity(0.4);
    drawing_(*painter);
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }

  [[nodiscard]] QIconEngine* clone() const override { return new DrawnIcon(drawing_); }

 private:
  Drawing drawing_;
};

void drawFolder(QPainter& painter) {
  painter.setPen(QPen(QColor(0xa8, 0x76, 0x1e), 0.9));
  QPainterPath back;
  back.moveTo(1.2, 13);
  back.lineTo(1.2, 3.4);
  back.quadTo(1.2, 2.6, 2, 2.6);
  back.lineTo(6, 2.6);
  back.lineTo(7.6, 4.4);
  back.lineTo(14, 4.4);
  back.quadTo(14.8, 4.4, 14.8, 5.2);
  back.lineTo(14.8, 13);
  back.closeSubpath();
  painter.fillPath(back, QColor(0xdd, 0xa5, 0x3a));
  painter.drawPath(back);
  QLinearGradient front(0, 6, 0, 13.4);
  front.setColorAt(0, QColor(0xff, 0xdd, 0x86));
  front.setColorAt(1, QColor(0xf2, 0xbe, 0x55));
  painter.setBrush(front);
  painter.drawRoundedRect(QRectF(1.2, 6.2, 13.6, 7.4), 0.9, 0.9);
}

void drawService(QPainter& painter) {
  const QRectF frame(1.2, 2.2, 13.6, 11.6);
  QPainterPath clip;
  clip.addRoundedRect(frame, 1.2, 1.2);
  painter.save();
  painter.setClipPath(clip);
  QLinearGradient sky(0, 2, 0, 10);
  sky.setColorAt(0, QColor(0x6f, 0xb4, 0xe8));
  sky.setColorAt(1, QColor(0xd5, 0xec, 0xfa));
  painter.fillRect(frame, sky);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0xff, 0xd7, 0x4d));
  painter.drawEllipse(QPointF(11.4, 5.4), 1.5, 1.5);
  painter.setBrush(QColor(0x7f, 0x9d, 0x6b));
  painter.drawPolygon(QPolygonF({{6.5, 14}, {11.2, 7.6}, {16, 14}}));
  painter.setBrush(QColor(0x46, 0x86, 0x4f));
  painter.drawPolygon(QPolygonF({{0, 14}, {5.2, 6.4}, {10.6, 14}}));
  painter.restore();
  painter.setPen(QPen(QColor(0x3d, 0x5f, 0x7d), 0.9));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(frame, 1.2, 1.2);
}

}  // namespace

QIcon folderIcon() { return QIcon(new DrawnIcon(drawFolder)); }

QIcon serviceIcon() { return QIcon(new DrawnIcon(drawService)); }

}  // namespace vlclientui::widgets
