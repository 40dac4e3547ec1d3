#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "client/network/TileStore.h"
#include "client/transport/Http.h"

namespace vlclientui::client {

class Transport;

/// By which a server tells one state of a file from the next; empty for what it does not tell.
struct FileState {
  std::uint64_t size = 0;
  std::string tag;   ///< ETag
  std::string date;  ///< Last-Modified, as it is written

  bool operator==(const FileState&) const = default;
};

/// A stretch of a file and where its bytes go.
struct FileStretch {
  std::uint64_t first = 0;
  std::size_t size = 0;
  std::byte* target = nullptr;
};

/// Who wants to know where a file is read. Told on the thread that reads; must not block.
class FileReads {
 public:
  virtual ~FileReads() = default;
  virtual void tellRead(const std::vector<FileStretch>& stretches) = 0;
};

/// A file of a web server in the state in which it was first met, read in blocks that are kept. Any thread
/// may read.
class RemoteFile {
 public:
  static constexpr std::size_t blockBytes = std::size_t{16} << 10U;
  /// Header and directories of most images.
  static constexpr std::size_t firstBytes = 4 * blockBytes;
  /// A server that knows no parts of files is asked for whole ones up to this size.
  static constexpr std::size_t mostWholeBytes = std::size_t{32} << 20U;

  /// Whether there is no such file, or its server cannot be had just now.
  enum class Trouble { NoFile, Passing, Other };
  struct Problem {
    Trouble trouble = Trouble::Other;
    std::string text;  ///< for a person; holds no secret
  };
  using Met = std::variant<std::shared_ptr<RemoteFile>, Problem>;

  /// Fetches the first blocks; from the answer it is known how large the file is.
  /// @param blocks,transport must outlive the file.
  [[nodiscard]] static Met meet(Transport& transport, TileStore& blocks, const std::string& address);

  /// The same, of an answer to a request for the first blocks that somebody made just now.
  [[nodiscard]] static Met answered(Transport& transport, TileStore& blocks, const std::string& address,
                                    HttpAnswer&& answer);

  /// Content that is in memory already.
  /// @param from tells the file that it was made of, by its tag and date. @pre it is not empty.
  [[nodiscard]] static std::shared_ptr<RemoteFile> held(std::string content, const FileState& from = {});

  /// Asks whether the file is still as it was. @returns this file or, of a changed one, another object.
  [[nodiscard]] static Met meetAgain(const std::shared_ptr<RemoteFile>& file);

  /// Fills all stretches with as few requests as it takes, several at a time.
  /// @param ahead that many bytes behind the last stretch come along where something has to be fetched.
  /// @pre the stretches lie within the file.
  /// @returns why it broke off, in which case no stretch is of use; empty when all is well.
  [[nodiscard]] std::string read(const std::vector<FileStretch>& stretches, std::uint64_t ahead = 0);

  /// Bytes that were read of all files of this process so far, fetched for it or kept before.
  [[nodiscard]] static std::uint64_t bytesRead();
  /// Fetches a few bytes from the middle, whatever is kept. @returns how long that took, in seconds; nothing
  /// where it failed.
  [[nodiscard]] std::optional<double> secondsOfRequest(std::uint64_t bytes);

  /// The same as read for stretches that will be wanted soon: their targets stay as they are, and nobody is
  /// told.
  [[nodiscard]] std::string prepare(const std::vector<FileStretch>& stretches);
  /// The one who wants to know of reads from now on; the last one counts.
  void setReads(std::weak_ptr<FileReads> reads);

  [[nodiscard]] std::uint64_t size() const { return state_.size; }
  [[nodiscard]] const FileState& state() const { return state_; }
  /// Bytes that stay in memory as long as the file.
  [[nodiscard]] std::size_t heldBytes() const { return whole_.size(); }
  /// Another state was met: nothing is fetched any more.
  [[nodiscard]] bool hasChanged() const { return hasChanged_; }

 private:
  using Block = TileStore::Bytes;
  using Blocks = std::map<std::uint64_t, Block>;
  /// First and last block.
  using Run = std::pair<std::uint64_t, std::uint64_t>;

  /// The blocks among those that nobody else fetches; nobody else does as long as this lives.
  class Claim {
   public:
    Claim(RemoteFile& file, const std::vector<std::uint64_t>& missing);
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;
    ~Claim();

    [[nodiscard]] const std::vector<std::uint64_t>& blocks() const { return blocks_; }

   private:
    RemoteFile& file_;
    std::vector<std::uint64_t> blocks_;
  };

  RemoteFile(Transport* transport, TileStore* blocks, std::string address);

  [[nodiscard]] static Met meet(std::shared_ptr<RemoteFile> file, std::vector<HttpHeader> conditions,
                                const std::shared_ptr<RemoteFile>& known);
  [[nodiscard]] std::string takeFirst(HttpAnswer&& answer);
  [[nodiscard]] TileStore::Key keyOf(std::uint64_t block) const;
  [[nodiscard]] std::string readBlocks(const std::vector<FileStretch>& stretches, std::uint64_t ahead,
                                       Blocks& blocks);
  [[nodiscard]] std::vector<std::uint64_t> findKept(const std::vector<std::uint64_t>& wanted, Blocks& kept);
  /// @returns false where the wait was given up.
  [[nodiscard]] bool awaitOthers(const std::vector<std::uint64_t>& missing);
  void tellRead(const std::vector<FileStretch>& stretches);
  [[nodiscard]] std::vector<Run> runsOf(const std::vector<std::uint64_t>& missing, std::uint64_t ahead) const;
  [[nodiscard]] std::string fetch(const std::vector<Run>& runs, Blocks& blocks);
  [[nodiscard]] HttpRequest requestOf(const Run& run) const;
  [[nodiscard]] std::string take(const Run& run, const HttpResult& result, Blocks& blocks);
  void cut(std::uint64_t firstBlock, std::string_view bytes, Blocks& blocks);
  [[nodiscard]] std::string changed();

  Transport* transport_;  ///< null for what is held; so too below
  TileStore* blocks_;
  const std::string address_;
  std::string key_;  ///< of this object's blocks
  FileState state_;
  std::string whole_;  ///< of a server that sends no parts
  std::atomic<bool> hasChanged_ = false;
  std::mutex mutex_;
  std::condition_variable landed_;
  std::set<std::uint64_t> flying_;  ///< blocks that somebody is fetching
  std::weak_ptr<FileReads> reads_;
};

}  // namespace vlclientui::client
