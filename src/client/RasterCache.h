#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "client/RasterFacts.h"

namespace vlclientui::client {

/// Remembers what was read from each file, as long as the file's time and size stay as they were.
/// Safe on any thread.
class RasterCache {
 public:
  /// Results in the order of the files. What is not known yet is read by as many threads as the machine
  /// runs at a time; the call returns when all is read.
  [[nodiscard]] std::vector<RasterResult> read(const std::vector<std::filesystem::path>& files);

 private:
  struct Known {
    std::filesystem::file_time_type time;
    std::uintmax_t size = 0;
    RasterResult result;
  };

  [[nodiscard]] RasterResult readOne(const std::filesystem::path& file, GeographicBounds& geographic);

  std::mutex mutex_;
  std::map<std::string, Known> known_;
};

}  // namespace vlclientui::client
