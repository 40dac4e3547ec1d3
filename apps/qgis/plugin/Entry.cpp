// The functions that QGIS looks for by their names. One file serves it as a plugin and as a provider.
#include <qgis.h>

#include "qgis/plugin/ServicesPlugin.h"
#include "qgis/provider/ProviderMetadata.h"

using vlclientui::qgis::ServicesPlugin;

QGISEXTERN QgisPlugin* classFactory(QgisInterface* qgis) { return new ServicesPlugin(*qgis); }

QGISEXTERN const QString* name() {
  static const QString text = ServicesPlugin::pluginName();
  return &text;
}

QGISEXTERN const QString* description() {
  static const QString text = ServicesPlugin::pluginDescription();
  return &text;
}

QGISEXTERN const QString* category() {
  static const QString text = QStringLiteral("Raster");
  return &text;
}

QGISEXTERN int type() { return QgisPlugin::UI; }

QGISEXTERN const QString* version() {
  static const QString text = QStringLiteral(VLCLIENTUI_VERSION);
  return &text;
}

QGISEXTERN const QString* icon() {
  static const QString none;
  return &none;
}

QGISEXTERN void unload(QgisPlugin* plugin) { delete plugin; }

QGISEXTERN QgsProviderMetadata* providerMetadataFactory() { return new vlclientui::qgis::ProviderMetadata; }
