#pragma once

#include <filesystem>
#include <functional>
#include <memory>
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
  std::string folder;           ///< below the catalogue, "/" between steps, empty at the root
  std::filesystem::path file;   ///< or a raster in one: ContainedRaster.h
  MosaicDefinition definition;  ///< of a mosaic
  std::string name = {};        ///< whole name on a server; empty where it comes from the file
  std::shared_ptr<MosaicOrigin> origin = nullptr;  ///< of a mosaic that no file defines
};

struct CatalogueListing {
  std::vector<CatalogueEntry>
      entries;  ///< by folder, then by file name, in byte order; links to folders last
  std::vector<LeftOut> problems;
  std::vector<std::filesystem::path> folders = {};  ///< all that are not hidden
};

/// Whether to list the whole tree or only the files of the folder itself.
enum class ScanDepth { Tree, OneFolder };

/// Lists what may be a service below a folder. Left out: hidden folders, names that are no text, files that
/// only stand beside a raster (world files, overviews, side-car metadata), and the folders that mosaic
/// definitions name as home of their sources. A folder reached twice, by links, is listed once, where it
/// really stands if that is in the catalogue. No raster is opened.
/// @param folder for ScanDepth::OneFolder too the folder to be listed; its entries have an empty `folder`.
[[nodiscard]] CatalogueListing scanCatalogue(const std::filesystem::path& folder, const XmlService& xml,
                                             ScanDepth depth = ScanDepth::Tree);

/// True for files that formats keep beside their rasters, and documents that people keep beside them. XML and
/// JSON are among them: formats of these may lead the raster library to the network.
[[nodiscard]] bool isAuxiliary(const std::filesystem::path& file);

[[nodiscard]] bool isHidden(const std::filesystem::path& path);

}  // namespace vlclientui::client
