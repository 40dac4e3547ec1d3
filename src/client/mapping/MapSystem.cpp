#include "client/mapping/MapSystem.h"

#include <array>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/RasterFacts.h"
#include "client/raster/SystemTexts.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

bool read(OGRSpatialReference& system, const std::string& text) {
  // Keeps GDAL from fetching files or addresses that a text names.
  constexpr std::array<const char*, 3> options = {"ALLOW_NETWORK_ACCESS=NO", "ALLOW_FILE_ACCESS=NO", nullptr};
  return system.SetFromUserInput(text.c_str(), options.data()) == OGRERR_NONE;
}

double metersPerUnitOf(const OGRSpatialReference& system) {
  if (system.IsGeographic() != 0) return system.GetAngularUnits() * system.GetSemiMajor();
  const double meters = system.GetLinearUnits();
  return meters > 0 ? meters : 1;
}

}  // namespace

std::optional<MapSystem> mapSystemOf(const std::string& text) {
  const std::string wanted = trimmed(text);
  if (wanted.empty()) return std::nullopt;
  const GdalScope scope;
  OGRSpatialReference system;
  if (!read(system, wanted) || system.IsEmpty()) return std::nullopt;
  const bool isInDegrees = system.IsGeographic() != 0;
  if (!isInDegrees && system.IsProjected() == 0) return std::nullopt;
  RasterFacts facts;
  setSystem(facts, system);
  return MapSystem{facts.srsWkt, facts.srsName, facts.srsId, isInDegrees, metersPerUnitOf(system)};
}

}  // namespace vlclientui::client
