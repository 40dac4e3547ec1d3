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
  std::filesystem::path file;  ///< absolute, or relative to the working folder as the definition's path is
  std::string rasterId;        ///< unique within the mosaic; docs/catalogue.md tells how
  std::vector<std::pair<std::string, std::string>> attributes;  ///< in document order
};

/// What a .VLDef file says. Format: docs/catalogue.md.
struct MosaicDefinition {
  std::string name;
  std::string title;
  std::string region;
  std::string pixelSource;
  std::filesystem::path sourceFolder;  ///< its rasters are no services of their own; may not exist
  std::vector<MosaicSource> sources;   ///< bottom first, as they are drawn; never empty
};

/// Why a definition cannot be used, for a person.
using MosaicReadFailure = std::string;

/// Reads the definition; the sources are not opened. Relative paths count from the definition's folder.
[[nodiscard]] std::variant<MosaicDefinition, MosaicReadFailure> readMosaicDefinition(
    const std::filesystem::path& file, const XmlService& xml);

}  // namespace vlclientui::client
