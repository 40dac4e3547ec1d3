#pragma once

#include <string>
#include <vector>

#include "client/facade/CatalogueImageService.h"
#include "host/Services.h"

/// Extents of a host's map for the export window.
namespace vlclientui::host {

/// A rectangle of the map and the name that the window lists.
struct NamedPlace {
  std::string description;  ///< never empty
  GeographicEnvelope place;
};

/// The document for `iExportImageDialog_ShowModalDialogEx`: the places in the coordinates of the service, in
/// their order. One that cannot be brought there is left out: there is nothing of it to be exported.
[[nodiscard]] std::string offeredExtents(const client::CatalogueImageService& service,
                                         const std::vector<NamedPlace>& places);

}  // namespace vlclientui::host
