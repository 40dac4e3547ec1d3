#include "client/connections/SentSecret.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "client/transport/Address.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

constexpr std::string_view serviceScheme = "imageservice://";

bool startsWith(std::string_view text, std::string_view start) {
  if (text.size() < start.size()) return false;
  return std::ranges::equal(text.substr(0, start.size()), start, [](char letter, char small) {
    return letter == small || (letter >= 'A' && letter <= 'Z' && (letter | 0x20) == small);
  });
}

bool leadsUp(const std::string& path) {
  std::string plain = percentDecoded(path);
  std::ranges::replace(plain, '\\', '/');
  plain += '/';
  return plain.find("/../") != std::string::npos || plain.find("/./") != std::string::npos;
}

bool isPath(std::string_view text) {
  const bool hasDrive = text.size() > 2 && text[1] == ':' && (text[2] == '\\' || text[2] == '/');
  return text.empty() || text.front() == '/' || text.front() == '\\' || text.front() == '.' || hasDrive;
}

// Of "http:/", "https:" and "//", which people type for "http://"; 0 for other texts.
std::size_t lengthOfLooseStart(std::string_view text) {
  const bool isWeb = startsWith(text, "http:") || startsWith(text, "https:");
  const std::size_t begin = isWeb ? text.find(':') + 1 : 0;
  const std::size_t end = std::min(text.find_first_not_of('/', begin), text.size());
  const bool isLoose = isWeb ? end - begin != 2 : end - begin == 2;
  return isLoose ? end : 0;
}

std::string_view behindScheme(std::string_view text) {
  const std::size_t end = text.find("://");
  const bool hasScheme = end != std::string_view::npos && text.find_first_of(":/\\@?# ") == end;
  return hasScheme ? text.substr(end + 3) : text;
}

// "user:password@host" is what it looks like, whatever the password holds; "C:\a@b" and "a@b/c" are files.
bool hasUserInFront(std::string_view text) {
  text = behindScheme(text);
  const std::size_t colon = text.find_first_of(":/\\@?# ");
  const bool isUser = colon != std::string_view::npos && colon > 0 && text[colon] == ':' && !isPath(text);
  if (!isUser) return false;
  const std::size_t sign = text.find('@', colon);
  return sign != std::string_view::npos && sign + 1 < text.size();
}

// A host alone may have parameters too.
bool mayHoldSecrets(std::string_view text) {
  return isWebAddress(text) || hasUserInFront(text) ||
         (!isPath(text) && text.find('?') != std::string_view::npos);
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = std::min(text.find_first_not_of(blanks), text.size());
  text.remove_prefix(first);
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

// In a reference without parameters nobody can tell the end of the server; its host is all that is known.
SecretScope scopeOfTyped(const Address& address, BehindAddress behind, bool hasQuery) {
  if (behind == BehindAddress::Name && !hasQuery) return {address.server, {}};
  return scopeOf(address);
}

std::optional<SentSecret> secretOf(const TypedSecrets& taken, std::string_view typed, BehindAddress behind) {
  const bool isEmpty = taken.user.empty() && taken.password.empty() && taken.parameters.empty();
  const bool isOfOtherScheme = !isWebAddress(typed) && behindScheme(typed) != typed;
  if (isEmpty || isOfOtherScheme) return std::nullopt;
  const bool hasQuery = typed.find('?') != std::string_view::npos;
  const std::string whole = isWebAddress(typed) ? taken.beforeQuery : "http://" + taken.beforeQuery;
  const auto address = parsedAddress(whole);
  if (!address) return std::nullopt;
  SentSecret secret{scopeOfTyped(*address, behind, hasQuery), {}};
  secret.credentials.user = taken.user;
  secret.credentials.password = taken.password;
  secret.credentials.parameters = taken.parameters;
  return secret;
}

}  // namespace

bool SecretScope::holds(const Server& asked, const std::string& askedPath) const {
  if (asked != server || leadsUp(askedPath)) return false;
  return askedPath.starts_with(path) && (askedPath.size() == path.size() || askedPath[path.size()] == '/');
}

SecretScope scopeOf(const Address& address) {
  std::string path = address.path;
  const std::size_t slash = path.rfind('/');
  const bool isFile = address.query.empty() && path.find('.', slash) != std::string::npos;
  if (isFile) path.erase(slash);
  while (path.ends_with('/')) path.pop_back();
  return {address.server, std::move(path)};
}

SentSecret sentSecret(const Connection& connection, const std::string& secret) {
  SentSecret sent;
  if (const auto address = parsedAddress(connection.address)) sent.scope = scopeOf(*address);
  if (connection.signIn == SignIn::Password) {
    sent.credentials.user = connection.user;
    sent.credentials.password = secret;
  } else if (connection.signIn == SignIn::Token && connection.tokenPlace == TokenPlace::Parameter) {
    sent.credentials.parameters.push_back({connection.tokenName, secret});
  } else if (connection.signIn == SignIn::Token) {
    const bool isBearer =
        isSameName(connection.tokenName, "Authorization") && secret.find(' ') == std::string::npos;
    sent.credentials.headers.push_back({connection.tokenName, (isBearer ? "Bearer " : "") + secret});
  }
  return sent;
}

TypedText withoutTypedSecrets(const std::string& typed) {
  const bool isReference = startsWith(typed, serviceScheme);
  const std::string_view front = std::string_view(typed).substr(0, isReference ? serviceScheme.size() : 0);
  const std::string_view whole = trimmed(std::string_view(typed).substr(front.size()));
  const std::string_view loose = whole.substr(0, lengthOfLooseStart(whole));
  const std::string_view address = whole.substr(loose.size());
  if (!mayHoldSecrets(whole) && !hasUserInFront(address)) return {typed, std::nullopt};
  const BehindAddress behind = isReference ? BehindAddress::Name : BehindAddress::Nothing;
  const TypedSecrets taken = secretsTakenOut(address, behind);
  if (taken.address == address) return {typed, std::nullopt};
  std::string text = std::string(front).append(loose) + taken.address;
  // Nobody can tell whether a server is meant by such a start.
  if (!loose.empty()) return {std::move(text), std::nullopt};
  return {std::move(text), secretOf(taken, address, behind)};
}

}  // namespace vlclientui::client
