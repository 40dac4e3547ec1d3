#include "client/reach/GuardedDrivers.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <cpl_conv.h>
#include <cpl_error.h>
#include <cpl_vsi.h>
#include <gdal_priv.h>

#include "client/reach/MosaicNames.h"
#include "client/reach/NestedMosaics.h"
#include "client/reach/Places.h"
#include "client/reach/RasterNames.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

using OpenFunction = GDALDataset* (*)(GDALOpenInfo*);

struct GuardedDriver {
  GDALDriver* driver = nullptr;
  OpenFunction open = nullptr;
};

// Functions of drivers are not told of which driver they are, so each driver has one of its own.
constexpr std::size_t mostDrivers = 512;
std::array<GuardedDriver, mostDrivers> guarded;  // filled once, before any is called by way of it

thread_local int reachScopes = 0;
thread_local std::size_t refusals = 0;
thread_local const std::string* chosen = nullptr;
// The name that was looked at last, since all drivers are asked for each.
thread_local std::string passedName;
thread_local const GDALOpenInfo* passedInfo = nullptr;

void refuse(const std::string& why) {
  ++refusals;
  CPLError(CE_Failure, CPLE_OpenFailed, "%s", why.c_str());
}

bool mayOpenName(const GDALOpenInfo& info) {
  const std::string_view name = info.pszFilename;
  if (chosen != nullptr && *chosen == name) return true;
  if (passedInfo == &info && passedName == name) return true;
  const std::string refusal = refusalOfName(info.pszFilename, Places::shared(), NameOrigin::Opened);
  if (!refusal.empty()) {
    refuse(refusal);
    return false;
  }
  passedName = name;
  passedInfo = &info;
  return true;
}

bool claims(GDALDriver& driver, GDALOpenInfo& info) {
  return driver.pfnIdentify != nullptr && driver.pfnIdentify(&info) > 0;
}

// Said where the driver is sure that it is meant; otherwise another one may be.
bool isOff(GDALDriver& driver, GDALOpenInfo& info) {
  const std::string name = driver.GetDescription();
  if (!Places::shared().allowance()->isOff(name)) return false;
  if (!claims(driver, info)) return true;
  const std::string risk = riskOfDriver(name);
  const std::string why = risk.empty() ? std::string() : ", since its driver " + risk;
  refuse("the format " + name + " is off" + why + "; VLCLIENTUI_DRIVERS_ON may name it");
  return true;
}

bool isMosaicDriver(GDALDriver& driver) {
  const std::string_view name = driver.GetDescription();
  return name == "VRT" || name == "OGR_VRT";
}

std::string textOf(const char* file) {
  constexpr GIntBig mostBytes = GIntBig{256} << 20U;
  GByte* bytes = nullptr;
  vsi_l_offset size = 0;
  if (VSIIngestFile(nullptr, file, &bytes, &size, mostBytes) == FALSE) return {};
  std::string text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
  CPLFree(bytes);
  return text;
}

// As the raster library counts: where a link leads.
fs::path folderOfMosaic(const fs::path& file) {
  std::error_code error;
  const fs::path real = fs::canonical(file, error);
  return (error ? file : real).parent_path();
}

// Virtual rasters of the web were looked at where they came from, texts of this library are its own.
bool isOfThisLibrary(std::string_view name) {
  const bool isOwnText = chosen != nullptr && *chosen == name && name.starts_with('<');
  return isOwnText || name.starts_with("/vsivl");
}

std::string refusalOfMosaicFile(const std::string& name) {
  const std::string text = textOf(name.c_str());
  if (text.empty()) return "it cannot be read, or has more than 256 MB";
  const fs::path folder = folderOfMosaic(name);
  const std::string why = refusalOfMosaic(text, folder, Places::shared());
  // All that it leads to is counted before the first is opened.
  const bool isFirst = chosen != nullptr && *chosen == name;
  return why.empty() && isFirst ? refusalOfNesting(text, folder) : why;
}

bool mayOpenMosaic(GDALDriver& driver, GDALOpenInfo& info) {
  const std::string name = info.pszFilename;
  if (!isMosaicDriver(driver) || isOfThisLibrary(name) || !claims(driver, info)) return true;
  if (name.starts_with('<') || name.starts_with("vrt://")) return true;  // its name was looked at
  const std::string why = refusalOfMosaicFile(name);
  if (why.empty()) return true;
  refuse(why);
  return false;
}

GDALDataset* openGuarded(const GuardedDriver& one, GDALOpenInfo* info) {
  if (!ReachScope::isActive()) return one.open(info);
  const bool mayOpen = mayOpenName(*info) && !isOff(*one.driver, *info) && mayOpenMosaic(*one.driver, *info);
  return mayOpen ? one.open(info) : nullptr;
}

template <std::size_t index>
GDALDataset* openAt(GDALOpenInfo* info) {
  return openGuarded(guarded[index], info);
}

template <std::size_t... indices>
constexpr std::array<OpenFunction, sizeof...(indices)> functionsFor(std::index_sequence<indices...>) {
  return {openAt<indices>...};
}

constexpr auto guardingFunctions = functionsFor(std::make_index_sequence<mostDrivers>());

void guardAll() {
  GDALDriverManager& manager = *GetGDALDriverManager();
  std::size_t next = 0;
  for (int i = 0; i < manager.GetDriverCount() && next < mostDrivers; ++i) {
    GDALDriver& driver = *manager.GetDriver(i);
    if (driver.pfnOpen == nullptr) continue;
    guarded.at(next) = {&driver, driver.pfnOpen};
    driver.pfnOpen = guardingFunctions.at(next++);
  }
}

// Where a driver reads addresses without opening a raster of that name.
constexpr const char* addressesOption = "CPL_VSIL_CURL_ALLOWED_FILENAME";
constexpr const char* codeOption = "GDAL_VRT_ENABLE_PYTHON";
constexpr const char* schemaOption = "GML_DOWNLOAD_SCHEMA";

constexpr std::array boundOptions = {addressesOption, codeOption, schemaOption};

// What the program that this is a part of had set on this thread.
thread_local std::array<std::optional<std::string>, boundOptions.size()> ofHost;

void keepOptionsOfHost() {
  for (std::size_t i = 0; i < boundOptions.size(); ++i) {
    const char* const value = CPLGetThreadLocalConfigOption(boundOptions.at(i), nullptr);
    ofHost.at(i) = value == nullptr ? std::nullopt : std::optional<std::string>(value);
  }
}

void setBounds() {
  keepOptionsOfHost();
  const auto allowance = Places::shared().allowance();
  if (!allowance->everything) CPLSetThreadLocalConfigOption(codeOption, "NO");
  if (allowance->addresses) return;
  CPLSetThreadLocalConfigOption(addressesOption, "none");
  CPLSetThreadLocalConfigOption(schemaOption, "NO");
}

void liftBounds() {
  for (std::size_t i = 0; i < boundOptions.size(); ++i) {
    const auto& value = ofHost.at(i);
    CPLSetThreadLocalConfigOption(boundOptions.at(i), value ? value->c_str() : nullptr);
  }
}

bool isOnDisk(const std::string& name) {
  std::error_code error;
  return !name.starts_with("/vsi") && fs::exists(name, error);
}

// The rest are names of parts of files.
bool isOwnName(const std::string& name) {
  return name.starts_with('<') || name.starts_with("/vsivl") || name.starts_with("/vsimem/");
}

}  // namespace

void guardDrivers() {
  static std::once_flag once;
  std::call_once(once, guardAll);
}

ReachScope::ReachScope() {
  if (reachScopes++ == 0) setBounds();
}

ReachScope::~ReachScope() {
  if (--reachScopes == 0) liftBounds();
}

bool ReachScope::isActive() { return reachScopes > 0; }

std::size_t refusalsOfThread() { return refusals; }

ChosenName::ChosenName(const std::string& name) : former_(chosen) {
  if (name.starts_with("/vsivl")) Places::shared().pointAtServer(name);
  const bool isFile = isOnDisk(name);
  if (isFile) Places::shared().pointAtFile(fs::absolute(name));
  chosen = isFile || isOwnName(name) ? &name : nullptr;
  passedInfo = nullptr;
}

ChosenName::~ChosenName() { chosen = former_; }

}  // namespace vlclientui::client
