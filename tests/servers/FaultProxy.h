#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "servers/ServerProcess.h"

namespace vlclientui::test {

/// The web server of the tests (fault_proxy.py), on free ports of this machine. A fault is asked for by the
/// address, "/fault/reset/a.txt", or armed for the requests that come next. README.md lists them.
class FaultProxy {
 public:
  /// Whether the secured ports are there too; their certificates take a moment to make.
  enum class Ports { Plain, Secured };
  struct Counts {
    std::size_t requests = 0;
    std::size_t connections = 0;
    std::size_t together = 0;  ///< most requests at a time
    std::size_t open = 0;      ///< requests without a whole answer
  };

  /// Serves the files of a folder.
  explicit FaultProxy(const std::filesystem::path& folder, Ports ports = Ports::Plain);
  /// Passes on what another server answers. @param upstream "host:port"
  explicit FaultProxy(const std::string& upstream);
  FaultProxy(const FaultProxy&) = delete;
  FaultProxy& operator=(const FaultProxy&) = delete;
  ~FaultProxy();

  /// @param path with its "/".
  [[nodiscard]] std::string address(const std::string& path) const;
  /// The same server as another one: by another port.
  [[nodiscard]] std::string otherAddress(const std::string& path) const;
  [[nodiscard]] std::string securedAddress(const std::string& path) const;
  /// With a certificate that has expired.
  [[nodiscard]] std::string expiredAddress(const std::string& path) const;
  /// Speaks HTTP/2 only, and gives every request the same answer.
  [[nodiscard]] std::string http2Address() const;
  /// The file of the authority that signed the certificates.
  [[nodiscard]] std::string authority() const { return told_.at("authority"); }
  /// The good certificate and its key, without the endings of their files.
  [[nodiscard]] std::filesystem::path certificate() const { return certificates_ / "good"; }
  /// "127.0.0.1:port"
  [[nodiscard]] std::string place() const { return "127.0.0.1:" + std::to_string(process_->port()); }

  /// The next so many requests meet the fault.
  void arm(int times, const std::string& fault) const;
  /// Every request meets it; an empty one ends that.
  void always(const std::string& fault) const;
  /// Every request behind the next so many meets it.
  void alwaysAfter(std::size_t requests, const std::string& fault) const;
  /// Answers all that is held by the fault "hold".
  void release() const;
  /// Forgets counts and faults, and releases what is held.
  void clear() const;
  [[nodiscard]] Counts counts() const;
  /// First lines of all requests, such as "GET /a.txt".
  [[nodiscard]] std::vector<std::string> requests() const;

 private:
  void start(std::vector<std::string> options);
  [[nodiscard]] std::string ask(const std::string& command) const;
  void tell(const std::string& command) const;
  [[nodiscard]] std::string secured(const std::string& port, const std::string& path) const;

  std::filesystem::path certificates_;
  std::unique_ptr<ServerProcess> process_;
  std::map<std::string, std::string> told_;
};

/// Text as it stands in an address.
[[nodiscard]] std::string encoded(const std::string& text);

}  // namespace vlclientui::test
