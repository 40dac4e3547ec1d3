#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "client/connections/Connection.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/ServerWait.h"

/// Whether a connection leads to services, found out by asking its server for them.
#pragma GCC visibility push(default)
namespace vlclientui::client {
class ConnectionBook;
}

namespace vlclientui::host {

/// What came of asking the server.
struct TrialOutcome {
  /// Whether the server answered as one that has services.
  bool isAnswered = false;
  /// How many there are.
  std::size_t services = 0;
  std::string words;  ///< for a person: how many services, or why none
};

/// Blocks until the server has answered. Any thread; what is kept does not change.
/// @param book that the transport of this process asks. @param catalogue asks the server.
/// @param connection that is tried, kept or not.
/// @param secret nothing takes the one that is kept under the name of the connection.
/// @param questions shows and ends the wait.
[[nodiscard]] TrialOutcome tryConnection(client::ConnectionBook& book, client::CatalogueServer& catalogue,
                                         const client::Connection& connection,
                                         const std::optional<std::string>& secret,
                                         const client::WaitQuestions& questions = {});

}  // namespace vlclientui::host
#pragma GCC visibility pop
