#pragma once

#include <memory>
#include <optional>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/ServiceDrawing.h"
#include "client/mapping/MapDrawer.h"
#include "qgis/provider/LayerSource.h"

namespace vlclientui::qgis {

/// The service behind a layer, as it was when this was made, in its colors. Copies of a provider share it:
/// nothing in it changes, and any thread may draw it.
class LayerService {
 public:
  /// Reads the service. @throws RuntimeFailure when it cannot be read, or cannot follow the properties.
  explicit LayerService(const LayerSource& source);

  /// Whether its pixels may have to be waited for.
  [[nodiscard]] bool readsServers() const { return readsServers_; }
  [[nodiscard]] const client::RasterFacts& facts() const { return drawing_->facts(); }
  /// How it is drawn, the same object as long as only colors change.
  [[nodiscard]] const std::shared_ptr<const client::ServiceDrawing>& drawing() const { return drawing_; }
  /// The same in other colors, which asks no server. @param stretch as LayerSource has it.
  [[nodiscard]] std::shared_ptr<const LayerService> coloredBy(const std::string& stretch) const;

  /// For the drawer of all layers.
  [[nodiscard]] const client::MapLayer& layer() const { return layer_; }
  /// For who computes with its values: all sources of an area, where the layer has the topmost ones.
  [[nodiscard]] std::shared_ptr<const client::Drawing> wholeWithin(
      const std::optional<client::Bounds>& area) const {
    return drawing_->wholeWithin(area);
  }

 private:
  LayerService(const client::CatalogueImageService& opened, const LayerSource& source);

  void color(const LayerSource& source);

  bool readsServers_;
  LayerSource source_;
  std::shared_ptr<const client::ServiceDrawing> drawing_;
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
  /// One that is open already; null for none.
  OpenedAhead(const LayerSource& source, std::shared_ptr<const LayerService> service);
  OpenedAhead(const OpenedAhead&) = delete;
  OpenedAhead& operator=(const OpenedAhead&) = delete;
  ~OpenedAhead();

 private:
  QString source_;
};

}  // namespace vlclientui::qgis
