#include "client/drawing/ServiceSystem.h"

#include <array>
#include <cmath>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/GeoTransform.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/SystemTexts.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

// Keeps GDAL from fetching files or addresses that a document names.
bool read(OGRSpatialReference& system, const std::string& text) {
  constexpr std::array<const char*, 3> options = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO", nullptr};
  return system.SetFromUserInput(text.c_str(), options.data()) == OGRERR_NONE && !system.IsEmpty();
}

// Keeps the number of pixels along the diagonal, so no detail is lost or invented.
double pixelSizeIn(const Bounds& envelope, const RasterFacts& facts) {
  const double pixels = std::hypot(static_cast<double>(facts.columns), static_cast<double>(facts.rows));
  return std::hypot(envelope.xMax - envelope.xMin, envelope.yMax - envelope.yMin) / pixels;
}

class Move {
 public:
  Move(const std::string& fromWkt, const OGRSpatialReference& to)
      : to_(to), way_(OGRSpatialReference(fromWkt.c_str()), to) {}

  bool apply(ImageServiceRecord& service) const {
    const auto envelope = way_.of(service.facts.envelope);
    if (!envelope) return false;
    moveFacts(service.facts, *envelope);
    std::erase_if(service.sources, [&](ImageSource& source) { return !moveSource(source); });
    return !service.sources.empty();
  }

 private:
  void moveFacts(RasterFacts& facts, const Bounds& envelope) const {
    facts.pixelSize = pixelSizeIn(envelope, facts);
    facts.pixelHeight = facts.pixelSize;
    facts.envelope = envelope;
    facts.columns = pixelCount(envelope.xMax - envelope.xMin, facts.pixelSize);
    facts.rows = pixelCount(envelope.yMax - envelope.yMin, facts.pixelHeight);
    setSystem(facts, to_);
  }

  bool moveSource(ImageSource& source) const {
    const auto place = way_.of(source.place);
    if (place) source.place = *place;
    return place.has_value();
  }

  const OGRSpatialReference& to_;
  BoundsWay way_;
};

}  // namespace

std::optional<ImageServiceRecord> inSystem(const ImageServiceRecord& service, const std::string& systemText) {
  const std::string text = trimmed(systemText);
  ImageServiceRecord moved = service;
  if (text.empty() || text == trimmed(service.facts.srsWkt)) return moved;
  const GdalScope scope;
  OGRSpatialReference system;
  if (service.facts.srsWkt.empty() || !read(system, text)) return std::nullopt;
  if (wktOf(system) == service.facts.srsWkt) return moved;
  if (!Move(service.facts.srsWkt, system).apply(moved)) return std::nullopt;
  return moved;
}

}  // namespace vlclientui::client
