#pragma once

#include <qgsrasterblock.h>
#include <qgsrectangle.h>

#include "client/raster/OutputGrid.h"
#include "qgis/provider/LayerService.h"

/// Pixels of services in the form that QGIS wants.
namespace vlclientui::qgis {

[[nodiscard]] client::Bounds boundsOf(const QgsRectangle& rectangle);
[[nodiscard]] QgsRectangle rectangleOf(const client::Bounds& bounds);

struct DrawnBlock {
  bool isWhole = false;  ///< false when it was given up; nothing is in it then
  QString missing;       ///< tells a person of sources that cannot be read; empty for none
};

/// Fills a block of ARGB32_Premultiplied.
/// @throws RuntimeFailure when nothing of the service can be drawn there.
[[nodiscard]] DrawnBlock drawInto(QgsRasterBlock& block, const LayerService& service,
                                  const QgsRectangle& extent);

/// The type in which QGIS gets the bands: that of the service, or one that has a "not a number" for holes.
[[nodiscard]] Qgis::DataType valuesType(const client::RasterFacts& facts);
/// Whether that one is used.
[[nodiscard]] bool marksHoles(const client::RasterFacts& facts);

/// Writes the values of a band, of valuesType. @returns false when it was given up.
/// @throws RuntimeFailure when they cannot be read.
[[nodiscard]] bool readValuesInto(void* values, const LayerService& service, const client::OutputGrid& grid,
                                  int band);

}  // namespace vlclientui::qgis
