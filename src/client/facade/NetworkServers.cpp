#include "client/facade/NetworkServers.h"

#include <memory>

#include "client/connections/ConnectionBook.h"
#include "client/facade/CatalogueServer.h"
#include "client/network/CoverageServers.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RemoteFiles.h"
#include "client/ranges/WebServers.h"
#include "client/stac/StacServers.h"

namespace vlclientui::client {

void addNetworkServers(CatalogueServer& server) {
  ConnectionBook& book = ConnectionBook::shared();
  server.understand(
      {[&book](const std::string& typed) { return book.withoutSecrets(typed); },
       [&book](const std::string& text) { return book.addressOf(text); },
       [&book](const std::string& serverAndName) { return book.addressOfReference(serverAndName); }});
  server.addKind(std::make_unique<StacServers>(NetworkAccess::shared()));
  server.addKind(std::make_unique<WebServers>(NetworkAccess::shared(), RemoteFiles::shared()));
  server.addKind(std::make_unique<CoverageServers>(NetworkAccess::shared()));
}

}  // namespace vlclientui::client
