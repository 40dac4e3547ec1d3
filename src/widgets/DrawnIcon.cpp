#include "widgets/DrawnIcon.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

namespace vlclientui::widgets {
namespace {

class DrawnIcon : public QIconEngine {
 public:
  explicit DrawnIcon(IconDrawing drawing) : drawing_(drawing) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State state) override {
    const double side = qMin(place.width(), place.height());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(place.x() + (place.width() - side) / 2, place.y() + (place.height() - side) / 2);
    painter->scale(side / iconDesignSize, side / iconDesignSize);
    if (mode == QIcon::Disabled) painter->setOpacity(0.4);
    drawing_(*painter, state);
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
  IconDrawing drawing_;
};

}  // namespace

QIcon drawnIcon(IconDrawing drawing) { return QIcon(new DrawnIcon(drawing)); }

}  // namespace vlclientui::widgets
