#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <qgsrasterlayer.h>

#include "host/OfferedExtents.h"
#include "viewer/docks/PropertyDocks.h"
#include "viewer/map/PickedImage.h"

class QgisInterface;

namespace vlclientui::qgis {

/// The service of the layer that is picked in QGIS, with its windows and panes. What is applied in them is
/// drawn by the layer and kept by the project.
class LayerDesk : public QObject {
  Q_OBJECT

 public:
  LayerDesk(host::ComposedHost host, QgisInterface& qgis);
  /// Takes the panes away.
  ~LayerDesk() override;

  /// Null while no layer of a service is picked.
  [[nodiscard]] QgsRasterLayer* layer() const { return layer_; }
  /// Whether the picked service is open for windows.
  [[nodiscard]] bool isOpen() const { return image_->service() != nullptr; }
  /// Whether something of it is being read still.
  [[nodiscard]] bool isBusy() const { return image_->isBusy(); }
  /// That open and close the panes.
  [[nodiscard]] QList<QAction*> paneToggles() const { return docks_->toggles(); }

  void showProperties();
  void showViewPoint();
  /// @param places offered beside the service's own; the last one is proposed.
  void exportImage(const std::vector<host::NamedPlace>& places);

 signals:
  /// Another service is open, or none.
  void changed();
  /// For a person.
  void said(const QString& news);
  void complained(const QString& title, const QString& problem);
  /// Of an export, to be laid into the map.
  void fileWanted(const QString& path);

 private:
  void pick(QgsMapLayer* wanted);
  void pickNow(QgsRasterLayer* wanted);
  void askBeforePicking();
  [[nodiscard]] bool settleEdits();
  void followCanvas();
  [[nodiscard]] bool drawWith(const std::string& properties);
  void changeIn(const std::function<bool(IOVLServicePropertiesDialog&)>& showWindow);
  void settleDocks();

  host::ComposedHost host_;
  QgisInterface& qgis_;
  QPointer<QgsRasterLayer> layer_;
  viewer::PickedImage* image_;
  std::unique_ptr<viewer::PropertyDocks> docks_;
  QList<QPointer<QDockWidget>> panes_;
};

}  // namespace vlclientui::qgis
