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
  std::filesystem::path place;  ///< what its name comes from: its file, or the container that holds it alone
};

struct CatalogueContent {
  std::vector<ServiceRecord> services;  ///< by name, in byte order
  std::vector<LeftOut> problems;        ///< what was left out, and why
};

/// Reads all services of a folder tree, with those in containers. A service is named by its file without
/// extension; where two files of one folder would share a name, or it is that of a folder, files keep their
/// extensions. What the list cannot show is replaced: CatalogueNames.h. Files that no raster format knows are
/// passed over in silence.
/// @param cache may be shared among catalogues and threads.
[[nodiscard]] CatalogueContent readCatalogue(const std::filesystem::path& folder, const XmlService& xml,
                                             RasterCache& cache);

/// The file of one service, found by reading no more than the files that may bear its name.
/// @param name whole name below the folder, each step as it is shown or as it really is; a name that is shown
/// wins.
/// @returns nothing when there is no such service, the real name is that of several, or the name leads out of
/// the folder or over what is hidden in it.
[[nodiscard]] std::optional<CatalogueEntry> findService(const std::filesystem::path& folder,
                                                        const std::string& name, const XmlService& xml,
                                                        RasterCache& cache);

}  // namespace vlclientui::client
