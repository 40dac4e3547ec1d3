// Two threads, each with a platform and dialogs of its own. Meant for the thread sanitizer (script/harden
// threads).

#include <barrier>
#include <thread>
#include <vector>

#include "frame/LiveObjects.h"
#include "soak/Rounds.h"

namespace vlclientui::test {

namespace {

TEST(TwoThreads, WalkThroughAllWindowsAtOnce) {
  const auto before = liveObjectCount();
  std::barrier start(2);
  std::vector<std::jthread> threads;
  for (int thread = 0; thread < 2; ++thread) {
    threads.emplace_back([&start] {
      SweepWorld world;
      start.arrive_and_wait();
      for (std::size_t round = 0; round < soakRounds(3); ++round) walkThroughAllWindows(world);
    });
  }
  threads.clear();
  EXPECT_EQ(liveObjectCount(), before);
}

}  // namespace

}  // namespace vlclientui::test
