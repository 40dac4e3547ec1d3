#include "viewer/network/RecentServers.h"

#include "frame/General.h"
#include "selection/SettingsDocument.h"

namespace vlclientui::viewer {
namespace {

// The first child is a placeholder, as in the template of the documents.
constexpr const char* emptySettings =
    "<Vorlane><Client><ShowImageServicesDialog><MruServers><ServerName/></MruServers>"
    "</ShowImageServicesDialog></Client></Vorlane>";

std::string settingsFolder() { return GetSpecialFolder(specialFolder::documents) + userDataFolderTail; }

}  // namespace

std::vector<std::string> serversOfLate() { return readMruServers(settingsFolder()); }

void putServerFirst(const Platform& platform, const std::string& typed) {
  const std::string server = platform.clientLibrary->serverToShow(typed);
  const std::string folder = settingsFolder();
  std::vector<std::string> servers = readMruServers(folder);
  std::erase(servers, server);
  servers.insert(servers.begin(), server);
  const auto settings = platform.xml->createDocument();
  if (!settings->loadXml(emptySettings)) return;
  if (!platform.system->makeSureDirectoryPathExists(folder + "\\")) return;
  appendMruServers(*settings, servers);
  saveSettings(*settings, folder);
}

}  // namespace vlclientui::viewer
