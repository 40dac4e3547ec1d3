#include "qgis/provider/ProviderMetadata.h"

#include "qgis/provider/LayerHost.h"
#include "qgis/provider/ServiceProvider.h"

namespace vlclientui::qgis {
namespace {

const auto referencePart = QStringLiteral("reference");
const auto propertiesPart = QStringLiteral("properties");
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
  return {{referencePart, QString::fromStdString(source.reference)},
          {propertiesPart, QString::fromStdString(source.properties)},
          {contentPart, isOfValues ? values : QStringLiteral("colors")}};
}

QString ProviderMetadata::encodeUri(const QVariantMap& parts) const {
  LayerSource source{parts.value(referencePart).toString().toStdString()};
  source.properties = parts.value(propertiesPart).toString().toStdString();
  if (parts.value(contentPart).toString() == values) source.content = LayerContent::Values;
  return sourceText(source);
}

void ProviderMetadata::cleanupProvider() { releaseLayerHost(); }

}  // namespace vlclientui::qgis
