#include "client/network/FetchAhead.h"

#include <algorithm>
#include <utility>

namespace vlclientui::client {
namespace {

// Requests for all groups of a large coverage at once would take memory for nothing.
constexpr std::size_t groupsAtATime = 256;

bool meet(const TileRange& one, const TileRange& other) {
  return one.left <= other.right && other.left <= one.right && one.top <= other.bottom &&
         other.top <= one.bottom;
}

}  // namespace

FetchAhead::FetchAhead(std::vector<TileRange> groups, std::int64_t mostTiles, Fetch fetch, CancelToken token)
    : mostTiles_(mostTiles), fetch_(std::move(fetch)), token_(std::move(token)) {
  for (const TileRange& group : groups) groups_.push_back({group, group.columns() * group.rows()});
  thread_ = std::thread([this] { run(); });
}

FetchAhead::~FetchAhead() { stop(); }

void FetchAhead::stop() {
  {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
  }
  changed_.notify_all();
  token_.cancel();
  if (thread_.joinable()) thread_.join();
}

void FetchAhead::run() {
  const WaitScope scope(nullptr, token_);
  std::string failure;
  for (std::size_t begin = 0; begin < groups_.size() && failure.empty(); begin += groupsAtATime) {
    std::vector<TileRange> batch;
    for (std::size_t i = begin; i < std::min(begin + groupsAtATime, groups_.size()); ++i)
      batch.push_back(groups_[i].range);
    failure = fetch_(batch, [this](const TileRange& fetched) { return tell(fetched); });
    const std::lock_guard lock(mutex_);
    if (isStopped_) break;
  }
  {
    const std::lock_guard lock(mutex_);
    failure_ = std::move(failure);
    isOver_ = true;
  }
  changed_.notify_all();
}

// While a reader waits nothing may be held up: what it waits for can stand behind any other answer.
bool FetchAhead::tell(const TileRange& fetched) {
  std::unique_lock lock(mutex_);
  const auto holder = std::ranges::find_if(
      groups_, [&](const Group& group) { return group.range.holds(fetched.left, fetched.top); });
  if (holder != groups_.end()) holder->missing -= fetched.columns() * fetched.rows();
  unread_.push_back(fetched);
  changed_.notify_all();
  changed_.wait(lock, [this] { return isStopped_ || waiting_ > 0 || hasRoom(); });
  return !isStopped_;
}

bool FetchAhead::hasRoom() const {
  std::int64_t tiles = 0;
  for (const TileRange& range : unread_) tiles += range.columns() * range.rows();
  return tiles <= mostTiles_;
}

bool FetchAhead::isThere(const TileRange& range) const {
  return std::ranges::none_of(
      groups_, [&](const Group& group) { return group.missing > 0 && meet(group.range, range); });
}

std::string FetchAhead::await(const TileRange& range) {
  const Waiting waiting([this] {
    const std::lock_guard lock(mutex_);
    changed_.notify_all();
  });
  std::unique_lock lock(mutex_);
  std::erase_if(unread_, [&](const TileRange& fetched) { return fetched.bottom < range.top; });
  ++waiting_;
  changed_.notify_all();
  changed_.wait(lock, [&] { return isOver_ || isThere(range) || waiting.isGivenUp(); });
  --waiting_;
  if (isThere(range)) return {};
  return failure_.empty() ? "the pixels were given up" : failure_;
}

}  // namespace vlclientui::client
