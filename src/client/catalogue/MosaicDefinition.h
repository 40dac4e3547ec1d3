#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "client/catalogue/ToldRaster.h"
#include "client/raster/FileMetadata.h"
#include "client/raster/LeftOut.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// One source raster of a mosaic.
struct MosaicSource {
  std::filesystem::path file;  ///< absolute, or relative to the working folder like the definition's own path
  std::string rasterId;        ///< unique within the mosaic; docs/catalogue.md tells how
  std::vector<std::pair<std::string, std::string>> attributes;  ///< in document order
  std::string name = {};                                        ///< for people; empty: that of the file
  std::optional<ToldRaster> told =
      {};  ///< where it is known: such a source is opened when its pixels are needed
};

/// The content of a .VLDef file. Format: docs/catalogue.md.
struct MosaicDefinition {
  std::string name;
  std::string title;
  std::string region;
  std::string pixelSource;
  std::filesystem::path sourceFolder;  ///< its rasters are not services themselves; may not exist
  std::vector<MosaicSource> sources;   ///< bottom first, as they are drawn; never empty
  std::vector<LeftOut> problems = {};  ///< sources that were left out before
  FileMetadata metadata = {};          ///< of the whole
};

/// Where a mosaic that no file defines comes from, to be asked for another one of it. Any thread may ask.
class MosaicOrigin {
 public:
  virtual ~MosaicOrigin() = default;
  /// What may be shown of each source, by name, the usual first; empty where there is no choice.
  [[nodiscard]] virtual std::vector<std::string> choices() const = 0;
  /// @param choice empty, or unknown, for the usual one.
  [[nodiscard]] virtual std::variant<MosaicDefinition, std::string> definition(const std::string& choice) = 0;
  /// Where definitions hold only some of all sources: asks for those in an area, which they hold from then
  /// on. @param geographic WGS 84 degrees. @returns whether definitions have changed.
  /// @throws RuntimeFailure when it cannot be asked just now.
  [[nodiscard]] virtual bool learn(const Bounds& geographic) = 0;
};

/// Why a definition cannot be used, readable.
using MosaicReadFailure = std::string;

/// Reads the definition; the sources are not opened. Relative paths count from the definition's folder.
[[nodiscard]] std::variant<MosaicDefinition, MosaicReadFailure> readMosaicDefinition(
    const std::filesystem::path& file, const XmlService& xml);

}  // namespace vlclientui::client
