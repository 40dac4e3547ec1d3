#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "client/catalogue/ServerKind.h"
#include "client/network/KnownListings.h"
#include "client/stac/StacMosaic.h"

namespace vlclientui::client {

class NetworkAccess;

/// Catalogues of STAC as servers: by the address of a catalogue, a collection, a search, an item or a file of
/// items. Catalogues in them are folders, collections are mosaics. Any thread may ask.
class StacServers final : public ServerKind {
 public:
  /// @param access must outlive this object.
  explicit StacServers(NetworkAccess& access, StacLimits limits = {});

  [[nodiscard]] std::optional<CatalogueContent> list(const std::string& server) override;
  [[nodiscard]] std::optional<CatalogueEntry> find(const std::string& serverAndName) override;

 private:
  struct Listing {
    std::map<std::string, std::shared_ptr<StacMosaic>> mosaics;  ///< by name
    std::vector<LeftOut> problems;
  };
  using ListingPtr = std::shared_ptr<const Listing>;

  /// Nothing, told in passing, where a catalogue falls silent; nothing also for what is no catalogue.
  [[nodiscard]] ListingPtr read(const std::string& server);
  /// Whether the address is that of a search which takes POST alone, and so tells nothing by itself.
  [[nodiscard]] bool isPostedSearch(const std::string& address);
  [[nodiscard]] bool isFile(const std::string& server) const;
  [[nodiscard]] std::optional<std::string> catalogueOf(const std::string& server);
  [[nodiscard]] std::optional<std::string> catalogueOnHost(const std::string& server);
  [[nodiscard]] static std::shared_ptr<StacMosaic> mosaicIn(const ListingPtr& listing,
                                                            const std::string& name);

  NetworkAccess& access_;
  StacLimits limits_;
  KnownListings<Listing> known_;
};

/// Names of mosaics as the list of services shows them, folders with "/" between, in the order given; no two
/// are the same. Characters are replaced as those of files are: catalogue/CatalogueNames.h.
[[nodiscard]] std::vector<std::string> mosaicNames(const std::vector<StacService>& services);

}  // namespace vlclientui::client
