#include "frame/General.h"

#include "contracts/CallOut.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/Silence.h"
#include "contracts/controls/Control.h"
#include "frame/HelpLaunches.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr std::int32_t registryString = 1;
constexpr std::int32_t registryNumber = 4;
constexpr std::int32_t localeDecimalSeparator = 14;
constexpr const char* registryHomeKey = "SOFTWARE\\Ostrel\\Vor Lane";
constexpr const char* registryHomeValue = "Home";
constexpr const char* defaultHome = "C:\\Program Files\\Ostrel\\Vor Lane\\";

std::string cutAtNul(const std::string& text) { return text.substr(0, text.find('\0')); }

std::string helpHome(HelpHome home) {
  if (home == HelpHome::InstallFolder) return GetInstallFolder(installFolder::home);
  return ReadRegistryValue(RegistryHive::HKEY_LOCAL_MACHINE, registryHomeKey, registryHomeValue);
}

thread_local std::size_t launchesOfHelp = 0;

}  // namespace

std::string GetInstallFolder(std::int32_t kind) {
  if (kind != installFolder::definitions && kind != installFolder::home && kind != installFolder::help)
    return {};
  const auto paths = callOut(currentPlatform().clientLibrary)->createInstallPaths();
  if (!paths) failMissingObject("InstallPaths");
  return callOut(*paths)->GetPath(kind);
}

std::string GetSpecialFolder(std::int32_t folderId) {
  const auto folder = callOut(currentPlatform().system)->shellFolder(folderId);
  if (!folder) endSilently("the system knows no folder of the kind " + std::to_string(folderId));
  return cutAtNul(folder.value_or(std::string()));
}

bool CreatePath(std::string& path) {
  if (!path.ends_with('\\')) path += " \\ ";
  const bool made = callOut(currentPlatform().system)->makeSureDirectoryPathExists(path);
  if (!made) endSilently("the folder '" + path + "' cannot be made");
  return made;
}

bool FolderExist(const std::string& path) {
  try {
    return !callOut(currentPlatform().system)->firstDirectoryEntry(path).empty();
  } catch (const WindowGone&) {
    throw;
  } catch (...) {
    endSilently(handledFailureText());
    return false;
  }
}

bool FileExist(const std::string& path) {
  try {
    return callOut(currentPlatform().system)->fileLength(path) >= 0;
  } catch (const WindowGone&) {
    throw;
  } catch (...) {
    return false;
  }
}

std::string ReadRegistryValue(RegistryHive hive, const std::string& key, const std::string& valueName,
                              const std::string& defaultValue) {
  const auto opened = callOut(currentPlatform().system)->openRegistryKey(hive, key);
  if (!opened) return defaultValue;
  const auto value = callOut(*opened)->query(valueName);
  if (value && value->type == registryString) return cutAtNul(value->text);
  if (value && value->type == registryNumber) return std::to_string(value->number);
  return defaultValue;
}

void readLocaleDecimalSeparator(std::string& separator) {
  System& system = *currentPlatform().system;
  const std::int32_t locale = system.userLocale();
  std::string buffer;
  const std::int32_t size = system.localeInfo(locale, localeDecimalSeparator, buffer, 0);
  buffer.assign(static_cast<std::size_t>(size > 0 ? size : 0), ' ');
  system.localeInfo(locale, localeDecimalSeparator, buffer, size);
  const auto end = buffer.find('\0');
  if (end == std::string::npos) return endSilently("the system tells no decimal separator");
  separator = buffer.substr(0, end);
}

std::size_t helpLaunches() { return launchesOfHelp; }

void LaunchHelp(std::int32_t keyPressed, std::int32_t shift, bool windowHasActiveControl,
                const std::string& page, HelpHome home) {
  if (keyPressed != keyCode::f1 || shift != keyModifier::control) return;
  std::string path = helpHome(home);
  if (path.empty()) path = defaultHome;
  if (!path.ends_with('\\')) path += '\\';
  path += "Help\\Vorlane_Clients.chm::/" + page + ".htm";
  if (!windowHasActiveControl) return endSilently("no control of the window holds the focus");
  ++launchesOfHelp;
  callOut(currentPlatform().system)->launch("hh.exe " + path);
}

}  // namespace vlclientui
