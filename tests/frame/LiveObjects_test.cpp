#include "frame/LiveObjects.h"

#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace vlclientui {
namespace {

TEST(LiveObjects, AreCountedWhileTheyLive) {
  const auto before = liveObjectCount();
  {
    const LiveObject first;
    const LiveObject second;
    EXPECT_EQ(liveObjectCount(), before + 2);
  }
  EXPECT_EQ(liveObjectCount(), before);
}

TEST(LiveObjects, OfAllThreadsAreCountedTogether) {
  const auto before = liveObjectCount();
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([] {
      for (int round = 0; round < 1000; ++round) const LiveObject object;
    });
  }
  const LiveObject own;
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(liveObjectCount(), before + 1);
}

TEST(LiveObjects, ArriveFromAnotherThread) {
  const auto before = liveObjectCount();
  std::unique_ptr<LiveObject> object;
  std::thread([&] { object = std::make_unique<LiveObject>(); }).join();
  EXPECT_EQ(liveObjectCount(), before + 1);
  object.reset();
  EXPECT_EQ(liveObjectCount(), before);
}

}  // namespace
}  // namespace vlclientui
