#include "client/facade/CatalogueServerClient.h"

#include <utility>

namespace vlclientui::client {

CatalogueServerClient::CatalogueServerClient(std::shared_ptr<CatalogueServer> server, WaitQuestions questions)
    : server_(std::move(server)), questions_(std::move(questions)) {}

Object* CatalogueServerClient::queryInterface(std::string_view name) {
  return name == IServerClient::interfaceName ? this : nullptr;
}

std::string CatalogueServerClient::GetServerInfo(const std::string& request) {
  const ServerWaitScope scope(questions_);
  return server_->serverInfo(request);
}

std::vector<LeftOut> CatalogueServerClient::problems() const { return server_->problems(); }

OVLCatalogueServerClient::OVLCatalogueServerClient(std::shared_ptr<CatalogueServer> server,
                                                   WaitQuestions questions)
    : server_(std::move(server)), questions_(std::move(questions)) {}

Object* OVLCatalogueServerClient::queryInterface(std::string_view name) {
  return name == IOVLServerClient::interfaceName ? this : nullptr;
}

std::string OVLCatalogueServerClient::GetServerInfo(const std::string& request) {
  const ServerWaitScope scope(questions_);
  return server_->serverInfo(request);
}

std::vector<LeftOut> OVLCatalogueServerClient::problems() const { return server_->problems(); }

}  // namespace vlclientui::client
