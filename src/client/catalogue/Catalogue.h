#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "client/catalogue/CatalogueScan.h"
#include "client/raster/RasterCache.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// A service of a catalogue.
struct ServiceRecord {
  std::string name;  ///< whole name: folders and leaf with "/" between, without leading slash
  CatalogueEntry entry;
  RasterFacts facts;
};

struct CatalogueContent {
  std::vector<ServiceRecord> services;  ///< by name, in byte order
  std::vector<LeftOut> problems;        ///< what was left out, and why
};

/// Reads all services of a folder tree. A service has the name of its file without extension; files of one
/// folder that would share a name keep their extensions. Files of no raster format are ignored.
/// @param cache may be shared among catalogues and threads.
[[nodiscard]] CatalogueContent readCatalogue(const std::filesystem::path& folder, const XmlService& xml,
                                             RasterCache& cache);

/// Finds the file of one service without reading more files than may have its name.
/// @param name whole name below the folder. @returns nothing for an unknown service, and for a name that
/// leads out of the folder or through something hidden.
[[nodiscard]] std::optional<CatalogueEntry> findService(const std::filesystem::path& folder,
                                                        const std::string& name, const XmlService& xml,
                                                        RasterCache& cache);

}  // namespace vlclientui::client
