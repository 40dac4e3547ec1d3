#include "viewer/colors/Legend.h"

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <ranges>

#include "client/mapping/Coloring.h"

namespace vlclientui::viewer {
namespace {

using client::Coloring;
using client::Ramp;
using client::SampleTile;
using client::Stretch;

constexpr int barPixels = 128;
constexpr std::size_t mostClasses = 16;  // a map is to be seen beside them

QString tr(const char* text) { return QCoreApplication::translate("Legend", text); }

QString numberText(double value) { return QString::number(value, 'g', 6); }

// As the map colors these values on level ground.
QImage coloredBar(const Stretch& stretch) {
  SampleTile tile(barPixels, 1, 1);
  for (std::size_t i = 0; i < tile.size(); ++i) {
    const double share = static_cast<double>(i) / (barPixels - 1);
    tile.samples[i] =
        static_cast<float>(stretch.lowest[0] + (stretch.highest[0] - stretch.lowest[0]) * share);
    tile.alpha[i] = 255;
  }
  Stretch level = stretch;
  level.steepness = 0;
  const auto rgba = client::coloredTile(tile, level, {}, {});
  return QImage(rgba.data(), barPixels, 1, QImage::Format_RGBA8888).copy();
}

QImage bandBar(std::size_t place) {
  QImage bar(barPixels, 1, QImage::Format_RGB32);
  for (int i = 0; i < barPixels; ++i) {
    std::array<int, 3> color{};
    color[place] = 255 * i / (barPixels - 1);
    bar.setPixel(i, 0, qRgb(color[0], color[1], color[2]));
  }
  return bar;
}

QString bandText(int band, const client::ServiceWords& words) {
  const auto found = std::ranges::find(words.bands, band, &client::ServiceBand::number);
  return found == words.bands.end() ? tr("Band %1").arg(band) : QString::fromStdString(found->name);
}

// A red band as red needs no word more.
QString channelText(const QString& channel, const QString& band) {
  return channel.compare(band, Qt::CaseInsensitive) == 0 ? channel : tr("%1: %2").arg(channel, band);
}

LegendLine lineOfClass(const client::ServiceClass& one) {
  QImage patch(1, 1, QImage::Format_ARGB32);
  patch.setPixelColor(0, 0, QColor(one.color[0], one.color[1], one.color[2], one.color[3]));
  return {patch, one.name.empty() ? QString::number(one.value) : QString::fromStdString(one.name), {}, {}};
}

std::vector<LegendLine> linesOfClasses(const std::vector<client::ServiceClass>& classes) {
  if (classes.empty()) return {{QImage(), tr("Classes in colors of their own"), {}, {}}};
  std::vector<LegendLine> lines;
  for (const auto& one : classes | std::views::take(mostClasses)) lines.push_back(lineOfClass(one));
  if (classes.size() > mostClasses)
    lines.push_back({QImage(), tr("and %1 more").arg(classes.size() - mostClasses), {}, {}});
  return lines;
}

LegendLine lineOf(const Stretch& stretch, std::size_t place, const QImage& bar, const QString& text) {
  return {bar, text, numberText(stretch.lowest[place]), numberText(stretch.highest[place])};
}

}  // namespace

std::vector<LegendLine> legendOf(const Stretch& stretch, const client::ServiceWords& words) {
  const QString band = bandText(stretch.bands[0], words);
  switch (stretch.coloring) {
    case Coloring::Palette:
      return linesOfClasses(words.classes);
    case Coloring::Shading:
      return {{rampImage(Ramp::Gray, barPixels), tr("%1: light from the upper left").arg(band), {}, {}}};
    case Coloring::Colors: {
      std::vector<LegendLine> lines;
      const std::array<QString, 3> names = {tr("Red"), tr("Green"), tr("Blue")};
      for (std::size_t place = 0; place < 3; ++place) {
        lines.push_back(lineOf(stretch, place, bandBar(place),
                               channelText(names[place], bandText(stretch.bands[place], words))));
      }
      return lines;
    }
    case Coloring::Ramp:
    case Coloring::Relief:
    case Coloring::Deviations:
      break;
  }
  return {lineOf(stretch, 0, coloredBar(stretch), band)};
}

QString coloringName(Coloring coloring) {
  switch (coloring) {
    case Coloring::Palette:
      return tr("Classes in colors of their own");
    case Coloring::Colors:
      return tr("Three bands as red, green and blue");
    case Coloring::Ramp:
      return tr("One band along a row of colors");
    case Coloring::Relief:
      return tr("Heights in colors, lit");
    case Coloring::Deviations:
      return tr("Heights around zero, lit");
    case Coloring::Shading:
      break;
  }
  return tr("Heights as light and shade");
}

QString rampName(Ramp ramp) {
  switch (ramp) {
    case Ramp::Gray:
      return tr("Gray");
    case Ramp::Ground:
      return tr("Ground");
    case Ramp::Heat:
      return tr("Heat");
    case Ramp::Water:
      return tr("Water");
    case Ramp::Spectrum:
      return tr("Spectrum");
    case Ramp::Dusk:
      return tr("Dusk, even steps");
    case Ramp::Lagoon:
      return tr("Lagoon, even steps");
    case Ramp::Ice:
      break;
  }
  return tr("Ice, even steps");
}

QImage rampImage(Ramp ramp, int pixels) {
  QImage bar(pixels, 1, QImage::Format_RGB32);
  for (int i = 0; i < pixels; ++i) {
    const auto color = client::rampColor(ramp, static_cast<double>(i) / (pixels - 1));
    bar.setPixel(i, 0, qRgb(color[0], color[1], color[2]));
  }
  return bar;
}

}  // namespace vlclientui::viewer
