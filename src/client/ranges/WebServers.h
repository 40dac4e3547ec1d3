#pragma once

#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "client/catalogue/ServerKind.h"
#include "client/network/AddressProbe.h"
#include "client/ranges/WebDefinitions.h"
#include "client/ranges/WebFacts.h"
#include "client/ranges/WebFolders.h"

namespace vlclientui::client {

class NetworkAccess;

/// Files of the web as servers: the address of an image, a virtual raster or a mosaic's definition is a
/// server with one service, that of a folder, which its web server lists, is one with all of them below it.
/// Folders that definitions name as the home of their sources are passed over. Any thread may ask.
class WebServers final : public ServerKind {
 public:
  static constexpr int deepest = 8;                ///< folders in folders that are listed
  static constexpr std::size_t mostFolders = 500;  ///< that are listed in all
  static constexpr std::size_t mostRead =
      200;  ///< services; of more, headers are read when they are looked at

  /// @param access,files must outlive this object.
  WebServers(NetworkAccess& access, RemoteFiles& files);

  [[nodiscard]] std::optional<CatalogueContent> list(const std::string& server) override;
  [[nodiscard]] std::optional<CatalogueEntry> find(const std::string& serverAndName) override;

 private:
  /// A folder to be listed, and the whole name of it; empty for the server itself.
  struct Place {
    std::string address;
    std::string name;
  };

  [[nodiscard]] std::optional<CatalogueContent> listFile(const std::string& server,
                                                         const std::string& address, AddressKind kind);
  [[nodiscard]] std::optional<CatalogueContent> listFolder(const std::string& server,
                                                           const std::string& address);
  [[nodiscard]] std::vector<Place> listLevel(const std::vector<Place>& level, CatalogueContent& content);
  void addDefinitions(const WebFolder& folder, const std::string& name, CatalogueContent& content,
                      std::set<std::string>& homes);
  [[nodiscard]] std::optional<CatalogueEntry> mosaicEntry(const std::string& name,
                                                          const std::string& address);
  /// Images that cannot be read just now stay in the list, as far as it is known. @returns why the first of
  /// them could not; empty where all could be read or are none.
  [[nodiscard]] std::string readFacts(CatalogueContent& content);
  [[nodiscard]] std::optional<CatalogueEntry> findOn(const std::string& server, const std::string& name);
  [[nodiscard]] std::optional<CatalogueEntry> findBelow(std::string address, std::vector<std::string> steps);
  [[nodiscard]] std::vector<std::string> likeliestFirst(const std::string& serverAndName);

  NetworkAccess& access_;
  WebFolders folders_;
  WebDefinitions definitions_;
  WebFacts facts_;
  std::mutex mutex_;
  std::set<std::string> listed_;  ///< texts that led to servers of this kind
};

}  // namespace vlclientui::client
