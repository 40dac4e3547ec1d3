#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "client/QuickTransport.h"
#include "client/network/NetworkAccess.h"
#include "client/stac/StacServers.h"
#include "client/transport/Transport.h"
#include "servers/MapServer.h"
#include "servers/ServerProcess.h"

namespace vlclientui::client::stac {

/// The mosaics of the samples as a static catalogue; the folder that the build made.
[[nodiscard]] std::filesystem::path sampleCatalogue();

/// nginx on that folder, started by the first who asks.
[[nodiscard]] const vlclientui::test::StaticServer& sampleServer();

/// The same as an API (tests/servers/stac_api.py); its images are those of the static server.
class StacApi : public vlclientui::test::ServerProcess {
 public:
  explicit StacApi(const std::vector<std::string>& options = {});
  /// First lines of all requests so far, such as "GET /search?limit=5".
  [[nodiscard]] std::vector<std::string> requests() const;
};

using vlclientui::test::quickSettings;

[[nodiscard]] std::vector<std::string> namesOf(const CatalogueContent& content);

[[nodiscard]] inline StacAsset assetOfKind(StacAssetKind kind, std::string address = {}) {
  return {std::make_shared<const StacAssetKind>(std::move(kind)), std::move(address)};
}

/// Names of items in their order.
[[nodiscard]] std::vector<std::string> idsOf(const std::vector<StacFound>& items);

}  // namespace vlclientui::client::stac
