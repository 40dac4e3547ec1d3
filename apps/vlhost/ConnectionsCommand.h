#pragma once

#include <string>
#include <vector>

#include "client/connections/ConnectionBook.h"

namespace vlclientui::vlhost {

struct ConnectionsCommand {
  enum class Verb { List, Add, Try, Remove };
  enum class Present { Refuse, Replace };

  Verb verb = Verb::List;
  client::Connection connection;  ///< for Try and Remove its name alone
  std::string secretFile;  ///< the first line of it is the secret; "-" is standard input; empty: asked for
  client::SecretKeeping keeping = client::SecretKeeping::Best;
  Present present = Present::Refuse;
  bool isJson = false;
};

/// @param arguments behind "connections". @throws Misuse for those that make no sense.
[[nodiscard]] ConnectionsCommand parseConnections(const std::vector<std::string>& arguments);

/// @returns the exit code. @throws RuntimeFailure with what a person is to be told.
[[nodiscard]] int runConnections(const ConnectionsCommand& command);

}  // namespace vlclientui::vlhost
