#include "viewer/map/HaloedText.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPixmapCache>
#include <cmath>

#include "viewer/map/MapColors.h"

namespace vlclientui::viewer {
namespace {

constexpr double haloWidth = 3;

// Around the beginning of the line.
QRectF boxOf(const QFont& font, const QString& text) {
  const QFontMetricsF metrics(font);
  constexpr double margin = haloWidth + 1;
  const QRectF box(0, -metrics.ascent(), metrics.horizontalAdvance(text), metrics.height());
  return QRectF(box.adjusted(-margin, -margin, margin, margin).toAlignedRect());
}

QPixmap picture(const QFont& font, const QString& text, const MapColors& colors, double density) {
  const QRectF box = boxOf(font, text);
  QPixmap pixmap((box.size() * density).toSize());
  pixmap.setDevicePixelRatio(density);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.translate(-box.topLeft());
  QPainterPath path;
  path.addText({0, 0}, font, text);
  painter.strokePath(path, QPen(colors.halo, haloWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.fillPath(path, colors.ink);
  return pixmap;
}

QString keyOf(const QFont& font, const QString& text, const MapColors& colors, double density) {
  const QStringList parts = {"haloed", text, font.key(), colors.halo.name(QColor::HexArgb),
                             colors.ink.name(QColor::HexArgb)};
  return parts.join('\n') + QString::number(density);
}

}  // namespace

void drawWithHalo(QPainter& painter, QPointF at, const QString& text, const MapColors& colors) {
  const double density = painter.device()->devicePixelRatioF();
  const QString key = keyOf(painter.font(), text, colors, density);
  QPixmap pixmap;
  if (!QPixmapCache::find(key, &pixmap)) {
    pixmap = picture(painter.font(), text, colors, density);
    QPixmapCache::insert(key, pixmap);
  }
  const QPointF corner = (at + boxOf(painter.font(), text).topLeft()) * density;
  // On whole pixels of the screen it stays sharp.
  painter.drawPixmap(QPointF(std::round(corner.x()), std::round(corner.y())) / density, pixmap);
}

}  // namespace vlclientui::viewer
