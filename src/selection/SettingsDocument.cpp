#include "selection/SettingsDocument.h"

#include <algorithm>

#include "contracts/RuntimeFailure.h"
#include "documents/ParsedDocument.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* fileName = "\\VLClientUI.VLConfig.Xml";

constexpr const char* mruServersPath = "//Vorlane/Client/ShowImageServicesDialog/MruServers";
constexpr const char* settingsInTemplate = "//Vorlane/Client/ShowImageServicesDialog";
constexpr const char* selectedInTemplate = "//Vorlane/Client/SelectedImageServices";

XmlNodePtr need(const XmlDocument& document, const char* path) {
  XmlNodePtr node = document.selectSingleNode(path);
  if (!node) failMissingObject(path);
  return node;
}

void appendText(XmlDocument& document, XmlNode& parent, const char* name, const std::string& text) {
  const XmlNodePtr element = document.createElement(name);
  element->setText(text);
  parent.appendChild(element);
}

}  // namespace

std::vector<std::string> readMruServers(const std::string& userDataFolder) {
  const std::string path = userDataFolder + fileName;
  std::vector<std::string> servers;
  const auto document = callOut(currentPlatform().xml)->createDocument();
  if (!FileExist(path)) return servers;
  if (!callOut(*document)->load(path)) endSilently("'" + path + "' cannot be read as an XML document");
  const XmlNodePtr list = document->selectSingleNode(mruServersPath);
  if (!list) return servers;
  const auto children = list->childNodes();
  for (std::size_t i = 1; i < children.size(); ++i) servers.push_back(children[i]->text());
  return servers;
}

std::string writeSelectedServices(XmlDocument& settingsTemplate, const std::vector<std::string>& references) {
  const XmlNodePtr selected = need(settingsTemplate, selectedInTemplate);
  while (const XmlNodePtr first = selected->firstChild()) selected->removeChild(first);
  for (const std::string& reference : references) appendText(settingsTemplate, *selected, "Name", reference);
  return selected->xml();
}

void appendMruServers(XmlDocument& settingsTemplate, const std::vector<std::string>& servers) {
  const XmlNodePtr list = need(settingsTemplate, mruServersPath);
  const std::size_t count = std::min(servers.size(), mruServerLimit);
  for (std::size_t i = 0; i < count; ++i) appendText(settingsTemplate, *list, "ServerName", servers[i]);
}

void saveSettings(const XmlDocument& settingsTemplate, const std::string& userDataFolder) {
  const std::string settings = need(settingsTemplate, settingsInTemplate)->xml();
  const auto file = callOut(currentPlatform().xml)->createDocument();
  if (!loadOrStayEmpty(*file, "<Vorlane><Client>" + settings + "</Client></Vorlane>")) return;
  endsQuietly([&] { callOut(*file)->save(userDataFolder + fileName); });
}

}  // namespace vlclientui
