#include "client/ranges/FileAhead.h"

#include <algorithm>
#include <utility>

namespace vlclientui::client {
namespace {

// Readers skip no more parts than that.
constexpr std::size_t mostSkipped = 16;

std::uint64_t bytesOf(const FileAhead::Part& part) {
  std::uint64_t bytes = 0;
  for (const FilePiece& piece : part) bytes += piece.size;
  return bytes;
}

bool meet(const FilePiece& piece, const FileStretch& stretch) {
  return piece.first < stretch.first + stretch.size && stretch.first < piece.first + piece.size;
}

}  // namespace

FileAhead::FileAhead(std::shared_ptr<RemoteFile> file, std::vector<Part> parts, std::uint64_t mostBytes)
    : file_(std::move(file)), parts_(std::move(parts)), mostBytes_(mostBytes) {}

FileAhead::~FileAhead() {
  {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
  }
  changed_.notify_all();
  token_.cancel();
  if (thread_.joinable()) thread_.join();
}

bool FileAhead::isRead(std::size_t part, const std::vector<FileStretch>& stretches) const {
  return std::ranges::any_of(parts_[part], [&](const FilePiece& piece) {
    return std::ranges::any_of(stretches, [&](const FileStretch& stretch) { return meet(piece, stretch); });
  });
}

void FileAhead::tellRead(const std::vector<FileStretch>& stretches) {
  const std::lock_guard lock(mutex_);
  if (isStopped_ || token_.isCanceled()) return;
  // Whoever goes on with an export begins anywhere.
  const bool isFirst = !thread_.joinable();
  const std::size_t end = isFirst ? parts_.size() : std::min(parts_.size(), reached_ + mostSkipped);
  bool isMet = false;
  for (std::size_t part = isFirst ? 0 : reached_; part < end; ++part) {
    if (!isRead(part, stretches)) continue;
    reached_ = part;
    isMet = true;
  }
  if (!isMet) return;
  next_ = std::max(next_, reached_ + 1);
  if (isFirst) thread_ = std::thread([this] { run(); });
  changed_.notify_all();
}

bool FileAhead::hasRoom() const {
  std::uint64_t bytes = 0;
  for (std::size_t part = reached_ + 1; part <= next_; ++part) bytes += bytesOf(parts_[part]);
  return bytes <= mostBytes_ || next_ == reached_ + 1;
}

void FileAhead::run() {
  const WaitScope scope(nullptr, token_);
  std::unique_lock lock(mutex_);
  while (!isStopped_ && next_ < parts_.size()) {
    if (!hasRoom()) {
      changed_.wait(lock);
      continue;
    }
    const std::size_t part = next_++;
    lock.unlock();
    const bool isFetched = fetch(parts_[part]);
    lock.lock();
    if (!isFetched) return;
  }
}

bool FileAhead::fetch(const Part& part) {
  std::vector<FileStretch> stretches;
  for (const FilePiece& piece : part) stretches.push_back({piece.first, piece.size, nullptr});
  return file_->prepare(stretches).empty();
}

}  // namespace vlclientui::client
