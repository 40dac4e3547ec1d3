#include "client/connections/Connection.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "client/transport/Address.h"
#include "client/transport/Secrets.h"
#include "contracts/Utf8.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t longestName = 100;  // bytes
constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
constexpr std::string_view signsOfHeaders = "!#$%&'*+-.^_`|~";

bool isPlainText(std::string_view text) {
  while (!text.empty()) {
    const Utf8Character character = firstUtf8Character(text);
    if (character.length == 0 || character.code < 0x20 || character.code == 0x7F) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

bool hasBlankEnds(std::string_view text) { return text.front() == ' ' || text.back() == ' '; }

std::string smallAscii(std::string text) {
  std::ranges::transform(text, text.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
  });
  return text;
}

// A name stands where a server's address or folder could stand, and before the "/" of a reference.
std::string problemOfName(const std::string& name) {
  if (name.empty()) return "A connection needs a name.";
  if (!isPlainText(name) || hasBlankEnds(name) || name.size() > longestName)
    return "The name must be at most 100 bytes of text, without blanks at its ends.";
  if (name.find_first_of("/\\:@?#") != std::string::npos) return "The name must not hold any of / \\ : @ ? #";
  if (isSameName(name, "localhost") || name == "127.0.0.1" || name == "." || name == "..")
    return "'" + name + "' means something else already.";
  return {};
}

std::string problemOfAddress(const std::string& text) {
  const auto address = parsedAddress(text);
  if (!isPlainText(text) || !address)
    return "The address must begin with https:// or http:// and name a server.";
  const TypedSecrets taken = secretsTakenOut(text, BehindAddress::Nothing);
  const std::size_t users = taken.user.empty() && taken.password.empty() ? 0 : 1;
  if (users + taken.parameters.size() > 1)
    return "The address holds several ways to sign in; leave one user or key there at most.";
  if (taken.address != text) return "The address must not hold a user, a password or a key.";
  return {};
}

bool isHeaderName(std::string_view name) {
  return !name.empty() && std::ranges::all_of(name, [](char sign) {
    return letters.find(sign) != std::string_view::npos ||
           signsOfHeaders.find(sign) != std::string_view::npos;
  });
}

// What the transport writes itself.
bool isTaken(const std::string& header) {
  constexpr std::array<std::string_view, 5> taken{"host", "content-length", "transfer-encoding", "connection",
                                                  "range"};
  return std::ranges::find(taken, smallAscii(header)) != taken.end();
}

}  // namespace

bool isSameName(const std::string& one, const std::string& other) {
  return smallAscii(one) == smallAscii(other);
}

std::string problemOf(const Connection& connection) {
  if (std::string problem = problemOfName(connection.name); !problem.empty()) return problem;
  if (std::string problem = problemOfAddress(connection.address); !problem.empty()) return problem;
  if (connection.signIn == SignIn::Password) {
    if (connection.user.empty()) return "The user is missing.";
    const bool isSound = isPlainText(connection.user) && connection.user.find(':') == std::string::npos;
    return isSound ? "" : "The user must be plain text without a colon.";
  }
  if (connection.signIn != SignIn::Token) return {};
  if (connection.tokenPlace == TokenPlace::Parameter) {
    const bool isSound = !connection.tokenName.empty() && isPlainText(connection.tokenName);
    return isSound ? "" : "The parameter of the token needs a name.";
  }
  const bool isSound = isHeaderName(connection.tokenName) && !isTaken(connection.tokenName);
  return isSound ? "" : "'" + connection.tokenName + "' is no header that could carry a token.";
}

std::string problemOfSecret(const Connection& connection, const std::string& secret) {
  if (connection.signIn == SignIn::None) return {};
  if (secret.empty()) return "The " + secretWord(connection) + " is missing.";
  return isPlainText(secret) ? ""
                             : "The " + secretWord(connection) + " holds characters that cannot be sent.";
}

std::string secretWord(const Connection& connection) {
  if (connection.signIn == SignIn::None) return {};
  return connection.signIn == SignIn::Password ? "password" : "token";
}

std::string signInWords(const Connection& connection) {
  if (connection.signIn == SignIn::None) return "nothing";
  if (connection.signIn == SignIn::Password) return "user " + connection.user;
  const bool isHeader = connection.tokenPlace == TokenPlace::Header;
  return (isHeader ? "token in header " : "token in parameter ") + connection.tokenName;
}

}  // namespace vlclientui::client
