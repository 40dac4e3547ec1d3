#pragma once

#include <memory>
#include <string>
#include <vector>

#include "client/facade/CatalogueServer.h"
#include "client/facade/ServerWait.h"
#include "contracts/VorlaneClient.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// The catalogue as a server client of the older generation.
class CatalogueServerClient : public IServerClient {
 public:
  /// @param server shared among clients; never null. @param questions shows and ends waits of each call.
  explicit CatalogueServerClient(std::shared_ptr<CatalogueServer> server, WaitQuestions questions = {});

  [[nodiscard]] Object* queryInterface(std::string_view name) override;
  [[nodiscard]] std::string GetServerInfo(const std::string& request) override;
  /// What the last answer left out, with reasons.
  [[nodiscard]] std::vector<LeftOut> problems() const;

 private:
  std::shared_ptr<CatalogueServer> server_;
  WaitQuestions questions_;
};

/// The same catalogue for the newer generation.
class OVLCatalogueServerClient : public IOVLServerClient {
 public:
  /// @param server shared among clients; never null. @param questions shows and ends waits of each call.
  explicit OVLCatalogueServerClient(std::shared_ptr<CatalogueServer> server, WaitQuestions questions = {});

  [[nodiscard]] Object* queryInterface(std::string_view name) override;
  /// As CatalogueServerClient::GetServerInfo.
  [[nodiscard]] std::string GetServerInfo(const std::string& request) override;
  /// What the last answer left out, with reasons.
  [[nodiscard]] std::vector<LeftOut> problems() const;

 private:
  std::shared_ptr<CatalogueServer> server_;
  WaitQuestions questions_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
