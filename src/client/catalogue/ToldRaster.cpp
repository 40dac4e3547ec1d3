#include "client/catalogue/ToldRaster.h"

#include <array>
#include <cmath>
#include <utility>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

// A catalogue may hold anything; no file and no other server is asked for a system.
bool readSystem(OGRSpatialReference& system, const std::string& text) {
  constexpr std::array<const char*, 3> options = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO", nullptr};
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  return system.SetFromUserInput(text.c_str(), options.data()) == OGRERR_NONE && !system.IsEmpty();
}

std::optional<PixelSize> toldPixelSize(const ToldRaster& told) {
  if (told.transform && told.columns > 0 && told.rows > 0) {
    return northUpPixelSize(*told.transform, told.columns, told.rows);
  }
  if (told.transform && isNorthUp(*told.transform)) {
    return PixelSize{(*told.transform)[1], -(*told.transform)[5]};
  }
  if (!told.envelope || told.columns < 1 || told.rows < 1) return std::nullopt;
  return PixelSize{(told.envelope->xMax - told.envelope->xMin) / static_cast<double>(told.columns),
                   (told.envelope->yMax - told.envelope->yMin) / static_cast<double>(told.rows)};
}

std::optional<Bounds> toldEnvelope(const ToldRaster& told) {
  const bool isPlaced = told.transform && told.columns > 0 && told.rows > 0 &&
                        placesRaster(*told.transform, told.columns, told.rows);
  if (isPlaced) return envelopeOf(*told.transform, told.columns, told.rows);
  return told.envelope;
}

void setPlace(RasterFacts& facts, const ToldRaster& told, const Bounds& envelope, const PixelSize& pixel) {
  facts.envelope = envelope;
  facts.pixelSize = pixel.across;
  facts.pixelHeight = pixel.down;
  facts.columns = pixelCount(envelope.xMax - envelope.xMin, pixel.across);
  facts.rows = pixelCount(envelope.yMax - envelope.yMin, pixel.down);
  facts.fileColumns = told.columns > 0 ? told.columns : facts.columns;
  facts.fileRows = told.rows > 0 ? told.rows : facts.rows;
  facts.geographicEnvelope = told.geographic;
  facts.region = told.geographic ? regionText(*told.geographic) : std::string();
}

double snapped(double value, double origin, double step, double (*direction)(double)) {
  return origin + direction((value - origin) / step) * step;
}

// Rasters of one catalogue and one system mostly share the corners of their pixels.
Bounds onPixelsOf(const Bounds& bounds, const RasterFacts& sample, const PixelSize& pixel) {
  const double x = sample.envelope.xMin;
  const double y = sample.envelope.yMax;
  const auto down = [](double number) { return std::floor(number); };
  const auto up = [](double number) { return std::ceil(number); };
  return {snapped(bounds.xMin, x, pixel.across, down), snapped(bounds.yMin, y, pixel.down, down),
          snapped(bounds.xMax, x, pixel.across, up), snapped(bounds.yMax, y, pixel.down, up)};
}

}  // namespace

// A system, and the way into it from degrees.
struct ToldFacts::System {
  RasterFacts texts;
  bool isKnown = true;
  std::optional<BoundsWay> fromDegrees;
};

bool ToldRaster::isExact() const {
  const bool hasSize = columns > 0 && rows > 0;
  return hasSize && !system.empty() && (transform.has_value() || envelope.has_value());
}

ToldFacts::ToldFacts(SampleRaster sample) : sample_(std::move(sample)) {}

ToldFacts::~ToldFacts() = default;

// What two rasters tell alike is the same system, in the words of the one that was opened.
const ToldFacts::System& ToldFacts::systemOf(const ToldRaster& told) {
  const bool isOfSample =
      told.system.empty() || told.system == sample_.told.system || told.system == sample_.facts.srsId;
  std::unique_ptr<System>& system = systems_[isOfSample ? std::string() : told.system];
  if (system) return *system;
  system = std::make_unique<System>();
  OGRSpatialReference reference;
  if (isOfSample) {
    system->texts = sample_.facts;
    if (!system->texts.srsWkt.empty()) reference = OGRSpatialReference(system->texts.srsWkt.c_str());
  } else {
    system->isKnown = readSystem(reference, told.system);
    if (system->isKnown) setSystem(system->texts, reference);
  }
  if (!reference.IsEmpty()) system->fromDegrees.emplace(wgs84(), reference);
  return *system;
}

std::optional<RasterFacts> ToldFacts::of(const ToldRaster& told, const std::string& title) {
  const GdalScope scope;
  const System& system = systemOf(told);
  if (!system.isKnown) return std::nullopt;
  RasterFacts facts = sample_.facts;
  facts.srsName = system.texts.srsName;
  facts.srsId = system.texts.srsId;
  facts.srsWkt = system.texts.srsWkt;
  const PixelSize pixel = toldPixelSize(told).value_or(PixelSize{facts.pixelSize, facts.pixelHeight});
  auto envelope = toldEnvelope(told);
  if (!envelope && told.geographic && system.fromDegrees) {
    envelope = system.fromDegrees->of(*told.geographic);
    const bool hasPixelsOfSample = facts.srsWkt == sample_.facts.srsWkt;
    if (envelope && hasPixelsOfSample) envelope = onPixelsOf(*envelope, sample_.facts, pixel);
  }
  if (!envelope || !(envelope->xMin < envelope->xMax) || !(envelope->yMin < envelope->yMax))
    return std::nullopt;
  facts.title = title;
  facts.pages.clear();
  setPlace(facts, told, *envelope, pixel);
  return facts;
}

}  // namespace vlclientui::client
