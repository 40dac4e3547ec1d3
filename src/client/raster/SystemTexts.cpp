#include "client/raster/SystemTexts.h"

#include <cpl_conv.h>
#include <ogr_spatialref.h>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

std::string idOf(const OGRSpatialReference& system) {
  const char* authority = system.GetAuthorityName(nullptr);
  const char* code = system.GetAuthorityCode(nullptr);
  if (authority == nullptr || code == nullptr) return {};
  return std::string(authority) + ":" + code;
}

}  // namespace

std::string wktOf(const OGRSpatialReference& system) {
  char* text = nullptr;
  const bool exported = system.exportToWkt(&text) == OGRERR_NONE && text != nullptr;
  std::string wkt = exported ? text : "";
  CPLFree(text);
  return wkt;
}

void setSystem(RasterFacts& facts, const OGRSpatialReference& system) {
  facts.srsName = system.GetName() != nullptr ? utf8FromAny(system.GetName()) : "";
  facts.srsId = idOf(system);
  facts.srsWkt = wktOf(system);
}

}  // namespace vlclientui::client
