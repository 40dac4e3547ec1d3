#pragma once

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include <unistd.h>

namespace vlclientui::test {

/// How long the thread that made it stands still: in work of its own, or waiting for a lock or for other
/// threads. For how long the machine kept this thread, or those that it waits for, from a processor is not
/// counted, so that it tells the same on a busy machine.
class StandingTime {
 public:
  StandingTime() { restart(); }

  void restart() {
    delays_ = presentDelays();
    work_ = millisecondsOf(CLOCK_THREAD_CPUTIME_ID);
    begin_ = millisecondsOf(CLOCK_MONOTONIC);
  }

  /// Since the beginning, or the last restart. @param asleep so many milliseconds it was to wait.
  [[nodiscard]] double milliseconds(double asleep = 0) const {
    const double work = millisecondsOf(CLOCK_THREAD_CPUTIME_ID) - work_;
    const double whole = millisecondsOf(CLOCK_MONOTONIC) - begin_;
    double own = 0;
    double others = 0;
    for (const auto& [thread, delay] : presentDelays()) {
      const auto before = delays_.find(thread);
      const double since = delay - (before == delays_.end() ? 0 : before->second);
      if (thread == thread_)
        own = since;
      else
        others = std::max(others, since);
    }
    return work + std::max(0.0, whole - work - own - others - asleep);
  }

 private:
  using Delays = std::map<std::string, double>;  ///< milliseconds that threads waited for a processor

  static double millisecondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  }

  static Delays presentDelays() {
    Delays delays;
    std::error_code none;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task", none)) {
      std::ifstream file(thread.path() / "schedstat");
      double run = 0;
      double delay = 0;
      if (file >> run >> delay) delays[thread.path().filename().string()] = delay / 1e6;
    }
    return delays;
  }

  std::string thread_ = std::to_string(gettid());
  double begin_ = 0;
  double work_ = 0;
  Delays delays_;
};

}  // namespace vlclientui::test
