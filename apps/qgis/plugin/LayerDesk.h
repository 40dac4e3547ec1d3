#pragma once

#include <QObject>
#include <QPointer>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <qgsrasterlayer.h>

#include "qgis/plugin/ExportPane.h"
#include "viewer/docks/PropertyDocks.h"
#include "viewer/map/PickedImage.h"

class QgisInterface;

namespace vlclientui::qgis {

/// The service of the layer that is picked in QGIS, with its windows and panes. What is applied in them is
/// drawn by the layer and kept by the project.
class LayerDesk : public QObject {
  Q_OBJECT

 public:
  /// @param places offered to exports beside the service's own extents; the last one is proposed.
  LayerDesk(host::ComposedHost host, QgisInterface& qgis, ExportPane::Places places);
  /// Takes the panes away.
  ~LayerDesk() override;

  /// Null while no layer of a service is picked.
  [[nodiscard]] QgsRasterLayer* layer() const { return layer_; }
  /// Whether the picked service is open for windows.
  [[nodiscard]] bool isOpen() const { return image_->service() != nullptr; }
  /// Whether something of it is being read still.
  [[nodiscard]] bool isBusy() const { return image_->isBusy(); }
  /// That open and close the panes: of properties, viewpoint, metadata and export.
  [[nodiscard]] QList<QAction*> paneToggles() const;

  void showProperties();
  void showViewPoint();
  void showMetadata();
  void exportImage();

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
  void settleDock(QAction& toggle);
  void followService();
  void followQgis();
  void tellExport(const viewer::ExportOutcome& outcome);
  void tellFailure(const QString& title, const std::exception& failure);
  [[nodiscard]] std::vector<std::string> presentProperties() const;

  host::ComposedHost host_;
  QgisInterface& qgis_;
  ExportPane::Places places_;
  QPointer<QgsRasterLayer> layer_;
  viewer::PickedImage* image_;
  std::unique_ptr<viewer::PropertyDocks> docks_;
  QPointer<ExportPane> exports_;
  QList<QPointer<QDockWidget>> panes_;
};

}  // namespace vlclientui::qgis
