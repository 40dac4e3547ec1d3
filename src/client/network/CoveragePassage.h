#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "client/network/CoverageRequests.h"
#include "client/network/FetchAhead.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {

/// What an export tells of a coverage that it is going to read through, and learns of it meanwhile. It holds
/// for the threads that work for the export alone: a map that shows the coverage meanwhile reads by itself.
/// Any thread may tell and ask.
class CoveragePassage {
 public:
  /// A sample is a small part of what will be read, so that nothing is fetched ahead.
  enum class Kind { Through, Sample };

  /// @param window in pixels of the coverage at its own size. @param readers who works under a scope of this
  /// token reads for the passage.
  CoveragePassage(const PixelWindow& window, Kind kind, CancelToken readers)
      : window_(window), kind_(kind), readers_(std::move(readers)) {}

  [[nodiscard]] const PixelWindow& window() const { return window_; }
  [[nodiscard]] Kind kind() const { return kind_; }
  [[nodiscard]] const CancelToken& readers() const { return readers_; }
  /// The reduction that was read last, 0 for none; -1 before anything was read.
  [[nodiscard]] int level() const { return level_; }
  /// Requests for pixels that were made so far, and the bytes of their answers.
  [[nodiscard]] std::uint64_t requests() const { return requests_; }
  [[nodiscard]] std::uint64_t bytes() const { return bytes_; }

  void tellLevel(int level) { level_ = level; }
  void countRequest(std::uint64_t bytes) {
    ++requests_;
    bytes_ += bytes;
  }

  /// Nobody wants the pixels any more: who waits for them is told so, and nothing is asked for again.
  void giveUp() { token_.cancel(); }
  [[nodiscard]] const CancelToken& token() const { return token_; }
  /// What fetches ahead of the readers of a level, made by the first of them; null once the passage has
  /// ended.
  using Make = std::function<std::unique_ptr<FetchAhead>()>;
  [[nodiscard]] std::shared_ptr<FetchAhead> ahead(int level, const Make& make);
  /// Gives up, and waits until nothing is fetched ahead any more. Not to be called by what fetches.
  void end();

 private:
  PixelWindow window_;
  Kind kind_;
  CancelToken readers_;
  CancelToken token_;
  std::atomic<int> level_ = -1;
  std::atomic<std::uint64_t> requests_ = 0;
  std::atomic<std::uint64_t> bytes_ = 0;
  std::mutex mutex_;
  std::map<int, std::shared_ptr<FetchAhead>> ahead_;  ///< by level
  bool isEnded_ = false;
};

/// One name for a coverage of a server.
[[nodiscard]] std::string coverageName(const std::string& address, const std::string& id);

/// The passages that are underway in a process, by coverage. Any thread may ask.
class CoveragePassages {
 public:
  using Passage = std::shared_ptr<CoveragePassage>;

  /// Lasts for as long as the caller holds it, and ends then; of two for the same readers through one
  /// coverage the later one counts.
  /// @param readers a token of which a scope is around all that reads for the passage.
  [[nodiscard]] Passage begin(const std::string& coverage, const PixelWindow& window,
                              CoveragePassage::Kind kind, const CancelToken& readers);
  /// The one for which this thread reads; null where there is none.
  [[nodiscard]] Passage find(const std::string& coverage) const;

 private:
  mutable std::mutex mutex_;
  std::multimap<std::string, std::weak_ptr<CoveragePassage>> passages_;
};

}  // namespace vlclientui::client
