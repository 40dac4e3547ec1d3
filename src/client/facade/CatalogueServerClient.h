#pragma once

#include <memory>
#include <string>
#include <vector>

#include "client/facade/CatalogueServer.h"
#include "contracts/VorlaneClient.h"

namespace vlclientui::client {

/// The catalogue as a server client of the older generation.
class CatalogueServerClient : public IServerClient {
 public:
  /// @param server shared among clients; never null.
  explicit CatalogueServerClient(std::shared_ptr<CatalogueServer> server);

  [[nodiscard]] Object* queryInterface(std::string_view name) override;
  [[nodiscard]] std::string GetServerInfo(const std::string& request) override;
  /// What the last answer left out, with reasons.
  [[nodiscard]] std::vector<LeftOut> problems() const;

 private:
  std::shared_ptr<CatalogueServer> server_;
};

/// The same catalogue for the newer generation.
class OVLCatalogueServerClient : public IOVLServerClient {
 public:
  /// @param server shared among clients; never null.
  explicit OVLCatalogueServerClient(std::shared_ptr<CatalogueServer> server);

  [[nodiscard]] Object* queryInterface(std::string_view name) override;
  [[nodiscard]] std::string GetServerInfo(const std::string& request) override;
  /// What the last answer left out, with reasons.
  [[nodiscard]] std::vector<LeftOut> problems() const;

 private:
  std::shared_ptr<CatalogueServer> server_;
};

}  // namespace vlclientui::client
