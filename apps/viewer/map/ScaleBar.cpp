#include "viewer/map/ScaleBar.h"

#include <QFontMetricsF>
#include <QLocale>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "viewer/map/MapColors.h"
#include "viewer/map/MapFrame.h"

namespace vlclientui::viewer {
namespace {

constexpr double usualLength = 140;  // pixels
constexpr double margin = 8;
constexpr double tick = 5;
constexpr double aboveLabels = 28;  // of the graticule

}  // namespace

QString ScaleBar::text() const {
  const QLocale locale = QLocale::c();
  const auto shown = [&](double value) { return locale.toString(value, 'g', 6); };
  if (meters >= 1000) return shown(meters / 1000) + " km";
  if (meters >= 1) return shown(meters) + " m";
  return shown(meters * 100) + " cm";
}

ScaleBar scaleBarFor(double groundPixel, double most) {
  const double longest = groundPixel * most;
  // A length that fits exactly must not miss by the last bit.
  const double power = std::pow(10, std::floor(std::log10(longest) + 1e-9));
  const double share = longest / power + 1e-9;
  const double meters = power * (share >= 5 ? 5 : share >= 2 ? 2 : 1);
  return {meters, meters / groundPixel};
}

void drawScaleBar(QPainter& painter, const MapFrame& frame, const MapColors& colors) {
  const auto ground = frame.groundPixel();
  if (!ground) return;
  const ScaleBar bar = scaleBarFor(*ground, std::min(usualLength, frame.size().width() / 3.0));
  const QString text = bar.text();
  const QFontMetricsF metrics(painter.font());
  const double width = std::max(bar.pixels, metrics.horizontalAdvance(text)) + 2 * margin;
  const double height = metrics.height() + tick + margin;
  const QRectF box(frame.size().width() - width - margin, frame.size().height() - height - aboveLabels, width,
                   height);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(colors.sheet);
  painter.drawRoundedRect(box, 4, 4);
  painter.setPen(colors.ink);
  painter.drawText(box.adjusted(0, 2, 0, 0), Qt::AlignHCenter | Qt::AlignTop, text);
  const double left = box.center().x() - bar.pixels / 2;
  const double bottom = box.bottom() - margin / 2;
  painter.setPen(QPen(colors.ink, 1.5, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
  const QPointF line[] = {
      {left, bottom - tick}, {left, bottom}, {left + bar.pixels, bottom}, {left + bar.pixels, bottom - tick}};
  painter.drawPolyline(line, 4);
  painter.restore();
}

}  // namespace vlclientui::viewer
