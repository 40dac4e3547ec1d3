#include "frame/InitProtocol.h"

#include "frame/General.h"

namespace vlclientui {

std::string missingDefinitionText(const std::string& path) {
  return "Initialization failed. File '" + path + "' does not exist.";
}

std::string invalidDefinitionText(const std::string& path) {
  return "Initialization failed. File '" + path + "' is an invalid xad.";
}

void buildUserDataFolder() {
  threadState().UserDataFolder = GetSpecialFolder(specialFolder::documents) + userDataFolderTail;
}

void buildClientXADefPath() {
  threadState().ClientXADefPath = GetInstallFolder(installFolder::definitions) + "VLClient.XADef";
}

void buildClientXfdefPath() {
  threadState().ClientXfdefPath = GetInstallFolder(installFolder::definitions) + "VLClient.Xfdef";
}

bool passesShowGuard(const InitFlags& flags, std::string& status) {
  if (!flags.called) {
    status = "Cannot show without initializing the object";
    return false;
  }
  if (!flags.succeeded) {
    status = "Initialization failed";
    return false;
  }
  return true;
}

}  // namespace vlclientui
