#include "client/ranges/RangeOverviews.h"

#include <map>
#include <string_view>

#include <cpl_error.h>
#include <gdal_pam.h>
#include <gdal_priv.h>

#include "client/ranges/RangeNames.h"
#include "client/raster/GdalScope.h"

namespace vlclientui::client {
namespace {

using OpenFunction = GDALDataset* (*)(GDALOpenInfo*);

constexpr const char* item = "OVERVIEW_FILE";
constexpr const char* domain = "OVERVIEWS";

// Filled once, before any of them is called by way of it.
std::map<const GDALDriver*, OpenFunction>& openFunctions() {
  static std::map<const GDALDriver*, OpenFunction> functions;
  return functions;
}

bool namesNone(GDALDataset& raster) { return raster.GetMetadataItem(item, domain) == nullptr; }

void dropName(GDALDataset& raster) {
  auto* const withSideCar = dynamic_cast<GDALPamDataset*>(&raster);
  const int flags = withSideCar == nullptr ? 0 : withSideCar->GetPamFlags();
  raster.SetMetadataItem(item, nullptr, domain);
  // Otherwise it were written beside the image.
  if (withSideCar != nullptr) withSideCar->SetPamFlags(flags);
}

GDALDataset* open(GDALDriver* driver, GDALOpenInfo* info) {
  DatasetPtr raster(openFunctions().at(driver)(info));
  const bool isOfWeb = std::string_view(info->pszFilename).starts_with(rangePrefix);
  if (!raster || !isOfWeb || namesNone(*raster)) return raster.release();
  dropName(*raster);
  if (namesNone(*raster)) return raster.release();
  CPLError(CE_Failure, CPLE_OpenFailed, "The image names a file of its overviews.");
  return nullptr;
}

}  // namespace

// The library also opens such files by itself, as sources of mosaics and as overviews, so its drivers have to
// mind. These are the ones of the kinds of files that are handed out.
void keepOverviewsWithinRasters() {
  const GdalScope withDrivers;
  for (const char* name : {"VRT", "GTiff", "PNG", "JPEG", "JP2OpenJPEG", "JP2KAK", "JP2ECW", "JP2MrSID",
                           "JPEG2000", "GIF", "BIGGIF", "BMP", "WEBP"}) {
    GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName(name);
    if (driver == nullptr || driver->pfnOpen == nullptr) continue;
    openFunctions()[driver] = driver->pfnOpen;
    driver->pfnOpenWithDriverArg = open;
    driver->pfnOpen = nullptr;
  }
}

}  // namespace vlclientui::client
