#pragma once

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// Steps of work that run as programs of their own, so that time and memory are those of each alone.
namespace vlclientui::benchmarks {

struct Cost {
  double seconds = 0;
  double processorSeconds = 0;
  double megabytes = 0;  ///< at most
};

inline double secondsOf(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

/// Runs this program once more with these arguments. @returns nothing where it failed.
inline std::optional<Cost> costOf(std::vector<std::string> arguments) {
  std::vector<char*> pointers;
  arguments.insert(arguments.begin(), "bench");
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, pointers.data(), environ) != 0) std::exit(1);
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) return std::nullopt;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  return Cost{elapsed.count(), secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime),
              static_cast<double>(usage.ru_maxrss) / 1024};
}

/// Several runs of one step.
class Runs {
 public:
  void add(const std::optional<Cost>& run) {
    if (run) runs_.push_back(*run);
  }
  [[nodiscard]] bool empty() const { return runs_.empty(); }
  /// Of busy machines the middle one says the most. @pre there is one.
  [[nodiscard]] double seconds() const { return middle(&Cost::seconds); }
  [[nodiscard]] double processorSeconds() const { return middle(&Cost::processorSeconds); }
  [[nodiscard]] double megabytes() const {
    double most = 0;
    for (const Cost& run : runs_) most = std::max(most, run.megabytes);
    return most;
  }

 private:
  [[nodiscard]] double middle(double Cost::*member) const {
    std::vector<double> values;
    for (const Cost& run : runs_) values.push_back(run.*member);
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
  }

  std::vector<Cost> runs_;
};

}  // namespace vlclientui::benchmarks
