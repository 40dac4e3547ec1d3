#include "host/OfferedExtents.h"

#include "client/facade/ImageDocuments.h"
#include "client/facade/ServiceCoordinates.h"

namespace vlclientui::host {

std::string offeredExtents(const client::CatalogueImageService& service,
                           const std::vector<NamedPlace>& places) {
  std::vector<client::NamedBounds> extents;
  for (const auto& [description, place] : places) {
    const auto bounds =
        client::inServiceCoordinates({place.xMin, place.yMin, place.xMax, place.yMax}, service.facts());
    if (bounds) extents.push_back({description, *bounds});
  }
  return client::customEnvelopesDocument(extents);
}

}  // namespace vlclientui::host
