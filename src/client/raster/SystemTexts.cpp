#include "client/raster/SystemTexts.h"

#include <array>

#include <cpl_conv.h>
#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

std::string idOf(const OGRSpatialReference& system) {
  const char* authority = system.GetAuthorityName(nullptr);
  const char* code = system.GetAuthorityCode(nullptr);
  if (authority == nullptr || code == nullptr) return {};
  return std::string(authority) + ":" + code;
}

// The text may come from a file that somebody sent: it opens no others.
bool isRead(OGRSpatialReference& system, const std::string& text) {
  return system.SetFromUserInput(text.c_str(), OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) ==
         OGRERR_NONE;
}

}  // namespace

std::string wktOf(const OGRSpatialReference& system) {
  char* text = nullptr;
  const bool exported = system.exportToWkt(&text) == OGRERR_NONE && text != nullptr;
  std::string wkt = exported ? text : "";
  CPLFree(text);
  return wkt;
}

bool isSameSystem(const std::string& one, const std::string& other) {
  if (one == other) return true;
  if (one.empty() || other.empty()) return false;
  const GdalScope scope;
  OGRSpatialReference first;
  OGRSpatialReference second;
  if (!isRead(first, one) || !isRead(second, other)) return false;
  const std::array<const char*, 3> leniently{"CRITERION=EQUIVALENT",
                                             "IGNORE_DATA_AXIS_TO_SRS_AXIS_MAPPING=YES", nullptr};
  return first.IsSame(&second, leniently.data()) != 0;
}

void setSystem(RasterFacts& facts, const OGRSpatialReference& system) {
  facts.srsName = system.GetName() != nullptr ? utf8FromAny(system.GetName()) : "";
  facts.srsId = idOf(system);
  facts.srsWkt = wktOf(system);
}

}  // namespace vlclientui::client
