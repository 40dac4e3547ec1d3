#include "host/OfferedExtents.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "client/facade/ImageDocuments.h"
#include "client/facade/ServiceCoordinates.h"

namespace vlclientui::host {
namespace {

/// Some pixels in a row.
struct Span {
  double from = 0;  ///< of the outer edge
  int count = 0;
};

// A place may lie on an edge up to the last digit.
constexpr double nearEdge = 1e-6;

int wholePixels(double length, double pixel) {
  const double count = std::floor(length / pixel + nearEdge);
  return static_cast<int>(std::clamp(count, 1.0, 1.0 * std::numeric_limits<int>::max()));
}

/// Those of a service of `whole` that a place touches, both from the same edge on; nothing beside the
/// service.
std::optional<Span> touched(double begin, double end, double pixel, int whole) {
  const double first = std::max(0.0, std::floor(begin / pixel + nearEdge));
  const double last = std::min<double>(whole, std::ceil(end / pixel - nearEdge));
  if (!(first < last)) return {};
  return Span{first * pixel, static_cast<int>(last - first)};
}

/// A piece of a service in pixels.
struct Piece {
  client::Bounds extent;
  int columns = 0;
  int rows = 0;
};

// The coarser side of a pixel that is no square, or there would be more columns than the service has.
std::optional<Piece> pieceOf(const client::RasterFacts& service, const client::Bounds& place) {
  const client::Bounds& all = service.envelope;
  const double pixel = std::max(service.pixelSize, service.pixelHeight);
  const auto across =
      touched(place.xMin - all.xMin, place.xMax - all.xMin, pixel, wholePixels(all.xMax - all.xMin, pixel));
  const auto down =
      touched(all.yMax - place.yMax, all.yMax - place.yMin, pixel, wholePixels(all.yMax - all.yMin, pixel));
  if (!across || !down) return {};
  const double left = all.xMin + across->from;
  const double top = all.yMax - down->from;
  return Piece{
      {left, top - down->count * pixel, left + across->count * pixel, top}, across->count, down->count};
}

std::optional<client::Bounds> boundsOf(const GeographicEnvelope& place, const client::RasterFacts& service) {
  return client::inServiceCoordinates({place.xMin, place.yMin, place.xMax, place.yMax}, service);
}

}  // namespace

std::string offeredExtents(const client::CatalogueImageService& service,
                           const std::vector<NamedPlace>& places) {
  std::vector<client::NamedBounds> extents;
  for (const auto& [description, place] : places) {
    if (const auto bounds = boundsOf(place, service.facts())) extents.push_back({description, *bounds});
  }
  return client::customEnvelopesDocument(extents);
}

std::string proposedExtents(client::CatalogueImageService& service, const std::vector<NamedPlace>& places) {
  std::vector<client::NamedBounds> extents;
  auto first = pieceOf(service.facts(), service.facts().envelope);
  for (const auto& [description, place] : places) {
    const auto bounds = boundsOf(place, service.facts());
    const auto piece = bounds ? pieceOf(service.facts(), *bounds) : std::nullopt;
    if (!piece) continue;
    extents.push_back({description, piece->extent});
    first = piece;
  }
  if (first) service.showDrawn(service.drawing(), first->extent, first->columns, first->rows);
  return client::customEnvelopesDocument(extents);
}

}  // namespace vlclientui::host
