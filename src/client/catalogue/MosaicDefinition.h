#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// One source raster of a mosaic.
struct MosaicSource {
  std::filesystem::path file;  ///< absolute, or relative to the working folder like the definition's own path
  std::string rasterId;        ///< unique within the mosaic; docs/catalogue.md tells how
  std::vector<std::pair<std::string, std::string>> attributes;  ///< in document order
};

/// The content of a .VLDef file. Format: docs/catalogue.md.
struct MosaicDefinition {
  std::string name;
  std::string title;
  std::string region;
  std::string pixelSource;
  std::filesystem::path sourceFolder;  ///< its rasters are not services themselves; may not exist
  std::vector<MosaicSource> sources;   ///< bottom first, as they are drawn; never empty
};

/// Why a definition cannot be used, readable.
using MosaicReadFailure = std::string;

/// Reads the definition; the sources are not opened. Relative paths count from the definition's folder.
[[nodiscard]] std::variant<MosaicDefinition, MosaicReadFailure> readMosaicDefinition(
    const std::filesystem::path& file, const XmlService& xml);

}  // namespace vlclientui::client
