#pragma once

#pragma GCC visibility push(default)
namespace vlclientui::client {

class CatalogueServer;

/// Lets the server's texts lead to services of a network too: the name of a connection of this user, a host,
/// the address of a coverage service, of a catalogue, of an image, or of a folder of images.
/// docs/catalogue.md tells which. To be called before the first request.
void addNetworkServers(CatalogueServer& server);

}  // namespace vlclientui::client
#pragma GCC visibility pop
