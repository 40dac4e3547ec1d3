#include "client/network/CoveragePassage.h"

#include <utility>

namespace vlclientui::client {

std::string coverageName(const std::string& address, const std::string& id) { return address + ' ' + id; }

std::shared_ptr<FetchAhead> CoveragePassage::ahead(int level, const Make& make) {
  const std::lock_guard lock(mutex_);
  if (isEnded_) return nullptr;
  std::shared_ptr<FetchAhead>& ahead = ahead_[level];
  if (!ahead) ahead = make();
  return ahead;
}

void CoveragePassage::end() {
  giveUp();
  std::map<int, std::shared_ptr<FetchAhead>> ending;
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    ending = std::exchange(ahead_, {});
  }
  for (const auto& [level, ahead] : ending) ahead->stop();
}

namespace {

// What the caller of begin() holds. What fetches ahead holds the passage too, for moments, and must not be
// the one that ends it: it would wait for itself.
struct Owner {
  std::shared_ptr<CoveragePassage> passage;

  explicit Owner(std::shared_ptr<CoveragePassage> owned) : passage(std::move(owned)) {}
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;
  ~Owner() { passage->end(); }
};

}  // namespace

CoveragePassages::Passage CoveragePassages::begin(const std::string& coverage, const PixelWindow& window,
                                                  CoveragePassage::Kind kind, const CancelToken& readers) {
  auto passage = std::make_shared<CoveragePassage>(window, kind, readers);
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(passages_, [](const auto& each) { return each.second.expired(); });
    passages_.emplace(coverage, passage);
  }
  CoveragePassage* const told = passage.get();
  return {std::make_shared<Owner>(std::move(passage)), told};
}

CoveragePassages::Passage CoveragePassages::find(const std::string& coverage) const {
  const std::lock_guard lock(mutex_);
  const auto [first, last] = passages_.equal_range(coverage);
  Passage latest;
  for (auto each = first; each != last; ++each) {
    auto passage = each->second.lock();
    if (passage && WaitScope::isUnder(passage->readers())) latest = std::move(passage);
  }
  return latest;
}

}  // namespace vlclientui::client
