#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <string>
#include <vector>

#include "client/mapping/MapDrawer.h"
#include "viewer/list/ServiceListModel.h"
#include "viewer/map/MapCopies.h"
#include "viewer/map/TileImages.h"
#include "viewer/map/ToldOnce.h"

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
  /// For a person: why a service, or something of it, is not drawn where the map is; empty when all is well.
  [[nodiscard]] QString problem(const QString& reference) const { return problems_.value(reference); }
  /// Of large images that it draws.
  [[nodiscard]] MapCopies& copies() { return copies_; }
  /// Draws all anew, from files that may have changed, and what failed.
  void reload();

 signals:
  /// There is more to paint.
  void changed();
  /// @param problem as problem() tells it.
  void problemChanged(const QString& reference, const QString& problem);

 private:
  void tell();
  void tellProblems();
  void wantCopy(const std::string& file);
  void forgetRows(int first, int last);
  void paintThrough(QPainter& painter, const ServiceListModel::Row& row, const MapFrame& frame,
                    double density);
  void paintLayer(QPainter& painter, const std::string& id, const MapFrame& frame, double density);

  const ServiceListModel& services_;
  QHash<QString, QString> problems_;  ///< by reference; none of those without
  MapCopies copies_;
  TileImages images_;
  ToldOnce told_;
  client::MapDrawer drawer_;  ///< goes first: its threads tell this object
};

}  // namespace vlclientui::viewer
