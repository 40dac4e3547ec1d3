#include "client/mapping/MapPicture.h"

#include "client/mapping/Areas.h"
#include "client/mapping/ServicePainter.h"
#include "client/mapping/StretchChoice.h"
#include "client/raster/GdalScope.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

ServicePicture emptyPicture(const MapFrame& frame) {
  ServicePicture picture;
  picture.columns = frame.columns;
  picture.rows = frame.rows;
  picture.rgba.resize(4 * static_cast<std::size_t>(frame.columns) * static_cast<std::size_t>(frame.rows));
  return picture;
}

}  // namespace

std::optional<ServicePicture> pictureOnMap(const DrawingSource& source, const MapFrame& frame) {
  const GdalScope scope;
  RasterHandles handles;
  const auto whole = source(std::nullopt);
  const RasterFacts& facts = whole->service->facts;
  const auto way = handles.way(frame.wkt, facts.srsWkt);
  if (!way) throw RuntimeFailure("There is no way from the system of the map to that of the service");
  const auto reach = reachOf(frame.extent, *way);
  const auto part =
      reach ? partWithin(facts.envelope, *reach, facts.srsWkt.starts_with("GEOG")) : std::nullopt;
  if (!part) return emptyPicture(frame);
  const auto stretch = chosenStretch(*whole, handles);
  if (!stretch) return std::nullopt;
  // Alive as long as the painter.
  const auto drawing = source(part);
  auto picture = ServicePainter(*drawing, *stretch, handles)
                     .paint({frame.wkt, {frame.extent, frame.columns, frame.rows}});
  if (picture && picture->rgba.empty()) return emptyPicture(frame);
  return picture;
}

}  // namespace vlclientui::client
