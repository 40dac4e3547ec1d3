#include "library/HostThread.h"

#include <thread>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "frame/ThreadState.h"
#include "support/FramePlatform.h"

namespace vlclientui {
namespace {

using HostThread = test::FramePlatform;

TEST_F(HostThread, HasThePlatformThatItWasStartedWithUntilItIsTakenAway) {
  const auto platform = std::make_shared<const Platform>(adapters());
  startThread(platform);
  EXPECT_EQ(&currentPlatform(), platform.get());
  startThread(nullptr);
  EXPECT_FALSE(hasPlatform());
}

TEST_F(HostThread, LeavesOtherThreadsAlone) {
  startThread(std::make_shared<const Platform>(adapters()));
  bool hasOne = true;
  std::thread([&hasOne] { hasOne = hasPlatform(); }).join();
  EXPECT_FALSE(hasOne);
}

TEST_F(HostThread, RefusesAPlatformThatLacksAnAdapter) {
  auto platform = std::make_shared<Platform>(adapters());
  platform->toolkit = nullptr;
  EXPECT_THROW(startThread(platform), RuntimeFailure);
  EXPECT_FALSE(hasPlatform());
}

}  // namespace
}  // namespace vlclientui
