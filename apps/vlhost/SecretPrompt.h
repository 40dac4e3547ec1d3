#pragma once

#include <optional>
#include <string>

#include "client/connections/Connection.h"

namespace vlclientui::vlhost {

/// The secret of a connection from a person at a terminal, without echo; nothing where there is no terminal,
/// or where it is given up by Ctrl+C or an empty line.
[[nodiscard]] std::optional<std::string> promptedSecret(const client::Connection& connection);

/// The first line of a file, or of standard input for "-", without its end. A secret that begins or ends with
/// blanks keeps them.
/// @throws RuntimeFailure when it cannot be read.
[[nodiscard]] std::string secretOfFile(const std::string& file);

/// From a terminal, else from the first line of standard input.
[[nodiscard]] std::optional<std::string> askedSecret(const client::Connection& connection);

/// Lets connections that keep their secret for a session ask for it at a terminal.
void answerQuestionsOfConnections();

}  // namespace vlclientui::vlhost
