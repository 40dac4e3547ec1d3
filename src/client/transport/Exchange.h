#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <curl/curl.h>

#include "client/transport/Http.h"
#include "client/transport/TransportSettings.h"

namespace vlclientui::client {

/// What goes out in one exchange.
struct ExchangePlan {
  std::string address;  ///< as it is sent, with its secrets
  Server server;        ///< whom it goes to
  std::vector<HttpHeader> headers;
  std::optional<ByteRange> range;
  std::string body;
  std::string bodyType;
  std::string user;
  std::string password;
  std::uint64_t mostBytes = 0;
  std::size_t mostHeaderBytes = 0;
  TimeLimits limits{};
  std::string agent;
  TrustedCertificates trusted;
};

/// What came of it.
struct ExchangeOutcome {
  std::optional<HttpFailure> failure;
  HttpAnswer answer;  ///< where there is no failure
  /// The failure may pass: another try may have an answer.
  bool isPassing = false;
  /// Nothing of the request had been sent.
  bool isUnsent = false;
};

/// One request to one server and its answer: no redirects, no second try, nothing remembered. Belongs to the
/// thread that transfers.
class Exchange {
 public:
  using Clock = std::chrono::steady_clock;

  /// @param received counts bytes for whoever waits.
  Exchange(ExchangePlan plan, std::shared_ptr<std::atomic<std::uint64_t>> received, CURLSH* shared);
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  [[nodiscard]] CURL* handle() const { return easy_.get(); }
  /// When the server has been silent for too long, unless a byte comes before.
  [[nodiscard]] Clock::time_point silentUntil() const { return lastByte_ + plan_.limits.silence; }
  [[nodiscard]] std::uint64_t bodyBytes() const { return answer_.body.size(); }
  [[nodiscard]] const ExchangePlan& plan() const { return plan_; }

  /// @pre libcurl is done with it.
  [[nodiscard]] ExchangeOutcome finish(CURLcode code);

 private:
  struct EasyCloser {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
  };
  struct ListCloser {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  static std::size_t take(bool (Exchange::*keep)(std::string_view), void* exchange, std::string_view bytes);
  static std::size_t takeBody(char* bytes, std::size_t size, std::size_t count, void* exchange);
  static std::size_t takeHeader(char* bytes, std::size_t size, std::size_t count, void* exchange);

  void setUp(CURLSH* shared);
  void setUpRequest();
  void setUpTrust();
  void addHeader(const std::string& line);
  [[nodiscard]] bool keepBody(std::string_view bytes);
  [[nodiscard]] bool keepHeader(std::string_view line);
  [[nodiscard]] bool isWholeRange() const;

  ExchangePlan plan_;
  std::shared_ptr<std::atomic<std::uint64_t>> received_;
  std::unique_ptr<curl_slist, ListCloser> headerList_;
  std::unique_ptr<CURL, EasyCloser> easy_;  ///< goes before what it points into
  HttpAnswer answer_;
  std::size_t headerBytes_ = 0;
  bool isTooLarge_ = false;
  Clock::time_point lastByte_;
};

/// Whether a header can be sent: no line end hides another one in it.
[[nodiscard]] bool isSound(const HttpHeader& header);

}  // namespace vlclientui::client
