#include "client/network/CoverageFacts.h"

#include <algorithm>
#include <string_view>

#include <ogr_spatialref.h>

#include "client/raster/DatesText.h"
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

std::string coverageTitle(const std::string& title, const std::string& id) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::string& text = title.empty() ? id : title;
  std::string line;
  for (std::size_t begin = text.find_first_not_of(blanks); begin != std::string::npos;) {
    const std::size_t end = std::min(text.find_first_of(blanks, begin), text.size());
    line += (line.empty() ? "" : " ") + text.substr(begin, end - begin);
    begin = text.find_first_not_of(blanks, end);
  }
  return line;
}

RasterFacts coverageFacts(const CoverageSummary& summary, const CoverageDescription* description,
                          GeographicBounds& geographic) {
  RasterFacts facts;
  facts.title = summary.title;
  if (facts.title.empty() && description != nullptr) facts.title = description->title;
  facts.title = coverageTitle(facts.title, summary.id);
  facts.geographicEnvelope = summary.geographic;
  if (description != nullptr) {
    readPlace(facts, *description, geographic);
    facts.bandCount = static_cast<int>(description->bands.size());
    if (!description->bands.empty()) facts.pixelUnit = description->bands.front().unit;
  }
  if (facts.geographicEnvelope) facts.region = regionText(*facts.geographicEnvelope);
  const auto& dates = description != nullptr && description->dates ? description->dates : summary.dates;
  if (dates) facts.region += (facts.region.empty() ? "" : ", ") + datesText(dates->from, dates->to);
  return facts;
}

}  // namespace vlclientui::client
