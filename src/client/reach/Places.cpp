#include "client/reach/Places.h"

#include <cstdlib>
#include <iterator>
#include <mutex>
#include <system_error>
#include <utility>

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

bool everybodyWrites(const fs::path& folder) {
  std::error_code error;
  const fs::perms rights = fs::status(folder, error).permissions();
  return !error && (rights & fs::perms::others_write) != fs::perms::none;
}

bool isHomeOrHoldsHomes(const fs::path& folder) {
  const char* const home = std::getenv("HOME");
  const bool isOfThisUser = home != nullptr && *home == '/' && isOrHolds(folder, realPathOf(home));
  return isOfThisUser || folder == "/home" || folder.parent_path() == "/home" || folder == "/root";
}

// What lies there has nothing in common.
bool holdsAllSorts(const fs::path& folder) {
  return !folder.has_relative_path() || everybodyWrites(folder) || isHomeOrHoldsHomes(folder);
}

// Of names such as "/vsi.../https/host/folder/file" the host, of "/vsi.../server/service" the server.
std::string serverOf(std::string_view name) {
  std::size_t end = 0;
  for (int steps = 0; steps < 3; ++steps) {
    const std::size_t next = name.find('/', end + 1);
    if (next == std::string_view::npos) break;
    end = next;
  }
  return std::string(name.substr(0, end + 1));
}

}  // namespace

Places::Places() : allowance_(std::make_shared<Allowance>(Allowance::fromEnvironment())) {}

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
  {
    const std::shared_lock lock(mutex_);
    if (seen_.contains(folder) && (reachReal(real) || files_.contains(real))) return;
  }
  const std::unique_lock lock(mutex_);
  seen_.insert(folder);
  if (holdsAllSorts(folder)) {
    flat_.insert(folder);
  } else {
    trees_.insert(holdsAllSorts(folder.parent_path()) ? folder : folder.parent_path());
  }
  if (!real.empty() && !reachReal(real)) files_.insert(real);
}

void Places::pointAtServer(std::string_view name) {
  const std::string server = serverOf(name);
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
  auto allowance = std::make_shared<Allowance>(Allowance::fromEnvironment());
  const std::unique_lock lock(mutex_);
  allowance_ = std::move(allowance);
}

bool Places::reachReal(const fs::path& real) const {
  if (flat_.contains(real.parent_path())) return true;
  for (fs::path step = real;; step = step.parent_path()) {
    if (trees_.contains(step)) return true;
    if (!step.has_relative_path()) break;
  }
  for (const fs::path& folder : allowance_->folders) {
    const fs::path allowed = realPathOf(folder);
    if (!allowed.empty() && isOrHolds(allowed, real)) return true;
  }
  return false;
}

}  // namespace vlclientui::client
