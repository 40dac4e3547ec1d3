#pragma once

#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "client/catalogue/CatalogueScan.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/RasterFacts.h"

namespace vlclientui::client {

/// The places of sources in a mosaic. For one thread at a time.
class MosaicPlaces {
 public:
  /// @param first the mosaic's first source, whose system and bands count.
  explicit MosaicPlaces(RasterFacts first);
  /// The place of a source, or why it has none: its system cannot be transformed to the first one's, or it
  /// lacks bands. A single gray band stands for three colors.
  [[nodiscard]] std::variant<Bounds, std::string> of(const RasterFacts& source);

 private:
  [[nodiscard]] std::optional<Bounds> inFirstSystem(const RasterFacts& source);

  RasterFacts first_;
  std::map<std::string, std::optional<BoundsWay>>
      ways_;  ///< by the definition of the system that they begin in
};

/// A mosaic as a service, and where its sources lie in it.
struct MosaicSummary {
  RasterResult whole = RasterProblem();
  std::vector<std::optional<Bounds>> places = {};  ///< in order; nothing for what was left out
};

/// The extent around all readable sources in the first one's system, the finest pixel size, the first one's
/// pixel type. Sources that cannot be read or placed are left out and reported.
/// @param sources results for the definition's sources, in their order.
/// @param problems receives what was left out. @returns a problem when no source remains.
[[nodiscard]] MosaicSummary summaryOf(const MosaicDefinition& definition,
                                      const std::vector<RasterResult>& sources,
                                      std::vector<LeftOut>& problems);

/// The same without the places.
[[nodiscard]] RasterResult mosaicFacts(const MosaicDefinition& definition,
                                       const std::vector<RasterResult>& sources,
                                       std::vector<LeftOut>& problems);

}  // namespace vlclientui::client
