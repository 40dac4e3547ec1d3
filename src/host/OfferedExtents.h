#pragma once

#include <string>
#include <vector>

#include "client/facade/CatalogueImageService.h"
#include "host/Services.h"

/// Extents of a host's map for the export window.
#pragma GCC visibility push(default)
namespace vlclientui::host {

/// A rectangle of the map and the name that the window lists.
struct NamedPlace {
  std::string description;  ///< never empty
  /// In WGS 84 degrees.
  GeographicEnvelope place;
};

/// The document for `iExportImageDialog_ShowModalDialogEx`: the places in the coordinates of the service, in
/// their order. One that cannot be brought there is left out: there is nothing of it to be exported.
[[nodiscard]] std::string offeredExtents(const client::CatalogueImageService& service,
                                         const std::vector<NamedPlace>& places);

/// The same for a host that lets the window begin with the service's own pixels. Each place is cut to the
/// service and moved out to whole pixels, square ones where the service's are not; one beside the service is
/// left out. The last place becomes the image last returned, since the window begins with it, in so many
/// pixels; without any it is the whole service. Sources in that place are opened.
[[nodiscard]] std::string proposedExtents(client::CatalogueImageService& service,
                                          const std::vector<NamedPlace>& places);

}  // namespace vlclientui::host
#pragma GCC visibility pop
