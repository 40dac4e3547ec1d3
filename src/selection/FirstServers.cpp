#include "selection/FirstServers.h"

#include <algorithm>
#include <utility>

#include "contracts/CallOut.h"
#include "frame/General.h"
#include "frame/ThreadState.h"
#include "selection/SettingsDocument.h"

namespace vlclientui {
namespace {

constexpr const char* localServer = "127.0.0.1";

const ServersInPlace*& inPlaceOfThread() {
  thread_local const ServersInPlace* newest = nullptr;
  return newest;
}

std::vector<std::string> serversToBeginWith() {
  if (const auto* const inPlace = ServersInPlace::ofThread()) return *inPlace;
  return readMruServers(GetSpecialFolder(specialFolder::documents) + userDataFolderTail);
}

}  // namespace

std::vector<std::string> firstServers() {
  std::vector<std::string> servers = serversToBeginWith();
  for (std::string& server : servers) server = callOut(currentPlatform().clientLibrary)->serverToShow(server);
  if (std::ranges::find(servers, localServer) == servers.end()) servers.emplace_back(localServer);
  return servers;
}

ServersInPlace::ServersInPlace(std::vector<std::string> servers)
    : servers_(std::move(servers)), former_(std::exchange(inPlaceOfThread(), this)) {}

ServersInPlace::~ServersInPlace() { inPlaceOfThread() = former_; }

const std::vector<std::string>* ServersInPlace::ofThread() {
  const ServersInPlace* const newest = inPlaceOfThread();
  return newest ? &newest->servers_ : nullptr;
}

}  // namespace vlclientui
