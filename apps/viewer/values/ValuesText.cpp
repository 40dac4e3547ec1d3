#include "viewer/values/ValuesText.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <iterator>

namespace vlclientui::viewer {
namespace {

using client::BandValue;
using client::SourceValues;

QString tr(const char* text) { return QCoreApplication::translate("ValuesPane", text); }

QString numberText(double value) { return QString::number(value, 'g', 10); }

QString valueText(const BandValue& band) {
  if (!band.value) return tr("no data");
  QString text = numberText(*band.value);
  if (band.imaginary) {
    text += (*band.imaginary < 0 ? " - " : " + ") + numberText(std::abs(*band.imaginary)) + "i";
  }
  if (!band.unit.empty()) text += " " + QString::fromStdString(band.unit);
  if (!band.className.empty()) text += " (" + QString::fromStdString(band.className) + ")";
  return text;
}

ValueLine bandLine(const BandValue& band) {
  ValueLine line{QString::fromStdString(band.name), valueText(band)};
  if (band.color) line.color = QColor((*band.color)[0], (*band.color)[1], (*band.color)[2], (*band.color)[3]);
  return line;
}

void addBands(ValueLine& to, const SourceValues& source) {
  std::ranges::transform(source.bands, std::back_inserter(to.lines), bandLine);
}

QString kindText(const SourceValues& source) {
  if (source.kind == SourceValues::Kind::Unreadable)
    return tr("cannot be read: %1").arg(QString::fromStdString(source.problem));
  if (source.kind == SourceValues::Kind::Hole) return tr("no data here");
  return source.isOnTop ? tr("on top") : tr("below");
}

ValueLine sourceLine(const SourceValues& source) {
  ValueLine line{QString::fromStdString(source.name), kindText(source)};
  line.isStrong = source.isOnTop;
  if (!source.id.empty()) line.lines.push_back({tr("Id"), QString::fromStdString(source.id)});
  for (const auto& [name, value] : source.attributes)
    line.lines.push_back({QString::fromStdString(name), QString::fromStdString(value)});
  if (source.kind != SourceValues::Kind::Unreadable) {
    line.lines.push_back({tr("Column, row"), QString("%1, %2").arg(source.column).arg(source.row)});
    addBands(line, source);
  }
  return line;
}

QString stateText(const ReadValues& read) {
  switch (read.state) {
    case ReadValues::State::Reading:
      return tr("reading\u2026");
    case ReadValues::State::GivenUp:
      return tr("canceled");
    case ReadValues::State::Failed:
      return tr("cannot be read: %1").arg(read.problem);
    case ReadValues::State::Read:
      break;
  }
  return read.sources.empty() ? tr("nothing here") : QString();
}

}  // namespace

ValueLine valueLineOf(const ReadValues& read) {
  ValueLine line{read.service, stateText(read)};
  line.isStrong = true;
  const auto top = std::ranges::find_if(read.sources, &SourceValues::isOnTop);
  if (top != read.sources.end()) addBands(line, *top);
  std::ranges::transform(read.sources, std::back_inserter(line.lines), sourceLine);
  return line;
}

}  // namespace vlclientui::viewer
