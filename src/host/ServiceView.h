#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "client/facade/CatalogueImageService.h"
#include "client/facade/Thumbnail.h"
#include "contracts/XmlDocument.h"
#include "host/Services.h"

/// A service as a host's map draws it. Places are WGS 84 degrees.
#pragma GCC visibility push(default)
namespace vlclientui::host {

/// A place in WGS 84 degrees.
struct GeographicPoint {
  /// Longitude.
  double x = 0;
  /// Latitude.
  double y = 0;

  /// Whether both coordinates are equal.
  bool operator==(const GeographicPoint&) const = default;
};

/// From the upper left corner clockwise.
using GeographicCorners = std::array<GeographicPoint, 4>;

/// A picture and the places of its corners. Between them it is exact only where the service's coordinates run
/// straight across the map.
struct PlacedPicture {
  /// May have fewer pixels than were asked for.
  client::Thumbnail picture;
  /// Of the picture's outer edges.
  GeographicCorners corners;
  client::Bounds extent = {};  ///< in the coordinates of the service
};

/// The part of a service that a map shows.
struct ViewedPart {
  client::Bounds extent;  ///< in the coordinates of the service
  int columns = 1;        ///< of the map's pixels that it covers
  /// Likewise, down.
  int rows = 1;
  /// Of the extent.
  GeographicCorners corners = {};
};

/// What of a service a map shows. @param service its facts. @param view of the map. @param columns,rows of
/// the map in pixels, at least 1.
/// @returns nothing when the map shows no part of the service.
[[nodiscard]] std::optional<ViewedPart> partInView(const client::RasterFacts& service,
                                                   const GeographicEnvelope& view, int columns, int rows);

/// Draws the part of the service that a map shows, by the service's properties, and makes it the image last
/// returned. @param service that is drawn. @param view of the map. @param columns,rows of the map in pixels,
/// at least 1; the picture has those that it covers. @returns nothing when the map shows no part of the
/// service.
/// @throws RuntimeFailure when it cannot be drawn.
[[nodiscard]] std::optional<PlacedPicture> drawView(client::CatalogueImageService& service,
                                                    const GeographicEnvelope& view, int columns, int rows);
/// The same apart from the service, on any thread; the image last returned stays as it is.
[[nodiscard]] std::optional<PlacedPicture> drawView(const client::ServiceDrawing& drawing,
                                                    const GeographicEnvelope& view, int columns, int rows);

/// Marks of a mosaic for the map. Other services have none, since a viewpoint changes nothing there.
struct ServiceMarks {
  std::vector<GeographicCorners> footprints;  ///< the rectangles of the sources, bottom first, as defined
  std::optional<GeographicPoint>
      viewPoint;  ///< the one in effect: that of the properties, else the service's middle
};

/// What cannot be brought to degrees is left out.
[[nodiscard]] ServiceMarks serviceMarks(const client::CatalogueImageService& service);

/// The service properties document without a blank viewpoint. The dialogs write a blank one until somebody
/// moves it, and it would erase the service's own. Other texts come back unchanged.
[[nodiscard]] std::string withoutBlankViewPoint(const std::string& properties, const XmlService& xml);

}  // namespace vlclientui::host
#pragma GCC visibility pop
