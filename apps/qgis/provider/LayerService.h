#pragma once

#include <memory>
#include <optional>

#include "client/facade/ServiceDrawing.h"
#include "client/mapping/MapDrawer.h"
#include "qgis/provider/LayerSource.h"

namespace vlclientui::qgis {

/// The service behind a layer, as it was when this was made. Copies of a provider share it: nothing in it
/// changes, and any thread may draw it.
class LayerService {
 public:
  /// Reads the service. @throws RuntimeFailure when it cannot be read, or cannot follow the properties.
  explicit LayerService(const LayerSource& source);

  [[nodiscard]] const client::RasterFacts& facts() const { return drawing_.facts(); }
  /// For the drawer of all layers.
  [[nodiscard]] const client::MapLayer& layer() const { return layer_; }
  /// For who computes with its values: all sources of an area, where the layer has the topmost ones.
  [[nodiscard]] std::shared_ptr<const client::Drawing> wholeWithin(
      const std::optional<client::Bounds>& area) const {
    return drawing_.wholeWithin(area);
  }

 private:
  client::ServiceDrawing drawing_;
  client::MapLayer layer_;
};

/// Opens the service of a source, by doPatiently. @throws RuntimeFailure as LayerService.
[[nodiscard]] std::shared_ptr<const LayerService> openedService(const LayerSource& source);
/// The same for a provider: takes one that was opened ahead, and asks no server again that a person has just
/// given up, as for each of the layers of a project.
[[nodiscard]] std::shared_ptr<const LayerService> serviceForProvider(const LayerSource& source);

/// A service that is opened before the layer is touched: a layer without its provider must not meet events.
/// While this lives, providers of that source take it.
class OpenedAhead {
 public:
  /// @throws RuntimeFailure as LayerService.
  explicit OpenedAhead(const LayerSource& source);
  OpenedAhead(const OpenedAhead&) = delete;
  OpenedAhead& operator=(const OpenedAhead&) = delete;
  ~OpenedAhead();

 private:
  QString source_;
};

}  // namespace vlclientui::qgis
