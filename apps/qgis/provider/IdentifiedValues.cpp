#include "qgis/provider/IdentifiedValues.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>

#include <qgscoordinatereferencesystem.h>
#include <qgsfeaturestore.h>
#include <qgsfields.h>

#include "client/mapping/ValuesAt.h"

namespace vlclientui::qgis {
namespace {

using client::BandValue;
using client::SourceValues;

QString told(const char* text) { return QCoreApplication::translate("IdentifiedValues", text); }

QString valueText(const BandValue& band) {
  if (!band.value) return told("no data");
  QString text = QLocale::c().toString(*band.value, 'g', 10);
  if (band.imaginary) text += QStringLiteral(" %1 i").arg(QLocale::c().toString(*band.imaginary, 'g', 10));
  if (!band.unit.empty()) text += QStringLiteral(" ") + QString::fromStdString(band.unit);
  if (!band.className.empty()) text += QStringLiteral(" (%1)").arg(QString::fromStdString(band.className));
  return text;
}

QString stateOf(const SourceValues& source) {
  if (source.kind == SourceValues::Kind::Unreadable) return QString::fromStdString(source.problem);
  if (source.kind == SourceValues::Kind::Hole) return told("no data here");
  return source.isOnTop ? told("shown") : told("covered");
}

/// One raster as a feature without a shape, with a store of its own, since rasters differ in their fields.
QgsFeatureStore storeOf(const SourceValues& source) {
  QgsFields fields;
  QgsAttributes values;
  const auto add = [&](const QString& name, const QString& value) {
    QString unused = name;
    for (int number = 2; fields.indexOf(unused) >= 0; ++number) {
      unused = QStringLiteral("%1 (%2)").arg(name).arg(number);
    }
    fields.append(QgsField(unused, QVariant::String));
    values.append(value);
  };
  add(told("Source raster"), QString::fromStdString(source.name));
  if (!source.id.empty()) add(told("Raster ID"), QString::fromStdString(source.id));
  add(told("State"), stateOf(source));
  for (const auto& [name, value] : source.attributes) {
    add(QString::fromStdString(name), QString::fromStdString(value));
  }
  if (source.kind != SourceValues::Kind::Unreadable) {
    add(told("Column, row"), QStringLiteral("%1, %2").arg(source.column).arg(source.row));
  }
  for (const BandValue& band : source.bands) add(QString::fromStdString(band.name), valueText(band));
  QgsFeatureStore store(fields, QgsCoordinateReferenceSystem());
  store.setParams({{QStringLiteral("featureType"), QString::fromStdString(source.name)}});
  QgsFeature feature(fields);
  feature.setAttributes(values);
  feature.setValid(true);
  store.addFeature(feature);
  return store;
}

QMap<int, QVariant> bandsOnTop(const std::vector<SourceValues>& sources) {
  QMap<int, QVariant> bands;
  const auto top = std::ranges::find_if(sources, &SourceValues::isOnTop);
  if (top == sources.end()) return bands;
  for (const BandValue& band : top->bands) bands[band.band] = band.value ? QVariant(*band.value) : QVariant();
  return bands;
}

}  // namespace

QgsRasterIdentifyResult identifiedValues(const LayerService& service, const QgsPointXY& point,
                                         QgsRaster::IdentifyFormat format) {
  const auto sources =
      client::valuesAt(service.layer().source, {service.facts().srsWkt, {point.x(), point.y()}})
          .value_or(std::vector<SourceValues>());
  if (format == QgsRaster::IdentifyFormatValue) return {format, bandsOnTop(sources)};
  QgsFeatureStoreList stores;
  for (const SourceValues& source : sources) stores.append(storeOf(source));
  return {format, {{0, QVariant::fromValue(stores)}}};
}

}  // namespace vlclientui::qgis
