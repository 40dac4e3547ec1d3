#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/connections/Connection.h"
#include "client/connections/PrivateFile.h"

namespace vlclientui::client {

/// A connection as the file has it.
struct StoredConnection {
  Connection connection;
  std::string secret;     ///< where it is kept in the file
  std::string secretKey;  ///< where it is kept in the desktop's store, its key there

  bool operator==(const StoredConnection&) const = default;
};

/// The file of connections: a document of JSON, described in docs/servers.md.
class ConnectionFile {
 public:
  using Connections = std::vector<StoredConnection>;

  explicit ConnectionFile(std::filesystem::path file) : file_(std::move(file)) {}

  [[nodiscard]] const PrivateFile& file() const { return file_; }
  /// None where there is no file. @throws RuntimeFailure when it cannot be read or understood.
  [[nodiscard]] Connections read() const;
  /// Changes it while no other process does. A file that cannot be understood stays as it is.
  /// @throws RuntimeFailure then, and when it cannot be written; what the edit raises comes through.
  void change(const std::function<void(Connections&)>& edit) const;

 private:
  [[nodiscard]] Connections parsed(const std::string& text) const;

  PrivateFile file_;
};

}  // namespace vlclientui::client
