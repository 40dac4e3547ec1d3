#include "support/StandingTime.h"

#include <chrono>
#include <mutex>
#include <thread>

#include <gtest/gtest.h>

namespace vlclientui::test {
namespace {

using std::chrono::milliseconds;

TEST(StandingTimes, CountWaitingForALock) {
  std::mutex mutex;
  std::unique_lock held(mutex);
  std::jthread holder([&] {
    std::this_thread::sleep_for(milliseconds(120));
    held.unlock();
  });
  const StandingTime standing;
  const std::lock_guard lock(mutex);
  EXPECT_GT(standing.milliseconds(), 50);
}

TEST(StandingTimes, CountWorkWhateverElseTheMachineDoes) {
  const StandingTime standing;
  timespec begin{};
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
  const auto worked = [&] {
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec - begin.tv_sec) * 1e3 +
           static_cast<double>(now.tv_nsec - begin.tv_nsec) / 1e6;
  };
  while (worked() < 60) {
  }
  EXPECT_GE(standing.milliseconds(), 60);
}

TEST(StandingTimes, LeaveOutWhatWasToBeWaited) {
  const StandingTime standing;
  std::this_thread::sleep_for(milliseconds(200));
  EXPECT_LT(standing.milliseconds(200), 100);
}

}  // namespace
}  // namespace vlclientui::test
