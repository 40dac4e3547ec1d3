#pragma once

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "client/connections/PrivateFile.h"

namespace vlclientui::client {

/// Where the services of hosts were found that a person named without a path, in a small file of the user, so
/// that they are asked there first. A memory only: a file that cannot be read or written is told in the
/// trace, and nothing else comes of it. Any thread may ask.
class HostMemory {
 public:
  /// @param file empty: nothing is kept beyond this object.
  explicit HostMemory(std::filesystem::path file = {}) : file_(std::move(file)) {}

  /// @param host as a person names it; capitals do not count. @returns the address; nothing for an unknown
  /// host.
  [[nodiscard]] std::optional<std::string> placeOf(const std::string& host);
  /// @param place without secrets.
  void remember(const std::string& host, const std::string& place);
  void forget(const std::string& host);

 private:
  using Places = std::vector<std::pair<std::string, std::string>>;  ///< host and address, the latest first

  void refresh();
  void change(const std::string& host, const std::string& place);

  PrivateFile file_;
  std::mutex mutex_;
  Places places_;
  bool isRead_ = false;
  PrivateFile::Stamp stamp_;
};

/// The file of this user; empty where the user has no folder.
[[nodiscard]] std::filesystem::path hostMemoryFile();

}  // namespace vlclientui::client
