#pragma once

#include <memory>
#include <optional>

#include "client/facade/Thumbnail.h"
#include "client/raster/RasterFacts.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

class MosaicReading;
struct Drawing;
struct ImageServiceRecord;

/// How a service is drawn by the properties that it had when this was made. Apart from the service: it may be
/// drawn on another thread, while the service answers dialogs or has gone. Copies share what is never
/// changed.
class ServiceDrawing {
 public:
  /// @param drawing how. @param record that is drawn. @param mosaic opens sources that were not needed so
  /// far; null for none.
  ServiceDrawing(std::shared_ptr<const Drawing> drawing, std::shared_ptr<const ImageServiceRecord> record,
                 std::shared_ptr<MosaicReading> mosaic);

  /// What the record tells of the whole service, in the coordinate system of its properties.
  [[nodiscard]] const RasterFacts& facts() const;
  /// How it is drawn on maps, which draw it themselves (client/mapping/MapDrawer.h): with an area in the
  /// coordinates of the properties, with the sources there that were not needed so far. Never null.
  /// @throws RuntimeFailure when the wait for a server was given up, or it does not answer.
  [[nodiscard]] std::shared_ptr<const Drawing> within(const std::optional<Bounds>& area) const;
  /// As within, for who computes with the pixels: with all sources of the area, however many those are,
  /// where a map has the topmost ones.
  [[nodiscard]] std::shared_ptr<const Drawing> wholeWithin(const std::optional<Bounds>& area) const;
  /// Draws an area in natural colors. @param extent in the coordinates of facts(). @param columns,rows at
  /// least 1.
  /// @throws RuntimeFailure when it cannot be drawn, also when that was given up by a CancelSwitch.
  [[nodiscard]] Thumbnail draw(const Bounds& extent, int columns, int rows) const;

 private:
  friend class CatalogueImageService;

  enum class Needed { Topmost, All };
  [[nodiscard]] std::shared_ptr<const Drawing> broughtIn(const Bounds& area, Needed needed) const;

  std::shared_ptr<const Drawing> drawing_;
  std::shared_ptr<const ImageServiceRecord> record_;
  std::shared_ptr<MosaicReading> mosaic_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
