#include "client/mapping/CopyMaker.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {

struct CopyMaker::State {
  State(std::shared_ptr<SmallCopies> all, std::function<void()> whenChanged)
      : copies(std::move(all)), changed(std::move(whenChanged)) {}

  void work();
  void makeNext(std::unique_lock<std::mutex>& lock);
  void report(double share);

  const std::shared_ptr<SmallCopies> copies;
  const std::function<void()> changed;
  mutable std::mutex mutex;
  std::condition_variable wake;
  bool isEnding = false;
  bool isAllowed = false;
  std::deque<std::filesystem::path> waiting;
  std::set<std::filesystem::path> told;  ///< that wait, are being made, or have failed
  std::optional<Progress> present;
  CancelToken token;  ///< of what is being made
  std::string problem;
  std::jthread thread;
};

void CopyMaker::State::work() {
  std::unique_lock lock(mutex);
  while (!isEnding) {
    if (isAllowed && !waiting.empty()) {
      makeNext(lock);
    } else {
      wake.wait(lock);
    }
  }
}

// What was given up because no more is allowed stays wanted.
void CopyMaker::State::makeNext(std::unique_lock<std::mutex>& lock) {
  const std::filesystem::path raster = waiting.front();
  waiting.pop_front();
  present = Progress{raster, 0, 0};
  token = {};
  const CancelToken mine = token;
  lock.unlock();
  changed();
  std::string failure;
  auto end = SmallCopies::End::Made;
  {
    const WaitScope scope(nullptr, mine);
    try {
      end = copies->make(raster, [this](double share) { report(share); });
    } catch (const RuntimeFailure& cause) {
      failure = cause.description();
    } catch (const std::exception& cause) {
      failure = cause.what();
    }
  }
  lock.lock();
  present.reset();
  const bool isGivenUp = mine.isCanceled() || end == SmallCopies::End::GivenUp;
  if (!isGivenUp) problem = failure;
  if (!isGivenUp && failure.empty()) told.erase(raster);
  if (isGivenUp && told.contains(raster)) waiting.push_front(raster);
  if (isEnding) return;
  lock.unlock();
  changed();
  lock.lock();
}

void CopyMaker::State::report(double share) {
  {
    const std::lock_guard lock(mutex);
    if (present) present->share = share;
  }
  changed();
}

CopyMaker::CopyMaker(std::shared_ptr<SmallCopies> copies, std::function<void()> changed)
    : state_(std::make_unique<State>(std::move(copies), std::move(changed))) {
  state_->thread = std::jthread([state = state_.get()] { state->work(); });
}

CopyMaker::~CopyMaker() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->isEnding = true;
    state_->token.cancel();
  }
  state_->wake.notify_all();
  state_->thread.join();
}

void CopyMaker::want(const std::filesystem::path& raster) {
  {
    const std::lock_guard lock(state_->mutex);
    if (!state_->told.insert(raster).second) return;
    state_->waiting.push_back(raster);
  }
  state_->wake.notify_all();
}

void CopyMaker::allow(bool isAllowed) {
  {
    const std::lock_guard lock(state_->mutex);
    state_->isAllowed = isAllowed;
    if (!isAllowed) state_->token.cancel();
  }
  state_->wake.notify_all();
}

void CopyMaker::giveUp() {
  const std::lock_guard lock(state_->mutex);
  for (const auto& raster : state_->waiting) state_->told.erase(raster);
  if (state_->present) state_->told.erase(state_->present->raster);
  state_->waiting.clear();
  state_->token.cancel();
}

std::optional<CopyMaker::Progress> CopyMaker::progress() const {
  const std::lock_guard lock(state_->mutex);
  auto present = state_->present;
  if (present) present->waiting = state_->waiting.size();
  return present;
}

std::size_t CopyMaker::wanted() const {
  const std::lock_guard lock(state_->mutex);
  return state_->waiting.size() + (state_->present ? 1 : 0);
}

std::string CopyMaker::problem() const {
  const std::lock_guard lock(state_->mutex);
  return state_->problem;
}

}  // namespace vlclientui::client
