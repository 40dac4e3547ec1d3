#include "client/reach/Places.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <mutex>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

fs::path realPathOf(const fs::path& path) {
  std::error_code error;
  return fs::canonical(path, error);
}

bool isOrHolds(const fs::path& folder, const fs::path& path) {
  for (fs::path step = path; step.has_relative_path(); step = step.parent_path()) {
    if (step == folder) return true;
  }
  return false;
}

// Mounts without rights of their own often show each folder as one where everybody may write; there it is the
// owner's all the same.
bool isShared(const fs::path& folder) {
  struct stat status {};
  if (stat(folder.c_str(), &status) != 0) return false;
  const bool isOfOthers = (status.st_mode & S_IWOTH) != 0 && status.st_uid != geteuid();
  return (status.st_mode & S_ISVTX) != 0 || isOfOthers;
}

bool holdsHomes(const fs::path& folder, const fs::path& home) {
  return folder == "/home" || (folder != home && isOrHolds(folder, home));
}

bool isHome(const fs::path& folder, const fs::path& home) {
  return folder == home || folder == "/root" || folder.parent_path() == "/home";
}

fs::path homeOfEnvironment() {
  const char* const home = std::getenv("HOME");
  return home != nullptr && *home == '/' ? realPathOf(home) : fs::path();
}

Allowance allowanceWithRealFolders() {
  Allowance allowance = Allowance::fromEnvironment();
  for (fs::path& folder : allowance.folders) {
    const fs::path real = realPathOf(folder);
    folder = real.empty() ? folder.lexically_normal() : real;
  }
  return allowance;
}

// What a file is together with.
enum class Surroundings { None, Below, Neighbors };

Surroundings surroundingsOf(const fs::path& folder, const fs::path& home) {
  if (!folder.has_relative_path() || holdsHomes(folder, home)) return Surroundings::None;
  const fs::path above = folder.parent_path();
  const bool isAlone = isHome(folder, home) || isShared(folder) || !above.has_relative_path() ||
                       isHome(above, home) || holdsHomes(above, home) || isShared(above);
  return isAlone ? Surroundings::Below : Surroundings::Neighbors;
}

bool holdsOneAbove(const std::set<fs::path>& folders, const fs::path& path) {
  for (fs::path step = path;; step = step.parent_path()) {
    if (folders.contains(step)) return true;
    if (!step.has_relative_path()) return false;
  }
}

// Of names such as "/vsi.../https/host/folder/file" the host, of "/vsi.../server/service" the server; nothing
// of those that stand for more than one server.
std::string serverOf(std::string_view name) {
  std::size_t end = 0;
  for (int steps = 0; steps < 3; ++steps) {
    const std::size_t next = name.find('/', end + 1);
    if (next == std::string_view::npos) break;
    end = next;
  }
  const std::string_view server = name.substr(0, end + 1);
  return server.ends_with("/http/") || server.ends_with("/https/") ? std::string() : std::string(server);
}

}  // namespace

Places::Places() { learnAllowance(); }

Places& Places::shared() {
  static auto* const places = new Places;  // threads may still read when the process ends
  return *places;
}

void Places::pointAt(const fs::path& folder) {
  const fs::path real = realPathOf(folder);
  if (real.empty()) return;
  const std::unique_lock lock(mutex_);
  trees_.insert(real);
}

void Places::pointAtFile(const fs::path& file) {
  const fs::path folder = realPathOf(file.parent_path());
  if (folder.empty()) return;
  const fs::path real = realPathOf(file);
  fs::path home;
  {
    const std::shared_lock lock(mutex_);
    if (seen_.contains(folder) && (reachReal(real) || files_.contains(real))) return;
    home = home_;
  }
  const Surroundings around = surroundingsOf(folder, home);
  const std::unique_lock lock(mutex_);
  const bool isNew = seen_.insert(folder).second;
  if (isNew && around == Surroundings::None) flat_.insert(folder);
  if (isNew && around != Surroundings::None && !isNeighbor(folder)) {
    neighborhoods_.insert(around == Surroundings::Below ? folder : folder.parent_path());
  }
  if (!real.empty() && !reachReal(real)) files_.insert(real);
}

bool Places::isNeighbor(const fs::path& folder) const {
  return !trees_.contains(folder) && holdsOneAbove(neighborhoods_, folder);
}

void Places::pointAtServer(std::string_view name) {
  const std::string server = serverOf(name);
  if (server.empty()) return;
  const std::unique_lock lock(mutex_);
  names_.insert(server);
}

void Places::keepOwnNames(const std::string& beginning) {
  const std::unique_lock lock(mutex_);
  names_.insert(beginning);
}

bool Places::reach(const fs::path& file) const {
  if (allowance()->everything) return true;
  const fs::path real = realPathOf(file);
  if (real.empty()) return true;
  const std::shared_lock lock(mutex_);
  return reachReal(real);
}

bool Places::hold(const fs::path& file) const {
  const fs::path real = realPathOf(file);
  const std::shared_lock lock(mutex_);
  return files_.contains(real);
}

bool Places::reachName(std::string_view name) const {
  const std::shared_lock lock(mutex_);
  const auto next = names_.upper_bound(name);
  if (next == names_.begin()) return false;
  return name.starts_with(*std::prev(next));
}

std::shared_ptr<const Allowance> Places::allowance() const {
  const std::shared_lock lock(mutex_);
  return allowance_;
}

void Places::learnAllowance() {
  auto allowance = std::make_shared<Allowance>(allowanceWithRealFolders());
  fs::path home = homeOfEnvironment();
  const std::unique_lock lock(mutex_);
  allowance_ = std::move(allowance);
  home_ = std::move(home);
}

bool Places::reachReal(const fs::path& real) const {
  if (flat_.contains(real.parent_path())) return true;
  if (holdsOneAbove(trees_, real) || holdsOneAbove(neighborhoods_, real)) return true;
  return std::ranges::any_of(allowance_->folders,
                             [&](const fs::path& folder) { return isOrHolds(folder, real); });
}

}  // namespace vlclientui::client
