#pragma once

#include <QAction>
#include <QList>
#include <QObject>
#include <QPointer>
#include <memory>
#include <string>
#include <vector>

#include <qgisplugin.h>

#include "host/Compose.h"
#include "host/OfferedExtents.h"

class QgisInterface;
class QToolBar;

namespace vlclientui::viewer {
class RunRecording;
}

namespace vlclientui::qgis {

class DrawnExtent;
class LayerColors;
class ServiceAlgorithms;
class LayerDesk;

/// The plugin: a menu and a tool bar in QGIS's window, and what they open.
class ServicesPlugin : public QObject, public QgisPlugin {
  Q_OBJECT

 public:
  static QString pluginName();
  static QString pluginDescription();

  /// @param qgis outlives the plugin.
  explicit ServicesPlugin(QgisInterface& qgis);
  ~ServicesPlugin() override;

  /// Registers the provider, and makes menu, tool bar and panes. Without an installation QGIS tells why.
  void initGui() override;
  void unload() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAction* add(const QIcon& icon, const QString& text, const QString& name, const QString& hint,
               void (ServicesPlugin::*act)());
  void build();
  void buildActions();
  void addServices();
  void showConnections();
  void addLayersOf(const std::vector<std::string>& references);
  void addValues();
  void exportImage();
  void showProperties();
  void showViewPoint();
  void showMetadata();
  void showColors();
  void enableActions();
  void settleRecording();
  [[nodiscard]] std::vector<host::NamedPlace> places() const;
  void tell(const QString& title, const QString& problem) const;
  void say(const QString& news) const;

  QgisInterface& qgis_;
  host::ComposedHost host_;
  std::unique_ptr<LayerDesk> desk_;
  std::unique_ptr<LayerColors> colors_;
  std::unique_ptr<DrawnExtent> drawn_;
  std::unique_ptr<viewer::RunRecording> recording_;
  QPointer<ServiceAlgorithms> algorithms_;  ///< of Processing, which takes them along
  QToolBar* bar_ = nullptr;
  QList<QAction*> all_;         ///< of the menu
  QList<QAction*> own_;         ///< that end with the plugin
  QList<QAction*> ofServices_;  ///< that need a layer of a service
  QList<QAction*> ofOpenOnes_;  ///< that need it to be open
};

}  // namespace vlclientui::qgis
