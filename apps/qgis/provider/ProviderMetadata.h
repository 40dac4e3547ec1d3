#pragma once

#include <qgsprovidermetadata.h>

namespace vlclientui::qgis {

/// Makes providers for QGIS.
class ProviderMetadata final : public QgsProviderMetadata {
 public:
  ProviderMetadata();

  QgsDataProvider* createProvider(const QString& uri, const QgsDataProvider::ProviderOptions& options,
                                  QgsDataProvider::ReadFlags flags) override;
  /// "reference", "properties", "content" and "stretch"; of a local file also "path", which QGIS lets people
  /// replace where the file is missing.
  QVariantMap decodeUri(const QString& uri) const override;
  QString encodeUri(const QVariantMap& parts) const override;
  void cleanupProvider() override;
};

}  // namespace vlclientui::qgis
