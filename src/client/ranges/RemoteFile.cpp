#include "client/ranges/RemoteFile.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>

#include "client/network/AddressProbe.h"
#include "client/ranges/FileAnswers.h"
#include "client/transport/Address.h"
#include "client/transport/HttpText.h"
#include "client/transport/Transport.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {

static_assert(RemoteFile::firstBytes == AddressProbe::bytesAsked);

namespace {

constexpr int wholeContent = 200;
constexpr int partialContent = 206;
constexpr int notModified = 304;
constexpr int notThatLong = 416;
constexpr std::size_t block = RemoteFile::blockBytes;
constexpr std::size_t requestsAtATime = 8;
// Blocks that nobody asked for between two that are wanted; a request of its own takes longer.
constexpr std::uint64_t mostBetween = 4;
constexpr std::uint64_t leastInARequest = 64;
constexpr std::uint64_t mostInARequest = 256;

std::atomic<std::uint64_t> allBytesRead = 0;

std::string newKey(const std::string& address) {
  static std::atomic<std::uint64_t> count = 0;
  return std::to_string(++count) + ' ' + address;
}

std::uint64_t lastBlockOf(const FileStretch& stretch) { return (stretch.first + stretch.size - 1) / block; }

// In order, each once.
std::vector<std::uint64_t> blocksOf(const std::vector<FileStretch>& stretches) {
  std::set<std::uint64_t> wanted;
  for (const FileStretch& stretch : stretches) {
    if (stretch.size == 0) continue;
    for (std::uint64_t i = stretch.first / block; i <= lastBlockOf(stretch); ++i) wanted.insert(i);
  }
  return {wanted.begin(), wanted.end()};
}

HttpRequest requestFor(const std::string& address, std::uint64_t first, std::uint64_t last) {
  HttpRequest request;
  request.address = address;
  request.range = ByteRange{first, last};
  request.patience = Patience::Pixels;
  return request;
}

}  // namespace

RemoteFile::RemoteFile(Transport* transport, TileStore* blocks, std::string address)
    : transport_(transport), blocks_(blocks), address_(std::move(address)), key_(newKey(address_)) {}

RemoteFile::Met RemoteFile::meet(Transport& transport, TileStore& blocks, const std::string& address) {
  return meet(std::shared_ptr<RemoteFile>(new RemoteFile(&transport, &blocks, address)), {}, nullptr);
}

RemoteFile::Met RemoteFile::answered(Transport& transport, TileStore& blocks, const std::string& address,
                                     HttpAnswer&& answer) {
  std::shared_ptr<RemoteFile> file(new RemoteFile(&transport, &blocks, address));
  std::string problem = file->takeFirst(std::move(answer));
  if (!problem.empty()) return Problem{Trouble::Other, std::move(problem)};
  return file;
}

std::shared_ptr<RemoteFile> RemoteFile::held(std::string content, const FileState& from) {
  std::shared_ptr<RemoteFile> file(new RemoteFile(nullptr, nullptr, {}));
  file->state_ = {content.size(), from.tag, from.date};
  file->whole_ = std::move(content);
  return file;
}

RemoteFile::Met RemoteFile::meetAgain(const std::shared_ptr<RemoteFile>& file) {
  std::vector<HttpHeader> conditions;
  if (!file->state_.tag.empty()) {
    conditions.push_back({"If-None-Match", file->state_.tag});
  } else if (!file->state_.date.empty()) {
    conditions.push_back({"If-Modified-Since", file->state_.date});
  }
  std::shared_ptr<RemoteFile> again(new RemoteFile(file->transport_, file->blocks_, file->address_));
  return meet(std::move(again), std::move(conditions), file);
}

RemoteFile::Met RemoteFile::meet(std::shared_ptr<RemoteFile> file, std::vector<HttpHeader> conditions,
                                 const std::shared_ptr<RemoteFile>& known) {
  HttpRequest request = requestFor(file->address_, 0, firstBytes - 1);
  request.headers = std::move(conditions);
  // A server that knows no parts answers with the whole file.
  request.mostBytes = mostWholeBytes;
  request.patience = Patience::Document;
  HttpResult result = file->transport_->fetch(request);
  if (const auto* failure = std::get_if<HttpFailure>(&result)) {
    const bool isWhole = failure->fault == HttpFault::TooLarge;
    if (isWhole) return Problem{Trouble::Other, tooLargeWithoutParts(file->address_)};
    return Problem{Trouble::Passing, failure->text};
  }
  auto& answer = std::get<HttpAnswer>(result);
  if (answer.status == notModified && known) return known;
  if (isNoFile(answer.status)) return Problem{Trouble::NoFile, refusalText(answer, file->address_)};
  const Trouble trouble = isPassing(answer.status) ? Trouble::Passing : Trouble::Other;
  const std::string problem = file->takeFirst(std::move(answer));
  if (!problem.empty()) return Problem{trouble, problem};
  // Some servers heed no conditions; what is as it was keeps its blocks.
  if (known && known->state_ == file->state_ && known->whole_.empty() == file->whole_.empty()) return known;
  return file;
}

std::string RemoteFile::takeFirst(HttpAnswer&& answer) {
  if (answer.status == notThatLong) return emptyFile(address_);
  if (answer.status == wholeContent) {
    state_ = {answer.body.size(), answer.header("ETag"), answer.header("Last-Modified")};
    whole_ = std::move(answer.body);
    return whole_.empty() ? emptyFile(address_) : std::string();
  }
  if (answer.status != partialContent) return refusalText(answer, address_);
  const auto size = wholeSizeOf(answer);
  const bool isSound = size && answer.body.size() == std::min<std::uint64_t>(*size, firstBytes);
  if (!isSound) return wrongPart(address_);
  state_ = {*size, answer.header("ETag"), answer.header("Last-Modified")};
  Blocks first;
  cut(0, answer.body, first);
  return {};
}

TileStore::Key RemoteFile::keyOf(std::uint64_t number) const {
  constexpr std::uint64_t inARow = std::uint64_t{1} << 20U;
  return {key_, 0, static_cast<int>(number % inARow), static_cast<int>(number / inARow)};
}

std::string RemoteFile::read(const std::vector<FileStretch>& stretches, std::uint64_t ahead) {
  tellRead(stretches);
  for (const FileStretch& stretch : stretches) allBytesRead += stretch.size;
  if (!whole_.empty()) {
    for (const FileStretch& stretch : stretches)
      std::memcpy(stretch.target, whole_.data() + stretch.first, stretch.size);
    return {};
  }
  Blocks blocks;
  const std::string problem = readBlocks(stretches, ahead, blocks);
  if (!problem.empty()) return problem;
  for (const FileStretch& stretch : stretches) {
    for (std::size_t done = 0; done < stretch.size;) {
      const std::uint64_t at = stretch.first + done;
      const std::size_t within = static_cast<std::size_t>(at % block);
      const std::size_t part = std::min(stretch.size - done, block - within);
      std::memcpy(stretch.target + done, blocks.at(at / block)->data() + within, part);
      done += part;
    }
  }
  return {};
}

std::uint64_t RemoteFile::bytesRead() { return allBytesRead; }

std::optional<double> RemoteFile::secondsOfRequest(std::uint64_t bytes) {
  if (transport_ == nullptr) return std::nullopt;
  const std::uint64_t size = std::min(bytes, state_.size);
  const std::uint64_t first = (state_.size - size) / 2;
  const HttpResult result = transport_->fetch(requestFor(address_, first, first + size - 1));
  const auto* answer = std::get_if<HttpAnswer>(&result);
  return answer == nullptr ? std::nullopt : std::optional(answer->seconds);
}

std::string RemoteFile::prepare(const std::vector<FileStretch>& stretches) {
  Blocks blocks;
  return whole_.empty() ? readBlocks(stretches, 0, blocks) : std::string();
}

void RemoteFile::setReads(std::weak_ptr<FileReads> reads) {
  const std::lock_guard lock(mutex_);
  reads_ = std::move(reads);
}

void RemoteFile::tellRead(const std::vector<FileStretch>& stretches) {
  std::shared_ptr<FileReads> reads;
  {
    const std::lock_guard lock(mutex_);
    reads = reads_.lock();
  }
  if (reads) reads->tellRead(stretches);
}

// What another reader fetches already is waited for; what it cannot get is fetched once more.
std::string RemoteFile::readBlocks(const std::vector<FileStretch>& stretches, std::uint64_t ahead,
                                   Blocks& blocks) {
  std::vector<std::uint64_t> missing = findKept(blocksOf(stretches), blocks);
  while (!missing.empty()) {
    if (hasChanged_) return changed();
    const Claim own(*this, missing);
    if (own.blocks().empty()) {
      if (!awaitOthers(missing)) return givenUpFile(address_);
    } else if (std::string problem = fetch(runsOf(own.blocks(), ahead), blocks); !problem.empty()) {
      return problem;
    }
    missing = findKept(missing, blocks);
  }
  return {};
}

std::vector<std::uint64_t> RemoteFile::findKept(const std::vector<std::uint64_t>& wanted, Blocks& kept) {
  std::vector<std::uint64_t> missing;
  for (const std::uint64_t number : wanted) {
    if (kept.contains(number)) continue;
    if (Block bytes = blocks_->find(keyOf(number))) {
      kept.emplace(number, std::move(bytes));
    } else {
      missing.push_back(number);
    }
  }
  return missing;
}

RemoteFile::Claim::Claim(RemoteFile& file, const std::vector<std::uint64_t>& missing) : file_(file) {
  const std::lock_guard lock(file_.mutex_);
  std::ranges::copy_if(missing, std::back_inserter(blocks_),
                       [this](std::uint64_t number) { return file_.flying_.insert(number).second; });
}

RemoteFile::Claim::~Claim() {
  {
    const std::lock_guard lock(file_.mutex_);
    for (const std::uint64_t number : blocks_) file_.flying_.erase(number);
  }
  file_.landed_.notify_all();
}

bool RemoteFile::awaitOthers(const std::vector<std::uint64_t>& missing) {
  Waiting waiting([this] {
    const std::lock_guard lock(mutex_);
    landed_.notify_all();
  });
  const auto areThere = [&] {
    return std::ranges::none_of(missing, [this](std::uint64_t number) { return flying_.contains(number); });
  };
  const auto isOver = [&] { return waiting.isGivenUp() || areThere(); };
  std::unique_lock lock(mutex_);
  while (!isOver()) {
    const auto question = waiting.nextQuestion();
    if (!question) {
      landed_.wait(lock, isOver);
    } else if (!landed_.wait_until(lock, *question, isOver)) {
      lock.unlock();
      waiting.ask({parsedAddress(address_)->server.shown(), 0, 1, {}});
      lock.lock();
    }
  }
  return !waiting.isGivenUp();
}

// Neighbors in one request; long runs in several, so that they come side by side.
std::vector<RemoteFile::Run> RemoteFile::runsOf(const std::vector<std::uint64_t>& missing,
                                                std::uint64_t ahead) const {
  std::vector<Run> runs;
  for (const std::uint64_t number : missing) {
    if (!runs.empty() && number - runs.back().second <= mostBetween + 1) {
      runs.back().second = number;
    } else {
      runs.emplace_back(number, number);
    }
  }
  const std::uint64_t lastOfFile = (state_.size - 1) / block;
  runs.back().second = std::min(runs.back().second + ahead / block, lastOfFile);
  std::uint64_t count = 0;
  for (const Run& run : runs) count += run.second - run.first + 1;
  const std::uint64_t share = std::clamp(count / requestsAtATime + 1, leastInARequest, mostInARequest);
  std::vector<Run> pieces;
  for (const Run& run : runs) {
    for (std::uint64_t first = run.first; first <= run.second; first += share)
      pieces.emplace_back(first, std::min(first + share - 1, run.second));
  }
  return pieces;
}

HttpRequest RemoteFile::requestOf(const Run& run) const {
  const std::uint64_t end = std::min((run.second + 1) * block, state_.size);
  return requestFor(address_, run.first * block, end - 1);
}

std::string RemoteFile::fetch(const std::vector<Run>& runs, Blocks& blocks) {
  std::vector<HttpRequest> requests;
  for (const Run& run : runs) requests.push_back(requestOf(run));
  std::string problem;
  transport_->fetchEach(requests, requestsAtATime, [&](std::size_t index, HttpResult&& result) {
    problem = take(runs[index], result, blocks);
    return problem.empty();
  });
  return problem;
}

std::string RemoteFile::take(const Run& run, const HttpResult& result, Blocks& blocks) {
  if (const auto* failure = std::get_if<HttpFailure>(&result)) {
    // More than the part that was asked for: the server has stopped to send parts.
    return failure->fault == HttpFault::TooLarge ? wrongPart(address_) : failure->text;
  }
  const auto& answer = std::get<HttpAnswer>(result);
  if (answer.status == notThatLong) return changed();
  if (answer.status != partialContent) return refusalText(answer, address_);
  const auto size = wholeSizeOf(answer);
  const std::uint64_t end = std::min((run.second + 1) * block, state_.size);
  if (!size) return wrongPart(address_);
  if (FileState{*size, answer.header("ETag"), answer.header("Last-Modified")} != state_) return changed();
  if (answer.body.size() != end - run.first * block) return wrongPart(address_);
  cut(run.first, answer.body, blocks);
  return {};
}

void RemoteFile::cut(std::uint64_t firstBlock, std::string_view bytes, Blocks& blocks) {
  for (std::uint64_t number = firstBlock; !bytes.empty(); ++number) {
    const std::string_view part = bytes.substr(0, block);
    const auto* const begin = reinterpret_cast<const std::byte*>(part.data());
    auto kept = std::make_shared<std::vector<std::byte>>(begin, begin + part.size());
    blocks_->keep(keyOf(number), kept);
    blocks.emplace(number, std::move(kept));
    bytes.remove_prefix(part.size());
  }
}

// Pixels of two states would make a picture that never was.
std::string RemoteFile::changed() {
  hasChanged_ = true;
  return changedFile(address_);
}

}  // namespace vlclientui::client
