#include "client/reach/Allowance.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace vlclientui::client {
namespace {

constexpr std::string_view asks = "asks servers by itself";
constexpr std::string_view runs = "runs programs";
constexpr std::string_view writes = "writes files that the file names";

// By their names in small letters. Those of vectors stand here too: whether a file without rasters is whole
// is asked of all drivers.
constexpr auto risks = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"wms", asks},           {"wcs", asks},
    {"wmts", asks},          {"http", asks},
    {"ogcapi", asks},        {"oapif", asks},
    {"wfs", asks},           {"wfs3", asks},
    {"csw", asks},           {"plmosaic", asks},
    {"plscenes", asks},      {"ngw", asks},
    {"eeda", asks},          {"eedai", asks},
    {"daas", asks},          {"rda", asks},
    {"stacta", asks},        {"stacit", asks},
    {"postgisraster", asks}, {"postgresql", asks},
    {"mysql", asks},         {"mssqlspatial", asks},
    {"odbc", asks},          {"pgeo", asks},
    {"mdb", asks},           {"oci", asks},
    {"georaster", asks},     {"rasdaman", asks},
    {"mongodbv3", asks},     {"elasticsearch", asks},
    {"carto", asks},         {"amigocloud", asks},
    {"couchdb", asks},       {"cloudant", asks},
    {"gft", asks},           {"salesforce", asks},
    {"hana", asks},          {"snowflake", asks},
    {"adbc", asks},          {"jpipkak", asks},
    {"gml", asks},           {"gmlas", asks},
    {"georss", asks},        {"kml", asks},
    {"libkml", asks},        {"kmlsuperoverlay", asks},
    {"nas", asks},           {"interlis 1", asks},
    {"interlis 2", asks},    {"ogr_ogdi", asks},
    {"gdalg", runs},         {"gpsbabel", runs},
    {"mrf", writes},
});

std::string inSmallLetters(std::string_view text) {
  std::string small(text);
  std::ranges::transform(small, small.begin(), [](unsigned char c) { return std::tolower(c); });
  return small;
}

std::vector<std::string> partsOfVariable(const char* variable, char between) {
  const char* const value = std::getenv(variable);
  std::string_view rest = value == nullptr ? "" : value;
  std::vector<std::string> parts;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(between), rest.size());
    if (end > 0) parts.emplace_back(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return parts;
}

std::vector<std::string> driversOfVariable(const char* variable) {
  std::vector<std::string> drivers = partsOfVariable(variable, ',');
  for (std::string& driver : drivers) driver = inSmallLetters(driver);
  return drivers;
}

bool holdsDriver(const std::vector<std::string>& drivers, const std::string& driver) {
  return std::ranges::find(drivers, driver) != drivers.end();
}

}  // namespace

Allowance Allowance::fromEnvironment() {
  Allowance allowance;
  for (const std::string& part : partsOfVariable("VLCLIENTUI_ALLOW_OUTSIDE", ':')) {
    const std::filesystem::path folder(part);
    allowance.everything |= part == "*";
    allowance.addresses |= part == "addresses" || part == "*";
    if (folder.is_absolute()) allowance.folders.push_back(folder);
  }
  allowance.driversOff = driversOfVariable("VLCLIENTUI_DRIVERS_OFF");
  allowance.driversOn = driversOfVariable("VLCLIENTUI_DRIVERS_ON");
  return allowance;
}

bool Allowance::isOff(const std::string& driver) const {
  const std::string name = inSmallLetters(driver);
  if (holdsDriver(driversOff, name)) return true;
  if (everything || holdsDriver(driversOn, name)) return false;
  const std::string risk = riskOfDriver(driver);
  return !risk.empty() && !(addresses && risk == asks);
}

std::string riskOfDriver(const std::string& driver) {
  const auto* const found =
      std::ranges::find(risks, inSmallLetters(driver), &std::pair<std::string_view, std::string_view>::first);
  return found == risks.end() ? std::string() : std::string(found->second);
}

}  // namespace vlclientui::client
