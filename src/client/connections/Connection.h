#pragma once

#include <string>
#include <string_view>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// How who asks is proved to a server.
enum class SignIn {
  None,      ///< not at all
  Password,  ///< by a user and a password
  Token      ///< by a token alone
};

/// Where in a request a token travels.
enum class TokenPlace {
  Header,    ///< in a header of the request
  Parameter  ///< in a parameter of its address
};

/// Where the password or token of a connection is kept.
enum class SecretPlace {
  Desktop,  ///< the secret store of the desktop
  File,     ///< the file of connections, which only its owner can read
  Session   ///< the memory of the program that was told it
};

/// "desktop", "file" or "session".
[[nodiscard]] constexpr std::string_view wordOf(SecretPlace place) {
  switch (place) {
    case SecretPlace::Desktop:
      return "desktop";
    case SecretPlace::File:
      return "file";
    case SecretPlace::Session:
      break;
  }
  return "session";
}

/// A server by a name of one's own.
struct Connection {
  std::string name;     ///< what a person types in place of the address
  std::string address;  ///< http or https, without any secret
  /// How requests to the address prove who asks.
  SignIn signIn = SignIn::None;
  std::string user;  ///< with a password
  /// Counts with SignIn::Token alone.
  TokenPlace tokenPlace = TokenPlace::Header;
  /// Of the header or parameter. A token in "Authorization" goes as "Bearer ..." unless it has a scheme of
  /// its own.
  std::string tokenName = "Authorization";
  /// Where its password or token is kept.
  SecretPlace kept = SecretPlace::Desktop;

  /// Whether all members are equal; names in the same case.
  bool operator==(const Connection&) const = default;
};

/// Why a connection cannot be as it is, as a sentence for a person; empty for a sound one.
[[nodiscard]] std::string problemOf(const Connection& connection);

/// The same for a password or token of it.
[[nodiscard]] std::string problemOfSecret(const Connection& connection, const std::string& secret);

/// Whether two names mean the same connection: capitals of ASCII letters do not count.
[[nodiscard]] bool isSameName(const std::string& one, const std::string& other);

/// "password" or "token"; empty where the connection has neither.
[[nodiscard]] std::string secretWord(const Connection& connection);

/// How it signs in, in a few words for a list: "user ann", "token in header Authorization", or "nothing".
[[nodiscard]] std::string signInWords(const Connection& connection);

}  // namespace vlclientui::client
#pragma GCC visibility pop
