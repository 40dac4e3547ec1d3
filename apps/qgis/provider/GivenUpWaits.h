#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>

namespace vlclientui::qgis {

/// What a person has just given up waiting for, so that the same is not asked again in the same breath. All
/// services of its server count as given up with it as long as they follow each other closely, as the layers
/// of a project do. Any thread.
class GivenUpWaits {
 public:
  using Clock = std::chrono::steady_clock;

  void note(const std::string& reference, Clock::time_point now = Clock::now());
  [[nodiscard]] bool has(const std::string& reference, Clock::time_point now = Clock::now());

 private:
  std::mutex mutex_;
  std::map<std::string, Clock::time_point> services_;
  std::map<std::string, Clock::time_point> servers_;  ///< when the last one of its services was given up
};

}  // namespace vlclientui::qgis
