#include "selection/ServerInfoRequest.h"

#include "contracts/CallOut.h"
#include "contracts/RuntimeFailure.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* serverPath = "//Vorlane/Client/ServerInfo/Request/Server";
constexpr const char* levelPath = "//Vorlane/Client/ServerInfo/Request/MetadataLevel";

void setTextAt(const XmlDocument& document, const char* path, const std::string& text) {
  const XmlNodePtr node = document.selectSingleNode(path);
  if (!node) failMissingObject(path);
  node->setText(text);
}

}  // namespace

std::optional<std::string> BuildServerInfoRequest(const std::string& server, int level) {
  const auto engine = callOut(currentPlatform().plexa)->createPlexa();
  callOut(engine)->AttributeDefinition(threadState().ClientXADefPath);
  const auto request = callOut(currentPlatform().xml)->createDocument();
  const std::string requestTemplate = callOut(engine)->GetTemplateXml();
  if (!request->loadXml(requestTemplate)) {
    showInvalidTemplateMessage();
    return std::nullopt;
  }
  setTextAt(*request, serverPath, server);
  setTextAt(*request, levelPath, std::to_string(level));
  return request->xml();
}

void showInvalidTemplateMessage() {
  callOut(currentPlatform().toolkit)
      ->showMessage({"Invalid xml retrieved.", "Invalid Xml", MessageIcon::Critical, MessageButtons::Ok});
}

}  // namespace vlclientui
