#pragma once

#include <optional>
#include <string>

#include "client/RasterFacts.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// How the sources of a mosaic are laid over each other.
enum class MosaicMethod { AsDefined, ByAttribute, ClosestToViewpoint, LockRaster };

/// The settings of one service that a person may change.
struct ServiceProperties {
  MosaicMethod method = MosaicMethod::AsDefined;
  std::string orderField = {};            ///< attribute that ByAttribute looks at
  std::string orderBase = {};             ///< the value that lies on top; may be empty
  std::optional<double> viewPointX = {};  ///< in the service's coordinates
  std::optional<double> viewPointY = {};
  std::string lockImageId = {};  ///< RasterId that LockRaster shows alone
};

/// Reads a service properties document. What is missing or unreadable keeps its default; a viewpoint may be
/// written with a comma. "Lock Raster" and "LockRaster" mean the same, in any case.
[[nodiscard]] ServiceProperties readServiceProperties(const std::string& document, const XmlService& xml);

/// A number as documents and people write it, with "." or ","; nothing for anything else.
[[nodiscard]] std::optional<double> readDecimal(std::string text);

}  // namespace vlclientui::client
