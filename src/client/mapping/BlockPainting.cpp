#include "client/mapping/BlockPainting.h"

#include "client/drawing/Drawing.h"
#include "client/mapping/Areas.h"

namespace vlclientui::client {

std::shared_ptr<const Drawing> drawingOn(const MapLayer::Source& source, const MapGrid& map,
                                         RasterHandles& handles) {
  const auto drawing = source(std::nullopt);
  const RasterFacts& facts = drawing->service->facts;
  const auto way = handles.way(map.wkt, facts.srsWkt);
  const auto reach = way ? reachOf(map.grid.extent, *way) : std::nullopt;
  const bool isInDegrees = facts.srsWkt.starts_with("GEOG");
  const auto part = reach ? partWithin(facts.envelope, *reach, isInDegrees) : std::nullopt;
  return part ? source(part) : nullptr;
}

}  // namespace vlclientui::client
