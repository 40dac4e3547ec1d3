#include "client/output/KeptPixels.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "client/output/PartialFolder.h"
#include "client/raster/NameMark.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view folderEnd = ".unfinished";
constexpr auto journalName = "journal";
constexpr auto pixelsName = "pixels";
constexpr std::uint64_t mostUnsettledBytes = 8U << 20U;
constexpr auto settlingPause = std::chrono::milliseconds(500);

// A file whose lock ends with the process, however that ends; null where another process has it.
std::unique_ptr<GrowingFile> lockedFile(const fs::path& path, int flags) {
  const int descriptor = open(path.c_str(), flags | O_RDWR | O_CLOEXEC, 0600);
  if (descriptor < 0) return nullptr;
  auto file = std::make_unique<GrowingFile>(descriptor);
  struct stat facts {};
  const bool isLocked = flock(descriptor, LOCK_EX | LOCK_NB) == 0 && fstat(descriptor, &facts) == 0;
  if (!isLocked) return nullptr;
  // Another process may have taken the folder away in between.
  if (facts.st_nlink == 0) errno = ENOENT;
  return facts.st_nlink == 0 ? nullptr : std::move(file);
}

// Whoever looks at what is kept has the lock for a moment.
std::unique_ptr<GrowingFile> lockedInAMoment(const fs::path& path) {
  constexpr int tries = 20;
  constexpr auto pause = std::chrono::milliseconds(10);
  auto file = lockedFile(path, O_CREAT);
  for (int i = 1; i < tries && !file && errno == EWOULDBLOCK; ++i) {
    std::this_thread::sleep_for(pause);
    file = lockedFile(path, O_CREAT);
  }
  return file;
}

std::string wholeText(const GrowingFile& file) {
  std::string text(static_cast<std::size_t>(file.size()), '\0');
  text.resize(file.read(0, text.data(), text.size()));
  return text;
}

void syncFolder(const fs::path& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

std::uint64_t endOf(const std::vector<KeptBlock>& blocks) {
  std::uint64_t end = 0;
  for (const KeptBlock& block : blocks) end = std::max(end, block.offset + block.bytes);
  return end;
}

std::string shown(const fs::path& path) { return utf8FromAny(path.string()); }

}  // namespace

// A name may be as long as the system allows already, and stand without its folder.
fs::path keptFolder(const fs::path& target) {
  constexpr std::size_t longest = 200;
  constexpr std::size_t markDigits = 16;
  std::string name = target.filename().string();
  if (name.size() > longest) name = nameMark(name, markDigits);
  std::error_code error;
  const fs::path whole = fs::absolute(target, error);
  return (error ? target : whole).parent_path() / (name + std::string(folderEnd));
}

std::optional<KeptExport> keptExport(const fs::path& target) {
  const fs::path journal = keptFolder(target) / journalName;
  const auto file = lockedFile(journal, 0);
  if (!file && errno == EWOULDBLOCK) return KeptExport{{}, 0, true};
  if (!file) return std::nullopt;
  const JournalContent content = readJournal(wholeText(*file));
  if (!content.isBegun || content.blocks.empty()) return std::nullopt;
  return KeptExport{content.identity, endOf(content.blocks), false};
}

bool discardKept(const fs::path& target) {
  const fs::path folder = keptFolder(target);
  const auto file = lockedFile(folder / journalName, 0);
  if (!file && errno == EWOULDBLOCK) return false;
  std::error_code error;
  if (file) fs::remove_all(folder, error);
  return !error;
}

KeptPixels::KeptPixels(const fs::path& target, const ExportIdentity& identity) : folder_(keptFolder(target)) {
  open(identity);
  settling_ = std::thread([this] { settleNowAndThen(); });
}

KeptPixels::~KeptPixels() {
  stopSettling();
  const std::lock_guard lock(mutex_);
  if (!journal_) return;
  settle();
  if (blocks_.empty()) removeFolder();
}

void KeptPixels::open(const ExportIdentity& identity) {
  std::error_code error;
  fs::create_directory(folder_, error);
  if (error) failAt("What is read cannot be kept in", folder_, error.value());
  journal_ = lockedInAMoment(folder_ / journalName);
  if (!journal_ && errno == EWOULDBLOCK) {
    throw RuntimeFailure("Another export to this file is going on; it uses " + shown(folder_));
  }
  if (!journal_) failAt("What is read cannot be kept in", folder_, errno);
  const int descriptor = ::open((folder_ / pixelsName).c_str(), O_CREAT | O_RDWR | O_CLOEXEC, 0600);
  if (descriptor < 0) failAt("What is read cannot be kept in", folder_, errno);
  pixels_ = std::make_unique<GrowingFile>(descriptor);
  takeUp(identity);
}

// What stands behind the last whole line was never told to be on the disk.
void KeptPixels::takeUp(const ExportIdentity& identity) {
  const JournalContent content = readJournal(wholeText(*journal_));
  if (content.isBegun && content.identity.request != identity.request) {
    throw RuntimeFailure("What is kept in " + shown(folder_) +
                         " belongs to another request; it cannot go on, only begin anew");
  }
  if (content.isBegun && content.identity.source != identity.source) {
    throw RuntimeFailure(
        "The source has changed since the export broke off; it cannot go on, only begin anew");
  }
  for (const KeptBlock& block : content.blocks) blocks_[block.step] = block;
  pixelBytes_ = settledBytes_ = endOf(content.blocks);
  journalBytes_ = content.wholeBytes;
  bool isReady = journal_->resize(journalBytes_) && pixels_->resize(pixelBytes_);
  if (isReady && !content.isBegun) {
    const std::string line = journalLine(identity);
    isReady = journal_->write(0, line.data(), line.size()) == line.size() && journal_->sync();
    journalBytes_ = line.size();
    syncFolder(folder_);
    syncFolder(folder_.parent_path());
  }
  if (!isReady) throw RuntimeFailure(failure());
}

bool KeptPixels::find(const std::string& step, std::span<std::byte> pixels) {
  const std::lock_guard lock(mutex_);
  const auto found = blocks_.find(step);
  if (found == blocks_.end() || found->second.bytes != pixels.size()) return false;
  const bool isRead = pixels_->read(found->second.offset, pixels.data(), pixels.size()) == pixels.size();
  return isRead && checkOf(pixels) == found->second.check;
}

bool KeptPixels::keep(const std::string& step, std::span<const std::byte> pixels) {
  const KeptBlock block{step, 0, pixels.size(), checkOf(pixels)};
  const std::lock_guard lock(mutex_);
  if (isBroken_ || pixels_->write(pixelBytes_, pixels.data(), pixels.size()) != pixels.size()) return false;
  waiting_.push_back(block);
  waiting_.back().offset = pixelBytes_;
  pixelBytes_ += pixels.size();
  return pixelBytes_ - settledBytes_ < mostUnsettledBytes || settle();
}

// Whoever waits for a server has the disk know what came so far.
void KeptPixels::settleNowAndThen() {
  std::unique_lock lock(mutex_);
  while (!isEnding_) {
    ending_.wait_for(lock, settlingPause);
    settle();
  }
}

void KeptPixels::stopSettling() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
  }
  ending_.notify_all();
  if (settling_.joinable()) settling_.join();
}

// Pixels first, then the lines that tell of them.
bool KeptPixels::settle() {
  if (waiting_.empty()) return true;
  std::string lines;
  for (const KeptBlock& block : waiting_) lines += journalLine(block);
  const bool isDone = pixels_->sync() &&
                      journal_->write(journalBytes_, lines.data(), lines.size()) == lines.size() &&
                      journal_->sync();
  isBroken_ = isBroken_ || !isDone;
  if (!isDone) return false;
  journalBytes_ += lines.size();
  settledBytes_ = pixelBytes_;
  for (KeptBlock& block : waiting_) blocks_[block.step] = std::move(block);
  waiting_.clear();
  return true;
}

std::uint64_t KeptPixels::bytes() const {
  const std::lock_guard lock(mutex_);
  return pixelBytes_;
}

std::string KeptPixels::failure() const {
  const int reason = pixels_->failureNumber() != 0 ? pixels_->failureNumber() : journal_->failureNumber();
  if (reason == 0) return {};
  return "What is read cannot be kept in " + shown(folder_) + ": " + reasonText(reason);
}

void KeptPixels::discard() {
  stopSettling();
  const std::lock_guard lock(mutex_);
  removeFolder();
  pixels_.reset();
  journal_.reset();
}

void KeptPixels::removeFolder() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

}  // namespace vlclientui::client
