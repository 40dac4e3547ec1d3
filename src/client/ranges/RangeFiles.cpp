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

// The address as a name leads back to it.
std::string asNamed(const std::string& address) { return *addressOfName(nameOfAddress(address)); }

// Where no hidden part is seen, as of a user, a fragment tells the addresses apart: no server is sent one.
std::string numbered(const std::string& shown, std::size_t number) {
  const std::size_t query = shown.find('?');
  const std::size_t hidden = query == std::string::npos ? query : shown.find(hiddenSecret, query);
  if (hidden == std::string::npos) return shown + '#' + std::to_string(number);
  if (number == 1) return shown;
  std::string name = shown;
  return name.insert(hidden + hiddenSecret.size(), std::to_string(number));
}

/// Addresses with keys in them, and the name of each, which shows none.
class Secrets {
 public:
  static Secrets& shared() {
    static Secrets secrets;
    return secrets;
  }

  std::string shownFor(const std::string& address) {
    const std::string shown = withoutSecrets(address);
    const std::lock_guard lock(mutex_);
    // What was shown before comes back as an address.
    if (shown == address || addresses_.contains(asNamed(address))) return address;
    const auto [named, isNew] = names_.try_emplace(address);
    if (isNew) named->second = newName(shown, address);
    return named->second;
  }

  std::string behind(const std::string& shown) {
    const std::lock_guard lock(mutex_);
    const auto found = addresses_.find(shown);
    return found == addresses_.end() ? shown : found->second;
  }

 private:
  std::string newName(const std::string& shown, const std::string& address) {
    for (std::size_t& count = counts_[shown];;) {
      const std::string name = numbered(shown, ++count);
      if (addresses_.try_emplace(asNamed(name), address).second) return name;
    }
  }

  std::mutex mutex_;
  std::map<std::string, std::string> addresses_;  ///< by what may be shown
  std::map<std::string, std::string> names_;      ///< by the whole address
  std::map<std::string, std::size_t> counts_;     ///< of addresses that would show the same
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
  Secrets& secrets = Secrets::shared();
  const bool isShown = secrets.behind(address) != address;
  // A fragment is no secret, and no part of what a server is asked for.
  return isShown ? address : secrets.shownFor(address.substr(0, address.find('#')));
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
