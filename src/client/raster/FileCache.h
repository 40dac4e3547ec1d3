#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "client/raster/ContainedRaster.h"
#include "client/reach/GuardedDrivers.h"
#include "client/waiting/SideBySide.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {

/// Remembers what was read from each file, as long as the file's time and size stay as they were; of a raster
/// in a container those of the container. What the raster library opens by a virtual name of its own lies in
/// no file of this machine and is read each time. Safe on any thread.
template <class Result>
class FileCache {
 public:
  /// Results in the order of the files. Reads unknown files on as many threads as the machine has cores,
  /// those of servers on more, and returns when all are read.
  /// @param makeReader makes a reader per thread: `reader(file)` reads; `reader.missing(error)` gives the
  /// result for a missing file, and for all that were not read when the work of this thread was given up; it
  /// is not remembered. Neither may throw.
  template <class MakeReader>
  [[nodiscard]] std::vector<Result> read(const std::vector<std::filesystem::path>& files,
                                         MakeReader makeReader) {
    std::vector<Result> results(files.size());
    doSideBySide(files.size(), workersFor(files), [&] {
      return [&, reader = makeReader()](std::size_t i) mutable { results[i] = readOne(files[i], reader); };
    });
    return results;
  }

 private:
  struct Known {
    std::filesystem::file_time_type time;
    std::uintmax_t size = 0;
    Result result;
  };

  static bool isVirtual(const std::filesystem::path& name) { return name.string().starts_with("/vsi"); }

  // A thread costs more than a few headers on a disk, and less than waiting for one header.
  static std::size_t workersFor(const std::vector<std::filesystem::path>& files) {
    constexpr std::size_t filesWorthAThread = 8;
    const std::size_t atOnce = std::max(1U, std::thread::hardware_concurrency());
    const auto elsewhere = static_cast<std::size_t>(std::ranges::count_if(files, isVirtual));
    return std::max(std::clamp<std::size_t>(files.size() / filesWorthAThread, 1, atOnce),
                    std::min(elsewhere, waitersAtATime));
  }

  template <class Reader>
  Result readOne(const std::filesystem::path& file, Reader& reader) {
    std::error_code error;
    const std::filesystem::path onDisk = fileOnDisk(file);
    const auto time = std::filesystem::last_write_time(onDisk, error);
    const auto size = error ? 0 : std::filesystem::file_size(onDisk, error);
    if (error) return isVirtual(file) ? reader(file) : reader.missing(error);
    {
      const std::lock_guard lock(mutex_);
      const auto found = known_.find(file.string());
      if (found != known_.end() && found->second.time == time && found->second.size == size) {
        return found->second.result;
      }
    }
    if (WaitScope::isGivenUp()) return reader.missing(std::make_error_code(std::errc::operation_canceled));
    const std::size_t refusals = refusalsOfThread();
    Result result = reader(file);
    // Who gave up was told of a failure that the file does not have.
    if (WaitScope::isGivenUp()) return result;
    // Other places may be opened before the file changes.
    if (refusalsOfThread() != refusals) return result;
    const std::lock_guard lock(mutex_);
    known_[file.string()] = {time, size, result};
    return result;
  }

  std::mutex mutex_;
  std::map<std::string, Known> known_;
};

}  // namespace vlclientui::client
