#include "client/facade/NetworkServers.h"

#include <memory>

#include "client/facade/CatalogueServer.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "client/stac/StacServers.h"

namespace vlclientui::client {

void addNetworkServers(CatalogueServer& server) {
  server.addKind(std::make_unique<StacServers>(NetworkAccess::shared()));
  server.addKind(std::make_unique<CoverageServers>(NetworkAccess::shared()));
}

}  // namespace vlclientui::client
