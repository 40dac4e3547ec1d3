#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "client/catalogue/MosaicDefinition.h"
#include "client/stac/StacItems.h"
#include "client/waiting/Turns.h"

namespace vlclientui::client {

class Transport;

/// The items of a collection as a mosaic: the oldest lies at the bottom, the newest on top; those of one
/// date, and those without one, which lie lowest, in the order of the catalogue. Items are fetched once, when
/// the first definition is asked for; those of areas that were asked for stay as long as there is room.
class StacMosaic final : public MosaicOrigin {
 public:
  /// @param transport must outlive this object.
  StacMosaic(Transport& transport, StacService service, StacLimits limits = {});

  [[nodiscard]] std::vector<std::string> choices() const override;
  [[nodiscard]] std::variant<MosaicDefinition, std::string> definition(const std::string& choice) override;
  [[nodiscard]] bool learn(const Bounds& geographic) override;

  [[nodiscard]] const StacService& service() const { return service_; }

 private:
  [[nodiscard]] OrStacProblem<std::shared_ptr<const StacItems>> items();
  /// An area that was asked for.
  struct Area {
    Bounds bounds;
    bool isWhole = true;  ///< else it holds more than is used at a time, or nothing can be told of it
    std::vector<LeftOut> problems;
  };

  [[nodiscard]] bool isKnown(const Bounds& area) const;
  [[nodiscard]] bool isWanted(const StacFound& found) const;
  /// @returns whether something was let go.
  [[nodiscard]] bool makeRoom(StacItems& items, std::size_t coming);

  Transport& transport_;
  StacService service_;
  StacLimits limits_;
  Turns loading_;               ///< to fetch items
  std::size_t firstItems_ = 0;  ///< which no area brought
  std::size_t firstProblems_ = 0;
  std::vector<Area> areas_;   ///< the oldest first
  mutable std::mutex mutex_;  ///< of what follows
  std::shared_ptr<const StacItems> items_;
};

/// Names of assets that at least half of the items have, the one that is shown first.
[[nodiscard]] std::vector<std::string> assetNames(const std::vector<StacFound>& items);

/// The items as sources of a mosaic, bottom first.
/// @param asset the one to show; empty for the one that chosenAsset gives.
/// @param problems gets the items that have none, or none that can be fetched.
[[nodiscard]] std::vector<MosaicSource> mosaicSources(const std::vector<StacFound>& items,
                                                      const std::string& asset,
                                                      std::vector<LeftOut>& problems);

}  // namespace vlclientui::client
