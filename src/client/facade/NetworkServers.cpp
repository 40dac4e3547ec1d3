#include "client/facade/NetworkServers.h"

#include <memory>

#include "client/facade/CatalogueServer.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"

namespace vlclientui::client {

void addNetworkServers(CatalogueServer& server) {
  server.addKind(std::make_unique<CoverageServers>(NetworkAccess::shared()));
}

}  // namespace vlclientui::client
