#pragma once

namespace vlclientui::client {

class CatalogueServer;

/// Lets the server's texts lead to services of a network too: the name of a connection of this user, a host,
/// or the address of a coverage service. docs/catalogue.md tells which. To be called before the first
/// request.
void addNetworkServers(CatalogueServer& server);

}  // namespace vlclientui::client
