#include "client/network/CoverageSystem.h"

#include <algorithm>
#include <array>
#include <cctype>

#include <ogr_spatialref.h>

#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

bool isNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

bool readSystem(const std::string& system, OGRSpatialReference& read) {
  const GdalScope scope;
  return read.SetFromUserInput(system.c_str(), OGRSpatialReference::SET_FROM_USER_INPUT_LIMITATIONS_get()) ==
         OGRERR_NONE;
}

}  // namespace

std::string systemName(std::string_view text) {
  const std::string small = lowered(trimmed(text));
  if (small.ends_with("crs84")) return "EPSG:4326";
  if (small.find("epsg") == std::string::npos) return {};
  const std::size_t end = small.find_last_of(":/#=");
  if (end == std::string::npos) return {};
  const std::string code = small.substr(end + 1);
  return isNumber(code) ? "EPSG:" + code : std::string();
}

AxisOrder authorityOrder(const std::string& system) {
  OGRSpatialReference read;
  if (system.empty() || !readSystem(system, read)) return AxisOrder::EastNorth;
  const bool isSwapped = read.EPSGTreatsAsLatLong() != 0 || read.EPSGTreatsAsNorthingEasting() != 0;
  return isSwapped ? AxisOrder::NorthEast : AxisOrder::EastNorth;
}

}  // namespace vlclientui::client
