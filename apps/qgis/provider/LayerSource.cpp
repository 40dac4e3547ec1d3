#include "qgis/provider/LayerSource.h"

#include <QStringList>
#include <QUrl>
#include <algorithm>

namespace vlclientui::qgis {
namespace {

const auto beginning = QStringLiteral("reference=");
const auto behindPath = QStringLiteral("|vlclientui");
const auto contentOfValues = QStringLiteral("values");
/// Before the file of a definition.
const auto definitionScheme = QStringLiteral("VLDef://");

QString encoded(const std::string& text) {
  return QString::fromLatin1(QUrl::toPercentEncoding(QString::fromStdString(text)));
}

std::string decoded(const QString& text) { return QUrl::fromPercentEncoding(text.toUtf8()).toStdString(); }

// QGIS reads a backslash as a slash; what cannot stand in its projects stays encoded.
bool isPlain(const QString& path) {
  return std::ranges::all_of(path,
                             [](QChar letter) { return letter.isPrint() && letter != QLatin1Char('\\'); });
}

void readParts(LayerSource& source, const QString& text) {
  for (const QString& part : text.split(QLatin1Char('&'))) {
    const QString name = part.section(QLatin1Char('='), 0, 0);
    const QString value = part.section(QLatin1Char('='), 1);
    if (name == QLatin1String("reference")) source.reference = decoded(value);
    if (name == QLatin1String("scheme")) source.reference = decoded(value) + source.reference;
    if (name == QLatin1String("properties")) source.properties = decoded(value);
    if (name == QLatin1String("stretch")) source.stretch = decoded(value);
    if (name == QLatin1String("content") && value == contentOfValues) source.content = LayerContent::Values;
  }
}

QString schemeOf(const QString& reference) {
  return reference.startsWith(definitionScheme, Qt::CaseInsensitive) ? reference.left(definitionScheme.size())
                                                                     : QString();
}

}  // namespace

QString sourceText(const LayerSource& source) {
  const QString file = localFileOf(source);
  const bool beginsWithIt = !file.isEmpty() && isPlain(file);
  QString text = beginsWithIt ? file + behindPath : beginning + encoded(source.reference);
  const QString before = schemeOf(QString::fromStdString(source.reference));
  if (beginsWithIt && !before.isEmpty()) text += QStringLiteral("&scheme=") + encoded(before.toStdString());
  if (source.content == LayerContent::Values) text += QStringLiteral("&content=") + contentOfValues;
  if (!source.stretch.empty()) text += QStringLiteral("&stretch=") + encoded(source.stretch);
  if (!source.properties.empty()) text += QStringLiteral("&properties=") + encoded(source.properties);
  return text;
}

LayerSource layerSourceOf(const QString& text) {
  LayerSource source;
  const auto endOfPath = text.lastIndexOf(behindPath);
  if (text.startsWith(beginning)) {
    readParts(source, text);
  } else {
    source.reference = text.left(endOfPath).toStdString();
    if (endOfPath >= 0) readParts(source, text.mid(endOfPath + behindPath.size()));
  }
  return source;
}

QString localFileOf(const LayerSource& source) {
  const QString reference = QString::fromStdString(source.reference);
  const QString file = reference.mid(schemeOf(reference).size());
  return file.startsWith(QLatin1Char('/')) ? file : QString();
}

LayerSource withLocalFile(LayerSource source, const QString& file) {
  source.reference = (schemeOf(QString::fromStdString(source.reference)) + file).toStdString();
  return source;
}

}  // namespace vlclientui::qgis
