#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "servers/ServerProcess.h"

namespace vlclientui::test {

/// MapServer as a FastCGI program with several workers behind lighttpd, on the sample catalogue. Its
/// coverages are named as the services, with a dot between folders.
class MapServer : public ServerProcess {
 public:
  MapServer();
  /// On the rasters that offerRasters put there.
  explicit MapServer(const std::filesystem::path& folder);
  /// Started by the first who asks, ended with the program.
  [[nodiscard]] static const MapServer& shared();

  /// Where coverages are asked for, without a query.
  [[nodiscard]] std::string coverages() const { return address() + "/wcs"; }
  /// The same by the place where such programs usually stand, with the query that names the map.
  [[nodiscard]] std::string usualPlace() const { return address() + "/cgi-bin/mapserv?map=samples"; }
};

/// nginx with the files of a folder: answers requests for ranges, and lists folders.
class StaticServer : public ServerProcess {
 public:
  /// The log, where one is told, gets a line for each request after its answer.
  explicit StaticServer(const std::filesystem::path& folder, const std::filesystem::path& log = {});
  /// The sample catalogue, served by the first who asks, ended with the program.
  [[nodiscard]] static const StaticServer& samples();
};

/// nginx before another server, which it makes secured: the address begins with https.
class SecuredServer : public ServerProcess {
 public:
  /// @param behind "host:port". @param certificate two files without their endings .pem and .key.
  SecuredServer(const std::string& behind, const std::filesystem::path& certificate);

  /// By the name that the certificates of the tests are for.
  [[nodiscard]] std::string securedAddress() const { return "https://localhost:" + std::to_string(port()); }
};

/// QGIS Server as a FastCGI program behind lighttpd, on the sample catalogue.
class QgisServer : public ServerProcess {
 public:
  QgisServer();
  /// Why its tests are skipped on this machine; empty where it is installed.
  [[nodiscard]] static std::string missing();
  [[nodiscard]] static const QgisServer& shared();

  [[nodiscard]] std::string coverages() const { return address() + "/ows"; }
};

}  // namespace vlclientui::test
