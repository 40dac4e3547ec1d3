#pragma once

#include <optional>
#include <string>
#include <string_view>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Whom a request goes to. Secrets told for one server are sent to no other one.
struct Server {
  std::string scheme;  ///< "http" or "https"
  std::string host;    ///< small letters; IPv6 in brackets
  int port = 0;        ///< 80 or 443 where the address tells none

  /// Whether scheme, host and port are equal.
  bool operator==(const Server&) const = default;
  /// An order without a meaning of its own, for sorted containers.
  auto operator<=>(const Server&) const = default;
  /// As a person reads it: the port only where it is not the usual one.
  [[nodiscard]] std::string shown() const;
};

/// A web address in its parts, as they stand in it.
struct Address {
  /// Whom it leads to.
  Server server;
  std::string path;   ///< with its "/", which stands here also where the address has none
  std::string query;  ///< without "?"
  /// Whether a user or password stands in it; both are dropped.
  bool hasUser = false;

  /// The whole address again, without user and fragment.
  [[nodiscard]] std::string text() const;
};

/// Whether a text begins as an http or https address does.
[[nodiscard]] bool isWebAddress(std::string_view text);
/// Nothing for what is no absolute http or https address.
[[nodiscard]] std::optional<Address> parsedAddress(const std::string& text);

/// Where a reference inside a document leads: an absolute one stays what it is, a relative one is seen from
/// the document's own address. Nothing where that is no http or https address.
[[nodiscard]] std::optional<std::string> resolvedAddress(const std::string& base,
                                                         const std::string& reference);

/// Text as the name or value of a parameter; all but letters, digits, "-", ".", "_" and "~" is encoded.
[[nodiscard]] std::string percentEncoded(std::string_view text);
/// The bytes that "%41" and its like stand for; all else stays. A "+" is no blank.
[[nodiscard]] std::string percentDecoded(std::string_view text);

/// What a file at an address is called: the last step of the path, decoded; the host where there is none.
[[nodiscard]] std::string fileNameOf(const Address& address);

/// The address with one more parameter, encoded here.
[[nodiscard]] std::string withParameter(const std::string& address, std::string_view name,
                                        std::string_view value);

}  // namespace vlclientui::client
#pragma GCC visibility pop
