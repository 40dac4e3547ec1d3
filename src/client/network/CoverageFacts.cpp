#include "client/network/CoverageFacts.h"

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

void readPlace(RasterFacts& facts, const CoverageDescription& coverage, GeographicBounds& geographic) {
  facts.columns = facts.fileColumns = coverage.columns;
  facts.rows = facts.fileRows = coverage.rows;
  facts.envelope = coverage.envelope;
  facts.pixelSize = coverage.pixelWidth();
  facts.pixelHeight = coverage.pixelHeight();
  const GdalScope scope;
  OGRSpatialReference system;
  system.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
  if (coverage.system.empty() || system.SetFromUserInput(coverage.system.c_str()) != OGRERR_NONE) return;
  setSystem(facts, system);
  if (!facts.geographicEnvelope)
    facts.geographicEnvelope = geographic.of(facts.envelope, system, facts.srsWkt);
}

}  // namespace

RasterFacts coverageFacts(const CoverageSummary& summary, const CoverageDescription* description,
                          GeographicBounds& geographic) {
  RasterFacts facts;
  facts.title = summary.title;
  if (facts.title.empty() && description != nullptr) facts.title = description->title;
  if (facts.title.empty()) facts.title = summary.id;
  facts.geographicEnvelope = summary.geographic;
  if (description != nullptr) {
    readPlace(facts, *description, geographic);
    facts.bandCount = static_cast<int>(description->bands.size());
    if (!description->bands.empty()) facts.pixelUnit = description->bands.front().unit;
  }
  if (facts.geographicEnvelope) facts.region = regionText(*facts.geographicEnvelope);
  return facts;
}

}  // namespace vlclientui::client
