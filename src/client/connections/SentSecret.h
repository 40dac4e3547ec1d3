#pragma once

#include <optional>
#include <string>

#include "client/connections/Connection.h"
#include "client/transport/TransportSettings.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Where a secret may go: one server, and there a path and what is below it.
struct SecretScope {
  Server server;
  std::string path;  ///< with its first "/", without a last one; empty for the whole server

  bool operator==(const SecretScope&) const = default;
  /// A path that leads up again, encoded or not, is below nothing.
  [[nodiscard]] bool holds(const Server& asked, const std::string& askedPath) const;
};

/// What proves who asks, and where.
struct SentSecret {
  SecretScope scope;
  Credentials credentials;
};

/// The part of a server that an address speaks for: its path and what is below; of the address of a file, the
/// folder around it.
[[nodiscard]] SecretScope scopeOf(const Address& address);

/// Where the secret of a connection goes. @pre the connection is sound.
[[nodiscard]] SentSecret sentSecret(const Connection& connection, const std::string& secret);

/// A server text or reference as it may be shown, logged and kept, and the secret that stood in it.
struct TypedText {
  std::string text;
  std::optional<SentSecret> secret;  ///< nothing where there was none, or where nobody can tell for whom
};

/// @param typed a server text, or a reference "ImageService://server/name". Without secrets it comes back as
/// it is. Paths and file names are none.
[[nodiscard]] TypedText withoutTypedSecrets(const std::string& typed);

}  // namespace vlclientui::client
#pragma GCC visibility pop
