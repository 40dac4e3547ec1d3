#include "client/RasterCache.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

#include "client/GeographicBounds.h"

namespace vlclientui::client {
namespace {

// A thread costs more than a few headers.
constexpr std::size_t kFilesWorthAThread = 8;

std::size_t workersFor(std::size_t files) {
  const std::size_t atOnce = std::max(1U, std::thread::hardware_concurrency());
  return std::clamp<std::size_t>(files / kFilesWorthAThread, 1, atOnce);
}

void forEachIndex(std::size_t count, const auto& work) {
  std::atomic<std::size_t> next = 0;
  const auto drain = [&] {
    GeographicBounds geographic;
    for (std::size_t i = next++; i < count; i = next++) work(i, geographic);
  };
  std::vector<std::jthread> helpers;
  for (std::size_t i = 1; i < workersFor(count); ++i) helpers.emplace_back(drain);
  drain();
}

}  // namespace

std::vector<RasterResult> RasterCache::read(const std::vector<std::filesystem::path>& files) {
  std::vector<RasterResult> results(files.size());
  forEachIndex(files.size(), [&](std::size_t i, GeographicBounds& geographic) {
    results[i] = readOne(files[i], geographic);
  });
  return results;
}

RasterResult RasterCache::readOne(const std::filesystem::path& file, GeographicBounds& geographic) {
  std::error_code error;
  const auto time = std::filesystem::last_write_time(file, error);
  const auto size = error ? 0 : std::filesystem::file_size(file, error);
  if (error) return RasterProblem{true, error.message()};
  {
    const std::lock_guard lock(mutex_);
    const auto found = known_.find(file.string());
    if (found != known_.end() && found->second.time == time && found->second.size == size) {
      return found->second.result;
    }
  }
  RasterResult result = readRasterFacts(file, geographic);
  const std::lock_guard lock(mutex_);
  known_[file.string()] = {time, size, result};
  return result;
}

}  // namespace vlclientui::client
