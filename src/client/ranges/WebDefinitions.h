#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <variant>
#include <vector>

#include "client/catalogue/MosaicDefinition.h"

namespace vlclientui::client {

class Transport;

/// A mosaic definition of the web.
struct WebDefinition {
  MosaicDefinition definition;  ///< its sources under the names of this room
  std::string sourceFolder;  ///< its address, with "/" at the end: the home of its sources, where these are
};

/// Reads a definition as of a file of this machine, but with sources of its own server alone; others are left
/// out and told.
/// @param address where the text comes from. @returns why there is no mosaic, for a person.
[[nodiscard]] std::variant<WebDefinition, std::string> readWebDefinition(const std::string& text,
                                                                         const std::string& address);

/// Fetches definitions, and remembers them for a minute. Any thread may ask.
class WebDefinitions {
 public:
  using DefinitionPtr = std::shared_ptr<const WebDefinition>;
  /// The text is the reason, for a person.
  using Read = std::variant<DefinitionPtr, std::string>;
  enum class Freshness { AskAgain, Remembered };

  /// @param transport must outlive this object.
  explicit WebDefinitions(Transport& transport) : transport_(transport) {}

  /// In the order of the addresses; several at a time.
  [[nodiscard]] std::vector<Read> read(const std::vector<std::string>& addresses, Freshness freshness);

 private:
  using Clock = std::chrono::steady_clock;
  struct Known {
    DefinitionPtr definition;
    Clock::time_point until;
  };

  [[nodiscard]] DefinitionPtr known(const std::string& address);
  [[nodiscard]] Read fetched(const std::string& address, const struct HttpAnswer& answer);

  Transport& transport_;
  std::mutex mutex_;
  std::map<std::string, Known> known_;
};

}  // namespace vlclientui::client
