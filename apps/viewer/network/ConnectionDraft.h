#pragma once

#include <optional>
#include <string>

#include "client/connections/ConnectionBook.h"

namespace vlclientui::viewer {

/// A connection while a person fills it in, and what is to be said of it. Knows no window.
struct ConnectionDraft {
  /// What the desktop's secret store says of itself: empty where it keeps secrets, nothing while nobody
  /// knows.
  using DesktopProblem = std::optional<std::string>;

  client::Connection connection;
  std::string secret;  ///< as typed; empty keeps the one that is there
  client::SecretKeeping keeping = client::SecretKeeping::Best;
  std::optional<client::Connection> present;  ///< the one that is changed; nothing for a new one

  [[nodiscard]] static ConnectionDraft ofNew() { return {}; }
  [[nodiscard]] static ConnectionDraft of(const client::Connection& present);

  /// Another way to sign in; a token goes under the usual name of that way, unless a person gave it another
  /// one.
  void signInWith(client::SignIn way, client::TokenPlace place);
  /// Takes what the address holds beside an address: a user, a password, a key. One that holds several, or a
  /// user alone beside a token that was typed, stays as it is and is a problem.
  void takeAddress(const std::string& typed);
  [[nodiscard]] client::ConnectionEdit edit() const;
  /// Whether no new secret is needed, for the one that is there goes on to be used.
  [[nodiscard]] bool keepsSecret() const;
  /// Why it cannot be saved, as a sentence; empty when it can.
  [[nodiscard]] std::string problem() const;
  /// Where its secret will be kept, and who may read it on its way; empty where it has none.
  [[nodiscard]] std::string words(const DesktopProblem& desktop, const std::string& file) const;
};

/// Where the secret of a connection is kept, in a few words for a list.
[[nodiscard]] std::string keptWords(const client::Connection& connection);

}  // namespace vlclientui::viewer
