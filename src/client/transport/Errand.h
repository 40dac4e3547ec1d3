#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "client/transport/DocumentMemory.h"
#include "client/transport/Exchange.h"

namespace vlclientui::client {

/// A request on its way through as many exchanges as it takes: redirects, repetitions, and the question
/// whether a remembered document still holds. Decides only; who transfers makes the exchanges.
class Errand {
 public:
  /// Another exchange is due after a pause.
  struct Again {
    std::chrono::milliseconds pause{};
  };
  using Next = std::variant<HttpResult, Again>;

  Errand(HttpRequest request, std::shared_ptr<const TransportSettings> settings);

  /// Why nothing is sent at all; nothing where the request can be made.
  [[nodiscard]] std::optional<HttpFailure> refusal() const;
  /// Whom the next exchange is with.
  /// @pre there is no refusal; so too below.
  [[nodiscard]] const Server& server() const { return address_->server; }
  /// Where the next exchange leads, without secrets.
  [[nodiscard]] std::string shownAddress() const;
  [[nodiscard]] const HttpRequest& request() const { return request_; }

  /// The next exchange.
  [[nodiscard]] ExchangePlan plan(DocumentMemory& memory);
  /// What follows from it.
  /// @param left of the time for the whole request; a pause that is longer is not begun.
  [[nodiscard]] Next next(ExchangeOutcome&& outcome, DocumentMemory& memory, std::chrono::milliseconds left);

 private:
  void addCredentials(ExchangePlan& plan);
  void addConditions(ExchangePlan& plan, DocumentMemory& memory);
  [[nodiscard]] std::uint64_t mostBytes() const;
  [[nodiscard]] bool mayRemember() const;
  [[nodiscard]] Next redirected(const HttpAnswer& answer);
  [[nodiscard]] Next notModified(HttpAnswer&& answer, DocumentMemory& memory);
  [[nodiscard]] HttpResult handedOut(HttpAnswer&& answer) const;

  HttpRequest request_;
  std::shared_ptr<const TransportSettings> settings_;
  std::optional<Address> address_;  ///< of the next exchange
  Server first_;
  bool hasLeft_ = false;  ///< another server than the first one was asked
  bool isUnconditional_ = false;
  int redirects_ = 0;
  int tried_ = 0;
  std::string memoryKey_;  ///< of the exchange underway; empty where it is not remembered
};

}  // namespace vlclientui::client
