#include "qgis/provider/ProviderMetadata.h"

#include "qgis/provider/LayerHost.h"
#include "qgis/provider/ServiceProvider.h"

namespace vlclientui::qgis {
namespace {

const auto referencePart = QStringLiteral("reference");
const auto propertiesPart = QStringLiteral("properties");
const auto stretchPart = QStringLiteral("stretch");
const auto pathPart = QStringLiteral("path");
const auto contentPart = QStringLiteral("content");
const auto values = QStringLiteral("values");

}  // namespace

ProviderMetadata::ProviderMetadata()
    : QgsProviderMetadata(QString::fromLatin1(providerKey), QStringLiteral("Image services of VLClientUI")) {}

QgsDataProvider* ProviderMetadata::createProvider(const QString& uri,
                                                  const QgsDataProvider::ProviderOptions& options,
                                                  QgsDataProvider::ReadFlags flags) {
  return new ServiceProvider(uri, options, flags);
}

QVariantMap ProviderMetadata::decodeUri(const QString& uri) const {
  const LayerSource source = layerSourceOf(uri);
  const bool isOfValues = source.content == LayerContent::Values;
  QVariantMap parts{{referencePart, QString::fromStdString(source.reference)},
                    {propertiesPart, QString::fromStdString(source.properties)},
                    {stretchPart, QString::fromStdString(source.stretch)},
                    {contentPart, isOfValues ? values : QStringLiteral("colors")}};
  if (const QString file = localFileOf(source); !file.isEmpty()) parts[pathPart] = file;
  return parts;
}

QString ProviderMetadata::encodeUri(const QVariantMap& parts) const {
  LayerSource source{parts.value(referencePart).toString().toStdString()};
  source.properties = parts.value(propertiesPart).toString().toStdString();
  source.stretch = parts.value(stretchPart).toString().toStdString();
  if (parts.value(contentPart).toString() == values) source.content = LayerContent::Values;
  const QString path = parts.value(pathPart).toString();
  return sourceText(path.isEmpty() ? source : withLocalFile(source, path));
}

void ProviderMetadata::cleanupProvider() { releaseLayerHost(); }

}  // namespace vlclientui::qgis
