#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// A header of a request or an answer, or a parameter of an address.
struct HttpHeader {
  /// In any case.
  std::string name;
  /// As it is sent, or as it came.
  std::string value;

  /// Whether name and value are equal, byte by byte.
  bool operator==(const HttpHeader&) const = default;
};

/// Which time limits hold: a document comes soon, pixels may have to be computed first.
enum class Patience {
  Document,  ///< ready to be sent
  Pixels     ///< perhaps to be computed first
};

/// Whether a request that failed for a passing reason is made again. A probe, which asks whether anybody is
/// there at all, is made once.
enum class Retrying {
  AsSet,  ///< as often as the settings say
  Never   ///< made once
};

/// First and last byte, both inclusive.
using ByteRange = std::pair<std::uint64_t, std::uint64_t>;

/// A request for one address.
struct HttpRequest {
  /// Absolute, http or https. One with a user or password in it is refused: these belong to the credentials.
  std::string address;
  /// Sent as they are, to the first server only where it leads to another one; "Accept" goes along.
  std::vector<HttpHeader> headers;
  /// Which bytes are wanted; nothing for all.
  std::optional<ByteRange> range;
  /// Posted where it is not empty.
  std::string body;
  /// Content-Type of the body.
  std::string bodyType;
  /// Of the decoded body; an answer with more is TooLarge. 0 is the length of the range, but at least 64 KB,
  /// or without one the limit of the settings.
  std::uint64_t mostBytes = 0;
  /// Which time limits hold.
  Patience patience = Patience::Document;
  /// Whether it is made again after a passing failure.
  Retrying retrying = Retrying::AsSet;
  /// The answer may be kept in memory, and the server is only asked whether it still holds (ETag,
  /// Last-Modified).
  bool remember = false;
};

/// What a server answered, whatever the status: 404 and 503 are answers too.
struct HttpAnswer {
  /// Such as 200, 206 or 404.
  int status = 0;
  /// Of the last answer, in its order.
  std::vector<HttpHeader> headers;
  /// Decoded. Of a 206, exactly the bytes that its Content-Range tells.
  std::string body;
  /// Where the body came from after all redirects, without secrets.
  std::string address;
  /// From the first request to the last byte, redirects and repetitions included.
  double seconds = 0;

  /// The value of the first header of that name, in any case; empty where there is none.
  [[nodiscard]] std::string header(std::string_view name) const;
};

/// Why there is no answer.
enum class HttpFault {
  BadAddress,        ///< no http or https address, or one with a user in it
  NotAllowed,        ///< a redirect to something else than http and https
  NoSuchHost,        ///< the name of the server, or of the proxy, is unknown
  NoConnection,      ///< nobody takes connections there, or not in that language
  Certificate,       ///< the server cannot prove who it is
  TimedOut,          ///< a limit for connecting, silence or the whole request was reached
  BrokenOff,         ///< the answer ended before it was whole, or is damaged
  TooLarge,          ///< more bytes than allowed
  TooManyRedirects,  ///< a chain that is too long, or a circle
  Canceled,          ///< given up from outside
  Other              ///< whatever else stopped it; the sentence tells
};

/// A request without an answer.
struct HttpFailure {
  /// What callers decide by.
  HttpFault fault = HttpFault::Other;
  /// One sentence for a person: it names the server and holds no secret.
  std::string text;
};

/// What a request comes to.
using HttpResult = std::variant<HttpAnswer, HttpFailure>;

/// The value of the first header of that name, in any case; empty where there is none.
[[nodiscard]] std::string headerValue(const std::vector<HttpHeader>& headers, std::string_view name);

}  // namespace vlclientui::client
#pragma GCC visibility pop
