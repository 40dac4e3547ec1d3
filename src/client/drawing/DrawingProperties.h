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

/// The order in which sources of a mosaic overlap.
enum class MosaicMethod { AsDefined, ByAttribute, ClosestToViewpoint, LockRaster };

/// The settings of one service that a person may change.
struct DrawingProperties {
  MosaicMethod method = MosaicMethod::AsDefined;
  std::string methodText = {};            ///< as written, even if it is not a method
  std::string orderField = {};            ///< attribute for ByAttribute
  std::string orderBase = {};             ///< value to put on top; may be empty
  std::optional<double> viewPointX = {};  ///< in the service's coordinates
  std::optional<double> viewPointY = {};
  std::string lockImageId = {};               ///< RasterId for LockRaster
  std::optional<Resampling> resampling = {};  ///< for all sources; nothing: chosen by each one's pixels
  std::optional<double> noData = {};          ///< replaces what the sources declare
  std::string systemText = {};                ///< of Srs/Prj, the system of all coordinates
  std::string asset = {};                     ///< what is shown of each source; empty for the usual
};

/// Reads a service properties document. Missing and unreadable values keep their defaults; a viewpoint may
/// have a decimal comma. "Lock Raster" and "LockRaster" are the same, in any case. docs/mosaics.md has all
/// words.
[[nodiscard]] DrawingProperties readDrawingProperties(const std::string& document, const XmlService& xml);

/// Completes a document from another one, so that a host may send only its changes. A complete document comes
/// back unchanged.
/// @throws RuntimeFailure when it is not a service properties document.
[[nodiscard]] std::string completedProperties(const std::string& document, const std::string& otherwise,
                                              const XmlService& xml);

/// Replaces the texts of some elements; skips those that the document lacks.
/// @param texts by path below the group: "AvgImageSpacingX", "Srs/Name".
[[nodiscard]] std::string replacedProperties(const std::string& document,
                                             const std::vector<std::pair<std::string, std::string>>& texts,
                                             const XmlService& xml);

/// The word of properties documents; "None" for sources as they are defined.
[[nodiscard]] std::string methodName(MosaicMethod method);
[[nodiscard]] std::string resamplingName(Resampling resampling);

}  // namespace vlclientui::client
