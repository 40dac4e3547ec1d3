#include "client/facade/ServerRequest.h"

#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

constexpr auto serverPath = "//Vorlane/Client/ServerInfo/Request/Server";

}  // namespace

std::string serverOfRequest(const std::string& requestXml, const XmlService& xml) {
  const auto document = xml.createDocument();
  if (!document->loadXml(requestXml)) throw RuntimeFailure("The server info request is no XML document");
  const XmlNodePtr server = document->selectSingleNode(serverPath);
  return server ? server->text() : std::string();
}

}  // namespace vlclientui::client
