#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/Thumbnail.h"
#include "contracts/XmlDocument.h"
#include "host/Services.h"

/// What a host that shows a map draws of a service. Places are WGS 84 degrees.
namespace vlclientui::host {

struct GeographicPoint {
  double x = 0;
  double y = 0;

  bool operator==(const GeographicPoint&) const = default;
};

/// From the upper left corner clockwise.
using GeographicCorners = std::array<GeographicPoint, 4>;

/// A picture whose corners lie where they are told. In between it is true as far as the service's coordinates
/// run straight over the map.
struct PlacedPicture {
  client::Thumbnail picture;
  GeographicCorners corners;
};

/// Draws the part of the service that a map shows, as its properties tell, and makes it the image last
/// returned. @param view on the map. @param columns,rows of the map in pixels, at least 1; the picture has as
/// many of them as it fills. @returns nothing when the map shows no part of the service.
/// @throws RuntimeFailure when it cannot be drawn.
[[nodiscard]] std::optional<PlacedPicture> drawView(client::CatalogueImageService& service,
                                                    const GeographicEnvelope& view, int columns, int rows);

/// What lies behind the picture of a mosaic. A service that is none has no marks: its viewpoint changes
/// nothing.
struct ServiceMarks {
  std::vector<GeographicCorners> footprints;  ///< the rectangles of the sources, bottom first, as defined
  std::optional<GeographicPoint> viewPoint;   ///< that counts: of the properties, else the service's middle
};

/// What cannot be brought to degrees is left out.
[[nodiscard]] ServiceMarks serviceMarks(client::CatalogueImageService& service, const XmlService& xml);

/// A service properties document without its viewpoint where that is blank. The dialogs write a blank one as
/// long as nobody has moved it; a service that is told nothing keeps its own. Other texts come back as they
/// are.
[[nodiscard]] std::string withoutBlankViewPoint(const std::string& properties, const XmlService& xml);

}  // namespace vlclientui::host
