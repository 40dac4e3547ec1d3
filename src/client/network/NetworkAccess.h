#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "client/connections/HostMemory.h"
#include "client/network/AddressProbe.h"
#include "client/network/CoveragePassage.h"
#include "client/network/CoverageReader.h"
#include "client/network/TileStore.h"
#include "client/transport/Transport.h"

namespace vlclientui::client {

/// What all network services of a process share: connections, what servers told, pixels that were fetched.
/// Any thread may ask.
class NetworkAccess {
 public:
  /// @param hostFile where hosts that answered are kept; empty for this object alone.
  explicit NetworkAccess(TransportSettings settings = {}, const std::filesystem::path& hostFile = {});
  NetworkAccess(const NetworkAccess&) = delete;
  NetworkAccess& operator=(const NetworkAccess&) = delete;
  ~NetworkAccess();

  /// The one of this process: rasters are opened by their names alone, wherever they are used. It has the
  /// user's connections and hosts.
  [[nodiscard]] static NetworkAccess& shared();

  [[nodiscard]] Transport& transport() { return transport_; }
  [[nodiscard]] AddressProbe& probe() { return probe_; }
  [[nodiscard]] HostMemory& hosts() { return hosts_; }
  /// The same object for the same address.
  [[nodiscard]] std::shared_ptr<CoverageClient> coverages(const std::string& address);
  /// A coverage's pixels. @returns a problem where the server does not tell or give them.
  [[nodiscard]] OrProblem<std::shared_ptr<CoverageReader>> reader(const std::string& address,
                                                                  const std::string& id);
  [[nodiscard]] CoveragePassages& passages() { return passages_; }
  /// What servers told and the pixels that were fetched: all of it is asked for anew.
  void forget();

 private:
  Transport transport_;
  AddressProbe probe_{transport_};
  HostMemory hosts_;
  TileStore tiles_;
  CoveragePassages passages_;
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<CoverageClient>> coverages_;
};

}  // namespace vlclientui::client
