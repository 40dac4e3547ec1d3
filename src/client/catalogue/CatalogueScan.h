#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "client/catalogue/MosaicDefinition.h"
#include "client/raster/LeftOut.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

enum class EntryKind { Raster, Mosaic };

/// A file that may become a service.
struct CatalogueEntry {
  EntryKind kind = EntryKind::Raster;
  std::string folder;  ///< below the catalogue, "/" between steps, empty at the root
  std::filesystem::path file;
  MosaicDefinition definition;  ///< of a mosaic
};

struct CatalogueListing {
  std::vector<CatalogueEntry> entries;  ///< by folder, then by file name, in byte order
  std::vector<LeftOut> problems;
};

/// Whether to list the whole tree or only the files of the folder itself.
enum class ScanDepth { Tree, OneFolder };

/// Lists what may be a service below a folder, without opening any raster. Left out: hidden files and
/// folders, companions of rasters (world files, overviews, side-car metadata), and the folders that mosaic
/// definitions name as home of their sources. A folder reached twice, through links, is listed once.
/// @param folder with ScanDepth::OneFolder the folder to list; its entries have an empty `folder`.
[[nodiscard]] CatalogueListing scanCatalogue(const std::filesystem::path& folder, const XmlService& xml,
                                             ScanDepth depth = ScanDepth::Tree);

}  // namespace vlclientui::client
