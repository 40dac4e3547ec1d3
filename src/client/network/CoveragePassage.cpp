#include "client/network/CoveragePassage.h"

#include <utility>

namespace vlclientui::client {

std::string coverageName(const std::string& address, const std::string& id) { return address + ' ' + id; }

std::shared_ptr<FetchAhead> CoveragePassage::ahead(const Make& make) {
  const std::lock_guard lock(mutex_);
  if (!ahead_ && !isEnded_) ahead_ = make();
  return ahead_;
}

void CoveragePassage::end() {
  giveUp();
  std::shared_ptr<FetchAhead> ending;
  {
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    ending = std::move(ahead_);
  }
  if (ending) ending->stop();
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
                                                  CoveragePassage::Kind kind) {
  auto passage = std::make_shared<CoveragePassage>(window, kind);
  {
    const std::lock_guard lock(mutex_);
    std::erase_if(passages_, [](const auto& each) { return each.second.expired(); });
    passages_[coverage] = passage;
  }
  CoveragePassage* const told = passage.get();
  return {std::make_shared<Owner>(std::move(passage)), told};
}

CoveragePassages::Passage CoveragePassages::find(const std::string& coverage) const {
  const std::lock_guard lock(mutex_);
  const auto found = passages_.find(coverage);
  return found == passages_.end() ? nullptr : found->second.lock();
}

}  // namespace vlclientui::client
