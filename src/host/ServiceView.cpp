#include "host/ServiceView.h"

#include <algorithm>
#include <cmath>

#include "client/facade/ServiceCoordinates.h"
#include "documents/ParsedDocument.h"

namespace vlclientui::host {
namespace {

std::optional<client::Bounds> commonPart(const client::Bounds& one, const client::Bounds& other) {
  const client::Bounds part{std::max(one.xMin, other.xMin), std::max(one.yMin, other.yMin),
                            std::min(one.xMax, other.xMax), std::min(one.yMax, other.yMax)};
  if (!(part.xMin < part.xMax) || !(part.yMin < part.yMax)) return std::nullopt;
  return part;
}

int shareOf(int pixels, double part, double whole) {
  return std::clamp(static_cast<int>(std::lround(pixels * part / whole)), 1, pixels);
}

std::optional<GeographicCorners> cornersOf(const client::Bounds& bounds, const client::RasterFacts& service) {
  const auto degrees = client::inDegrees({{bounds.xMin, bounds.yMax},
                                          {bounds.xMax, bounds.yMax},
                                          {bounds.xMax, bounds.yMin},
                                          {bounds.xMin, bounds.yMin}},
                                         service);
  if (!degrees) return std::nullopt;
  GeographicCorners corners;
  std::transform(degrees->begin(), degrees->end(), corners.begin(), [](const client::Point& point) {
    return GeographicPoint{point.x, point.y};
  });
  return corners;
}

std::optional<GeographicPoint> viewPointOf(const client::CatalogueImageService& service) {
  const auto degrees = client::inDegrees({service.viewPoint()}, service.facts());
  if (!degrees) return std::nullopt;
  return GeographicPoint{degrees->front().x, degrees->front().y};
}

}  // namespace

std::optional<ViewedPart> partInView(const client::RasterFacts& facts, const GeographicEnvelope& view,
                                     int columns, int rows) {
  const auto shown = client::inServiceCoordinates({view.xMin, view.yMin, view.xMax, view.yMax}, facts);
  const auto part = shown ? commonPart(*shown, facts.envelope) : std::nullopt;
  const auto corners = part ? cornersOf(*part, facts) : std::nullopt;
  if (!corners) return std::nullopt;
  return ViewedPart{*part, shareOf(columns, part->xMax - part->xMin, shown->xMax - shown->xMin),
                    shareOf(rows, part->yMax - part->yMin, shown->yMax - shown->yMin), *corners};
}

std::optional<PlacedPicture> drawView(const client::ServiceDrawing& drawing, const GeographicEnvelope& view,
                                      int columns, int rows) {
  const auto part = partInView(drawing.facts(), view, columns, rows);
  if (!part) return std::nullopt;
  return PlacedPicture{drawing.draw(part->extent, part->columns, part->rows), part->corners, part->extent};
}

std::optional<PlacedPicture> drawView(client::CatalogueImageService& service, const GeographicEnvelope& view,
                                      int columns, int rows) {
  const client::ServiceDrawing drawing = service.drawing();
  auto placed = drawView(drawing, view, columns, rows);
  if (placed) service.showDrawn(drawing, placed->extent, placed->picture.width, placed->picture.height);
  return placed;
}

ServiceMarks serviceMarks(const client::CatalogueImageService& service) {
  ServiceMarks marks;
  const std::vector<client::Bounds> places = service.sourcePlaces();
  if (places.empty()) return marks;
  for (const client::Bounds& place : places) {
    if (const auto corners = cornersOf(place, service.facts())) marks.footprints.push_back(*corners);
  }
  marks.viewPoint = viewPointOf(service);
  return marks;
}

std::string withoutBlankViewPoint(const std::string& properties, const XmlService& xml) {
  const auto document = xml.createDocument();
  if (!loadOrStayEmpty(*document, properties)) return properties;
  bool isChanged = false;
  for (const char* path :
       {"//Vorlane/ImageServiceProperties/ViewPointX", "//Vorlane/ImageServiceProperties/ViewPointY"}) {
    const XmlNodePtr element = document->selectSingleNode(path);
    if (!element || !element->text().empty()) continue;
    element->parentNode()->removeChild(element);
    isChanged = true;
  }
  return isChanged ? document->xml() : properties;
}

}  // namespace vlclientui::host
