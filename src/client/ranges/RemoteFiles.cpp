#include "client/ranges/RemoteFiles.h"

#include <utility>

#include "client/network/NetworkAccess.h"
#include "client/ranges/RangeNames.h"
#include "client/transport/Address.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

constexpr std::size_t mostBlockBytes = std::size_t{64} << 20U;
constexpr std::size_t mostFiles = 4096;
constexpr std::size_t mostHeldBytes = std::size_t{64} << 20U;
constexpr std::size_t mostFolders = 1024;

std::string folderOf(const std::string& name) { return name.substr(0, name.rfind('/') + 1); }

}  // namespace

RemoteFiles::RemoteFiles(Transport& transport, AddressProbe* probe)
    : transport_(transport), probe_(probe), blocks_(mostBlockBytes) {}

RemoteFiles& RemoteFiles::shared() {
  NetworkAccess& access = NetworkAccess::shared();
  static RemoteFiles files(access.transport(), &access.probe());
  return files;
}

RemoteFiles::Known RemoteFiles::known(const std::string& address) {
  const std::lock_guard lock(mutex_);
  const auto found = places_.find(address);
  if (found == places_.end()) return {};
  order_.splice(order_.begin(), order_, found->second);
  return order_.front();
}

std::optional<RemoteFile::Problem> RemoteFiles::failure(const std::string& address) {
  const std::lock_guard lock(mutex_);
  const auto found = failures_.find(address);
  const bool holds = found != failures_.end() && Clock::now() < found->second.until;
  return holds ? std::optional(found->second.problem) : std::nullopt;
}

/// Of those who want the same file one asks for it, and the others wait for that.
class RemoteFiles::Turn {
 public:
  Turn(RemoteFiles& files, const std::string& address) : files_(files), address_(address) {
    Waiting waiting([&files] {
      const std::lock_guard lock(files.mutex_);
      files.turned_.notify_all();
    });
    std::unique_lock lock(files_.mutex_);
    while (files_.meeting_.contains(address_) && !waiting.isGivenUp()) waitABit(lock, waiting);
    isMine_ = files_.meeting_.insert(address_).second;
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;
  ~Turn() {
    if (!isMine_) return;
    const std::lock_guard lock(files_.mutex_);
    files_.meeting_.erase(address_);
    files_.turned_.notify_all();
  }

 private:
  // Whoever listens hears of this wait as of that for the server itself.
  void waitABit(std::unique_lock<std::mutex>& lock, Waiting& waiting) {
    const auto due = waiting.nextQuestion();
    if (!due) return files_.turned_.wait(lock);
    if (files_.turned_.wait_until(lock, *due) != std::cv_status::timeout) return;
    lock.unlock();
    const auto parsed = parsedAddress(address_);
    WaitedFor what;
    if (parsed) what.host = parsed->server.shown();
    what.openRequests = 1;
    waiting.ask(std::move(what));
    lock.lock();
  }

  RemoteFiles& files_;
  const std::string& address_;
  bool isMine_ = false;
};

std::optional<RemoteFile::Met> RemoteFiles::metLately(const std::string& address) {
  if (auto before = failure(address)) return *std::move(before);
  const Known before = known(address);
  const bool isOfUse = before.file && !before.file->hasChanged();
  if (isOfUse && Clock::now() - before.checked < freshness) return before.file;
  return std::nullopt;
}

RemoteFile::Met RemoteFiles::meet(const std::string& address) {
  if (auto lately = metLately(address)) return *std::move(lately);
  const Turn turn(*this, address);
  if (auto lately = metLately(address)) return *std::move(lately);
  RemoteFile::Met met = meetNow(address);
  const auto* problem = std::get_if<RemoteFile::Problem>(&met);
  if (problem == nullptr || WaitScope::isGivenUp()) return met;
  const std::lock_guard lock(mutex_);
  if (failures_.size() >= mostFiles) failures_.clear();
  failures_[address] = {*problem, Clock::now() + failureLasts};
  return met;
}

// Whoever found out what the address is was given the first bytes.
RemoteFile::Met RemoteFiles::meetFirst(const std::string& address) {
  if (auto answer = probe_ == nullptr ? std::nullopt : probe_->takeAnswer(address)) {
    auto met = RemoteFile::answered(transport_, blocks_, address, *std::move(answer));
    if (std::holds_alternative<std::shared_ptr<RemoteFile>>(met)) return met;
  }
  return RemoteFile::meet(transport_, blocks_, address);
}

RemoteFile::Met RemoteFiles::meetNow(const std::string& address) {
  const Known before = known(address);
  const bool isOfUse = before.file && !before.file->hasChanged();
  RemoteFile::Met met = isOfUse ? RemoteFile::meetAgain(before.file) : meetFirst(address);
  if (const auto* file = std::get_if<std::shared_ptr<RemoteFile>>(&met)) keep(address, *file);
  return met;
}

void RemoteFiles::keep(const std::string& address, const std::shared_ptr<RemoteFile>& file) {
  const std::lock_guard lock(mutex_);
  const auto found = places_.find(address);
  if (found != places_.end()) order_.erase(found->second);
  order_.push_front({address, file, Clock::now()});
  places_[address] = order_.begin();
  dropOldest();
}

void RemoteFiles::dropOldest() {
  std::size_t held = 0;
  std::size_t count = 0;
  for (auto it = order_.begin(); it != order_.end();) {
    held += it->file->heldBytes();
    const bool isBeyond =
        count > 0 && (count >= mostFiles || (held > mostHeldBytes && it->file->heldBytes() > 0));
    ++count;
    if (isBeyond) places_.erase(it->address);
    it = isBeyond ? order_.erase(it) : std::next(it);
  }
}

void RemoteFiles::tellFolder(const std::string& folder, std::vector<std::string> names) {
  const std::lock_guard lock(mutex_);
  if (folders_.size() >= mostFolders) folders_.clear();
  folders_[nameOfAddress(folder)] = std::move(names);
}

std::vector<std::string> RemoteFiles::neighbors(const std::string& name) const {
  const std::lock_guard lock(mutex_);
  const auto found = folders_.find(folderOf(name));
  return found == folders_.end() ? std::vector<std::string>() : found->second;
}

void RemoteFiles::forget() {
  const std::lock_guard lock(mutex_);
  places_.clear();
  order_.clear();
  folders_.clear();
  failures_.clear();
  blocks_.forget();
}

}  // namespace vlclientui::client
