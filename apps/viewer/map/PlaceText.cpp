#include "viewer/map/PlaceText.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

#include "viewer/map/MapView.h"

namespace vlclientui::viewer {
namespace {

constexpr double halfTurn = 180;
constexpr double pole = 90;

QString tr(const char* text) { return MapView::tr(text); }

// With the sign of what is shown: no "0.00 W".
QString degreesText(double value, int digits, const QString& positive, const QString& negative) {
  const QString number = QString::number(std::abs(value), 'f', digits);
  return number + QChar(0x00B0) + ' ' + (value < 0 && number.toDouble() > 0 ? negative : positive);
}

QString longitudeText(double value, int digits) { return degreesText(value, digits, tr("E"), tr("W")); }
QString latitudeText(double value, int digits) { return degreesText(value, digits, tr("N"), tr("S")); }

// Other units are told by the name of the system alone.
QString unitText(const client::MapSystem& system) {
  constexpr double foot = 0.3048;
  constexpr double surveyFoot = 1200.0 / 3937;
  constexpr double nearly = 1e-9;
  const auto is = [&](double unit) { return std::abs(system.metersPerUnit - unit) < nearly; };
  if (is(1)) return " m";
  if (is(foot)) return " ft";
  if (is(surveyFoot)) return " ftUS";
  return is(1000) ? " km" : "";
}

}  // namespace

QString placeText(const MapFrame& frame, client::MapPoint place) {
  const int digits = std::clamp(static_cast<int>(std::ceil(1 - std::log10(frame.pixel()))), 0, 8);
  if (!frame.system().isInDegrees) {
    return QString::number(place.x, 'f', digits) + ", " + QString::number(place.y, 'f', digits) +
           unitText(frame.system());
  }
  if (std::abs(place.x) > halfTurn || std::abs(place.y) > pole) return {};
  return longitudeText(place.x, digits) + ", " + latitudeText(place.y, digits);
}

QString scaleText(const MapFrame& frame, int dotsPerInch) {
  constexpr double inch = 0.0254;
  const double ground = frame.groundPixel().value_or(frame.pixel() * frame.system().metersPerUnit);
  const double scale = ground * std::max(1, dotsPerInch) / inch;
  return "1:" + QLocale().toString(std::llround(scale));
}

QString extentText(const MapFrame& frame) {
  constexpr int digits = 2;
  const auto view = frame.view();
  return tr("%1 to %2, %3 to %4")
      .arg(longitudeText(view.xMin, digits), longitudeText(view.xMax, digits),
           latitudeText(view.yMin, digits), latitudeText(view.yMax, digits));
}

}  // namespace vlclientui::viewer
