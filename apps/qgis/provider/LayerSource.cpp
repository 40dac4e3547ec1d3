#include "qgis/provider/LayerSource.h"

#include <QStringList>
#include <QUrl>

namespace vlclientui::qgis {
namespace {

const auto beginning = QStringLiteral("reference=");
const auto values = QStringLiteral("values");

QString encoded(const std::string& text) {
  return QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(text)));
}

std::string decoded(const QString& text) { return QUrl::fromPercentEncoding(text.toUtf8()).toStdString(); }

}  // namespace

QString sourceText(const LayerSource& source) {
  QString text = beginning + encoded(source.reference);
  if (source.content == LayerContent::Values) text += QStringLiteral("&content=") + values;
  if (!source.properties.empty()) text += QStringLiteral("&properties=") + encoded(source.properties);
  return text;
}

LayerSource layerSourceOf(const QString& text) {
  LayerSource source;
  if (!text.startsWith(beginning)) {
    source.reference = text.toStdString();
    return source;
  }
  for (const QString& part : text.split(QLatin1Char('&'))) {
    const QString name = part.section(QLatin1Char('='), 0, 0);
    const QString value = part.section(QLatin1Char('='), 1);
    if (name == QLatin1String("reference")) source.reference = decoded(value);
    if (name == QLatin1String("properties")) source.properties = decoded(value);
    if (name == QLatin1String("content") && value == values) source.content = LayerContent::Values;
  }
  return source;
}

}  // namespace vlclientui::qgis
