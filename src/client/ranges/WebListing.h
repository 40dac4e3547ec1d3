#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vlclientui::client {

enum class WebEntryKind { File, Folder };

/// A file or folder that a page leads to.
struct WebEntry {
  WebEntryKind kind = WebEntryKind::File;
  std::string name;     ///< as the server calls it, decoded; any bytes but "/"
  std::string address;  ///< of a folder with "/" at its end

  bool operator==(const WebEntry&) const = default;
};

/// More are passed over.
inline constexpr std::size_t mostWebEntries = 20000;

/// What stands in a folder, by its page of links or its list in JSON, as web servers write them by
/// themselves: files and folders right below the address, each once, by name in byte order. All other links
/// are passed over: to the folder above, to other orders of the list, to other servers.
/// @param address where the page comes from; what stands behind its last "/" is not part of the folder.
[[nodiscard]] std::vector<WebEntry> readWebListing(std::string_view page, const std::string& address);

}  // namespace vlclientui::client
