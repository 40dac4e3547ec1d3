#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "client/transport/Address.h"
#include "client/transport/Http.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// How long a server may take. An answer late is a failure, TimedOut.
struct TimeLimits {
  /// Until the connection stands, the search for its name included.
  std::chrono::milliseconds connecting;
  /// Without a byte, the wait for the first one included.
  std::chrono::milliseconds silence;
  /// From the first connection to the last byte, redirects, repetitions and their pauses included.
  std::chrono::milliseconds whole;
};

/// What proves to a server who asks. Sent to that server alone, and never shown.
struct Credentials {
  std::string user;  ///< with the password, as Basic authentication
  /// Beside the user.
  std::string password;
  std::vector<HttpHeader> headers;     ///< such as "Authorization: Bearer ..."
  std::vector<HttpHeader> parameters;  ///< added to the address, for servers that want their key there
};

/// Asked before each request, on any thread; must not block. Nothing is raised. An answer is used for that
/// server alone (scheme, host and port): who is led from one server to another one comes there without
/// credentials.
using CredentialSource = std::function<Credentials(const Server& server, const std::string& path)>;

/// Told of each request on the thread that makes it, before it is handed over. May block, to have at hand
/// what the source will be asked for. A RuntimeFailure that it raises is the failure of that request.
using CredentialPreparation = std::function<void(const Server& server, const std::string& path)>;

/// Authorities whose certificates are taken, beside those of the system; empty for none.
struct TrustedCertificates {
  /// Path of a PEM file.
  std::string file;
  /// Path of a folder of hashed PEM files.
  std::string folder;
};

/// What came of one exchange with a server, for whoever counts, measures or traces.
struct ExchangeReport {
  std::string address;  ///< without secrets
  int status = 0;       ///< 0 where no answer came
  /// Why no answer came; nothing where one came.
  std::optional<HttpFault> fault;
  std::uint64_t bytes = 0;  ///< of the body, decoded
  /// From the start of this exchange to its end.
  double seconds = 0;
};

/// What a test replaces, so that it neither waits nor depends on chance.
struct TransportSources {
  /// Now, to read the dates that servers tell.
  std::function<std::chrono::system_clock::time_point()> now;
  /// 0 to below 1.
  std::function<double()> chance;
  /// How long a pause of that length really takes.
  std::function<std::chrono::milliseconds(std::chrono::milliseconds)> pause;
};

/// How a transport behaves.
struct TransportSettings {
  /// For Patience::Document.
  TimeLimits document{std::chrono::seconds(10), std::chrono::seconds(30), std::chrono::minutes(2)};
  /// For Patience::Pixels.
  TimeLimits pixels{std::chrono::seconds(10), std::chrono::minutes(2), std::chrono::minutes(15)};

  /// Of a body whose request tells no limit.
  std::uint64_t mostBytes = std::uint64_t{64} << 20U;
  /// Of all headers of an answer.
  std::size_t mostHeaderBytes = std::size_t{256} << 10U;
  /// In one chain.
  int mostRedirects = 8;

  /// Exchanges at a time.
  std::size_t perServer = 8;
  /// Exchanges at a time with all servers together.
  std::size_t inAll = 32;

  /// A request is made this many times at most.
  int tries = 4;
  /// Before the second one; each further pause is twice as long. Chance shortens each by up to a half.
  std::chrono::milliseconds firstPause{400};
  /// No such pause is longer.
  std::chrono::milliseconds longestPause{8000};
  /// A server that asks to be left alone for longer is not asked again; its answer is handed out.
  std::chrono::milliseconds longestRetryAfter{30000};

  /// Of the bodies that are kept for conditional requests.
  std::size_t rememberedBytes = std::size_t{32} << 20U;

  /// "User-Agent" of each request.
  std::string agent = "VLClientUI";
  /// Empty members become what SSL_CERT_FILE and SSL_CERT_DIR tell when the transport is made.
  TrustedCertificates trusted;
  /// May be empty: then requests go without.
  CredentialSource credentials;
  /// May be empty.
  CredentialPreparation prepareCredentials;
  /// Called on a thread of the transport; must be quick.
  std::function<void(const ExchangeReport&)> observer;
  /// Empty members become the system's clock, chance, and pauses of their full length.
  TransportSources sources;

  /// The limits of a request with that patience.
  [[nodiscard]] const TimeLimits& limits(Patience patience) const {
    return patience == Patience::Pixels ? pixels : document;
  }
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
