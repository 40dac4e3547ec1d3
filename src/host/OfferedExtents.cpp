#include "host/OfferedExtents.h"

#include "client/facade/ServiceCoordinates.h"
#include "client/raster/DocumentWriter.h"

namespace vlclientui::host {
namespace {

void writeExtent(std::string& out, const std::string& description, const client::Bounds& bounds) {
  const client::Element extent(out, "CustomEnvelope");
  client::writeText(out, "Description", description);
  client::writeEdges(out, bounds);
}

}  // namespace

std::string offeredExtents(const client::CatalogueImageService& service,
                           const std::vector<NamedPlace>& places) {
  std::string out;
  {
    const client::Element root(out, "Vorlane");
    const client::Element group(out, "Client");
    const client::Element dialog(out, "ExportImageDialog");
    for (const auto& [description, place] : places) {
      const auto bounds = client::inServiceCoordinates({place.xMin, place.yMin, place.xMax, place.yMax},
                                                       service.record().facts);
      if (bounds) writeExtent(out, description, *bounds);
    }
  }
  return out;
}

}  // namespace vlclientui::host
