#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "client/catalogue/CatalogueNames.h"
#include "client/ranges/WebListing.h"
#include "client/raster/LeftOut.h"

namespace vlclientui::client {

class Transport;
class RemoteFiles;

/// An image, a definition of a mosaic, or a folder of the web, with its name in the list.
struct WebNode {
  WebEntry entry;
  CatalogueName name;  ///< within its folder
};

/// A folder of a web server.
struct WebFolder {
  std::vector<WebNode> images;
  std::vector<WebNode> folders;
  std::vector<LeftOut> problems;  ///< what stands there and is not shown, and why
};

/// Reads folders of web servers, as their own pages list them, and names what stands there as in folders of
/// this machine. Hidden files, and those that only stand beside images, are passed over, as is all that no
/// name promises to be a raster. Any thread may ask.
class WebFolders {
 public:
  using FolderPtr = std::shared_ptr<const WebFolder>;
  /// The text is the reason, for a person.
  using Read = std::variant<FolderPtr, std::string>;
  enum class Freshness { AskAgain, Remembered };

  /// @param files is told what lies beside each other. Both must outlive this object.
  WebFolders(Transport& transport, RemoteFiles& files) : transport_(transport), files_(files) {}

  /// In the order of the addresses; several at a time.
  [[nodiscard]] std::vector<Read> read(const std::vector<std::string>& addresses, Freshness freshness);

 private:
  using Clock = std::chrono::steady_clock;
  struct Known {
    FolderPtr folder;
    Clock::time_point until;
  };

  [[nodiscard]] FolderPtr known(const std::string& address);
  [[nodiscard]] Read fetched(const std::string& address, const struct HttpAnswer& answer);

  Transport& transport_;
  RemoteFiles& files_;
  std::mutex mutex_;
  std::map<std::string, Known> known_;
};

/// What a page's entries are in a list.
[[nodiscard]] WebFolder folderOfEntries(const std::vector<WebEntry>& entries);

}  // namespace vlclientui::client
