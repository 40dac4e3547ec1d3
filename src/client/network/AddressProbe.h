#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "client/transport/Http.h"

namespace vlclientui::client {

class Transport;

/// What stands at an address.
enum class AddressKind {
  Coverages,   ///< a coverage service, as its address or its answer tells
  Catalogue,   ///< a document of STAC: a catalogue, a collection, items, the page of an API
  RasterFile,  ///< an image of a format that is read from the web
  Mosaic,      ///< a virtual raster
  Definition,  ///< a definition of a mosaic
  WebFolder,   ///< a page, or a list in JSON, that leads to files and folders
  Nothing      ///< nothing of these, or nothing that can be had
};

/// Whether a server text is the address of a host alone, with or without its scheme.
enum class ServerPlace { Host, Address };
struct ServerAddress {
  std::string address;
  ServerPlace place = ServerPlace::Address;
};

/// Tells kinds of servers apart by one fetch, which is remembered, so that not every kind asks in vain. Any
/// thread may ask.
class AddressProbe {
 public:
  static constexpr std::uint64_t bytesAsked = std::uint64_t{64} << 10U;

  /// @param transport must outlive this object.
  explicit AddressProbe(Transport& transport) : transport_(transport) {}

  /// Asks unless the answer is known or the address itself tells. A kind is remembered for ten minutes, that
  /// nothing is there for half a minute, that nobody answers for five seconds.
  /// @param address absolute, http or https.
  [[nodiscard]] AddressKind kindOf(const std::string& address, Retrying retrying = Retrying::AsSet);
  /// What a person typed is asked for as long as is usual; a host alone, which may mean many things, once.
  [[nodiscard]] AddressKind kindOf(const ServerAddress& server) {
    return kindOf(server.address, server.place == ServerPlace::Host ? Retrying::Never : Retrying::AsSet);
  }
  /// One of some addresses where something of that kind is: they are asked side by side, once each, and the
  /// first to tell it counts.
  [[nodiscard]] std::optional<std::string> firstOf(const std::vector<std::string>& addresses,
                                                   AddressKind kind);
  /// What was answered just now: the document of a catalogue, where the answer held all of it, or the first
  /// bytesAsked of an image. Whoever reads it need not ask again. Given once.
  [[nodiscard]] std::optional<HttpAnswer> takeAnswer(const std::string& address);
  /// The kind, where it is known without asking.
  [[nodiscard]] std::optional<AddressKind> knownKind(const std::string& address) const;
  /// Why nobody answered there just now, for a person; nothing where somebody did, or nobody asked.
  [[nodiscard]] std::optional<HttpFailure> silence(const std::string& address) const;
  /// Whether that server text was asked just now, and its host is unknown or takes no connections. What else
  /// is on that host need not be asked.
  [[nodiscard]] bool isHostAway(const std::string& server) const;
  void forget();

 private:
  using Clock = std::chrono::steady_clock;
  struct Known {
    AddressKind kind = AddressKind::Nothing;
    std::optional<HttpFailure> failure;
    Clock::time_point until;
  };

  struct Whole {
    HttpAnswer answer;
    Clock::time_point until;
  };

  [[nodiscard]] std::optional<Known> known(const std::string& address) const;
  AddressKind take(const std::string& address, HttpResult&& result);
  [[nodiscard]] static Known judged(const std::string& address, const HttpResult& result);

  Transport& transport_;
  mutable std::mutex mutex_;
  std::map<std::string, Known> known_;
  std::map<std::string, Whole> whole_;  ///< answers that are of use to readers
};

/// What an address tells of itself; nothing for most.
[[nodiscard]] std::optional<AddressKind> kindOfAddress(const std::string& address);
/// What an answer to a request for the first bytes is.
[[nodiscard]] AddressKind kindOfAnswer(const HttpAnswer& answer);

/// The web address that a server text means; nothing for a text that is none. Blanks at its ends count not.
[[nodiscard]] std::optional<ServerAddress> addressOfServer(const std::string& server);
/// What is wrong with a server text that is meant to be a web address and is none, for a person; empty for an
/// address and for all other texts.
[[nodiscard]] std::string addressFlaw(const std::string& server);

/// By what a host is remembered that a server text names alone; nothing for a text that is more, such as a
/// piece of a reference.
[[nodiscard]] std::optional<std::string> hostOfServer(const std::string& server);
/// The addresses of paths on the host that a server text names.
[[nodiscard]] std::vector<std::string> placesOnHost(const std::string& server,
                                                    std::span<const std::string_view> paths);

/// The texts that may be the server in a reference, the longest first.
[[nodiscard]] std::vector<std::string> possibleServers(const std::string& serverAndName);
/// Those of them that are worth a request, at most mostServersAsked: the known ones first, then the others,
/// the longest first. Where these are too many, those in the middle are left out.
inline constexpr std::size_t mostServersAsked = 16;
[[nodiscard]] std::vector<std::string> serversToAsk(const std::string& serverAndName,
                                                    const std::function<bool(const std::string&)>& isKnown);

}  // namespace vlclientui::client
