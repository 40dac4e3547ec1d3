#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "client/raster/RasterFacts.h"
#include "client/raster/Resampling.h"

namespace vlclientui {
class XmlService;
}

namespace vlclientui::client {

/// How the sources of a mosaic are laid over each other.
enum class MosaicMethod { AsDefined, ByAttribute, ClosestToViewpoint, LockRaster };

/// The settings of one service that a person may change.
struct DrawingProperties {
  MosaicMethod method = MosaicMethod::AsDefined;
  std::string methodText = {};            ///< as it stands, which may be no method at all
  std::string orderField = {};            ///< attribute that ByAttribute looks at
  std::string orderBase = {};             ///< the value that lies on top; may be empty
  std::optional<double> viewPointX = {};  ///< in the service's coordinates
  std::optional<double> viewPointY = {};
  std::string lockImageId = {};               ///< RasterId that LockRaster shows alone
  std::optional<Resampling> resampling = {};  ///< for all sources; nothing for a choice by each one's pixels
  std::optional<double> noData = {};          ///< instead of what the sources declare
  std::string systemText = {};                ///< of Srs/Prj; the system in which coordinates are told
};

/// Reads a service properties document. What is missing or unreadable keeps its default; a viewpoint may be
/// written with a comma. "Lock Raster" and "LockRaster" mean the same, in any case. docs/mosaics.md has all
/// words.
[[nodiscard]] DrawingProperties readDrawingProperties(const std::string& document, const XmlService& xml);

/// The document with whatever it lacks of another one added behind, so that a host may tell only what it
/// changes. A document that lacks nothing comes back as it is.
/// @throws RuntimeFailure when it is no service properties document.
[[nodiscard]] std::string completedProperties(const std::string& document, const std::string& otherwise,
                                              const XmlService& xml);

/// The document with the texts of some of its elements replaced; those it lacks are passed over.
/// @param texts by path below the group: "AvgImageSpacingX", "Srs/Name".
[[nodiscard]] std::string replacedProperties(const std::string& document,
                                             const std::vector<std::pair<std::string, std::string>>& texts,
                                             const XmlService& xml);

/// As properties documents and people write it; "None" for the sources as they are defined.
[[nodiscard]] std::string methodName(MosaicMethod method);
[[nodiscard]] std::string resamplingName(Resampling resampling);

/// A number as documents and people write it, with "." or ","; nothing for anything else.
[[nodiscard]] std::optional<double> readDecimal(std::string text);

}  // namespace vlclientui::client
