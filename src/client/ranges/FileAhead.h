#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "client/ranges/RemoteFile.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {

/// A stretch of a file, first byte and number.
struct FilePiece {
  std::uint64_t first = 0;
  std::size_t size = 0;
};

/// Fetches what somebody is going to read of a file, part by part and ahead of the reading, on a thread of
/// its own. It begins behind the part that is read first, and ends without a word where something goes wrong:
/// the reader meets the same and tells it.
class FileAhead final : public FileReads {
 public:
  using Part = std::vector<FilePiece>;

  /// @param parts in the order in which they are read. @param mostBytes to be there and not read yet.
  FileAhead(std::shared_ptr<RemoteFile> file, std::vector<Part> parts, std::uint64_t mostBytes);
  FileAhead(const FileAhead&) = delete;
  FileAhead& operator=(const FileAhead&) = delete;
  /// Ends the fetching; what was asked for is given up.
  ~FileAhead() override;

  void tellRead(const std::vector<FileStretch>& stretches) override;
  /// What is underway ends as soon as it can.
  void giveUp() { token_.cancel(); }

 private:
  [[nodiscard]] bool isRead(std::size_t part, const std::vector<FileStretch>& stretches) const;
  [[nodiscard]] bool hasRoom() const;
  void run();
  [[nodiscard]] bool fetch(const Part& part);

  std::shared_ptr<RemoteFile> file_;
  std::vector<Part> parts_;
  std::uint64_t mostBytes_;
  CancelToken token_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t reached_ = 0;  ///< by the reader
  std::size_t next_ = 0;     ///< to be fetched
  bool isStopped_ = false;
  std::thread thread_;  ///< from the first read on
};

}  // namespace vlclientui::client
