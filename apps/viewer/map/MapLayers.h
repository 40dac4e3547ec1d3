#pragma once

#include <QImage>
#include <QObject>
#include <atomic>
#include <string>
#include <vector>

#include "client/mapping/MapDrawer.h"
#include "viewer/list/ServiceListModel.h"

class QPainter;

namespace vlclientui::viewer {

class MapFrame;

/// The services of the list on the map: drawn on threads of their own, painted from what there is.
class MapLayers : public QObject {
  Q_OBJECT

 public:
  explicit MapLayers(const ServiceListModel& services, QObject* parent = nullptr);
  /// Gives up what is being drawn.
  ~MapLayers() override;

  /// What is wanted from now on. Returns at once. @param density pixels of the screen for one of the frame.
  void show(const MapFrame& frame, double density);
  /// Lays all services over each other, the first of the list on top.
  void paint(QPainter& painter, const MapFrame& frame, double density);
  /// One service alone, in pixels of the screen; transparent where it has none.
  [[nodiscard]] QImage picture(const QString& reference, const MapFrame& frame, double density, QSize size);
  /// How a service is colored: as was chosen, or decided; null until that is known.
  [[nodiscard]] std::shared_ptr<const client::Stretch> stretch(const QString& reference) const;
  /// Whether something is missing still.
  [[nodiscard]] bool isBusy() const { return drawer_.isBusy(); }

 signals:
  /// There is more to paint.
  void changed();

 private:
  void tell();
  void paintThrough(QPainter& painter, const ServiceListModel::Row& row, const MapFrame& frame,
                    double density);
  void paintLayer(QPainter& painter, const std::string& id, const MapFrame& frame, double density);

  const ServiceListModel& services_;
  std::atomic<bool> isTold_ = false;  ///< several pictures are told of at once
  client::MapDrawer drawer_;          ///< goes first: its threads tell this object
};

}  // namespace vlclientui::viewer
