#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "client/catalogue/ServerKind.h"
#include "client/network/CoverageClient.h"
#include "client/network/CoverageListing.h"
#include "client/network/KnownListings.h"

namespace vlclientui::client {

class NetworkAccess;

/// Coverage services of a network as servers: by their address, or by the host alone, which is asked at the
/// usual places. Any thread may ask.
class CoverageServers final : public ServerKind {
 public:
  /// @param access must outlive this object.
  explicit CoverageServers(NetworkAccess& access);

  [[nodiscard]] std::optional<CatalogueContent> list(const std::string& server) override;
  [[nodiscard]] std::optional<CatalogueEntry> find(const std::string& serverAndName) override;

 private:
  struct Listing {
    std::shared_ptr<CoverageClient> client;
    CoverageNames idsByName;
  };

  using ListingPtr = std::shared_ptr<const Listing>;

  [[nodiscard]] OrProblem<ListingPtr> listing(const std::string& server, CoverageClient::Freshness freshness);
  [[nodiscard]] OrProblem<std::shared_ptr<CoverageClient>> connect(const std::string& server);
  [[nodiscard]] bool isOfAnotherKind(const std::string& server) const;
  /// Where the host was found before; nothing where it does not answer there any more.
  [[nodiscard]] std::optional<std::string> rememberedPlace(const std::string& host);
  /// @param problem changed where a place tells why it does not answer.
  [[nodiscard]] std::optional<std::string> answeringPlace(const std::vector<std::string>& places,
                                                          CoverageProblem& problem);

  NetworkAccess& access_;
  KnownListings<Listing> known_;
};

/// The addresses at which a text may mean a coverage service, the likeliest first: the address itself, or the
/// usual places of a host. Empty for a text that is neither, and for one that holds a user or password.
[[nodiscard]] std::vector<std::string> coveragePlaces(const std::string& server);

}  // namespace vlclientui::client
