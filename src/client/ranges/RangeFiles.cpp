#include "client/ranges/RangeFiles.h"

#include <map>
#include <mutex>

#include "client/network/CoverageRaster.h"
#include "client/ranges/RangeFileSystem.h"
#include "client/ranges/RangeNames.h"
#include "client/ranges/RemoteSecrets.h"
#include "client/transport/Secrets.h"

namespace vlclientui::client {
namespace {

/// Addresses with keys in them, by what may be shown of them.
class Secrets {
 public:
  static Secrets& shared() {
    static Secrets secrets;
    return secrets;
  }

  void keep(const std::string& shown, const std::string& address) {
    const std::lock_guard lock(mutex_);
    addresses_[shown] = address;
  }

  std::string behind(const std::string& shown) {
    const std::lock_guard lock(mutex_);
    const auto found = addresses_.find(shown);
    return found == addresses_.end() ? shown : found->second;
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::string> addresses_;
};

}  // namespace

std::string rangeRasterName(const std::string& address) {
  registerRangeFiles();
  return nameOfAddress(addressForNames(address));
}

std::optional<std::string> addressOfRangeRaster(const std::string& name) { return addressOfName(name); }

std::string shownPlace(const std::string& name) {
  const auto address = addressOfName(name);
  return address ? withoutSecrets(*address) : shownRasterPlace(name);
}

std::string addressForNames(const std::string& address) {
  // A fragment is no secret, and no part of what a server is asked for.
  const std::string asked = address.substr(0, address.find('#'));
  const std::string shown = withoutSecrets(asked);
  if (shown != asked) Secrets::shared().keep(*addressOfName(nameOfAddress(shown)), asked);
  return shown;
}

std::optional<std::string> addressWithSecrets(const std::string& name) {
  const auto shown = addressOfName(name);
  return shown ? std::optional(Secrets::shared().behind(*shown)) : std::nullopt;
}

void registerRangeFiles() {
  static std::once_flag once;
  std::call_once(once, [] { installRangeFileSystem(); });
}

}  // namespace vlclientui::client
