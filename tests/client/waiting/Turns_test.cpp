#include "client/waiting/Turns.h"

#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

TEST(TurnsOfThreads, AreTakenByOneAtATime) {
  Turns turns;
  std::atomic<int> within = 0;
  std::atomic<int> most = 0;
  const auto work = [&] {
    for (int i = 0; i < 200; ++i) {
      const Turn turn(turns, "example.org");
      most = std::max(most.load(), ++within);
      --within;
    }
  };
  {
    const std::jthread one(work);
    const std::jthread other(work);
  }
  EXPECT_EQ(most, 1);
}

TEST(TurnsOfThreads, AreGivenUpWhileAnotherOneHasThem) {
  Turns turns;
  const Turn mine(turns, "example.org");
  ASSERT_TRUE(mine.isMine());
  CancelToken token;
  std::atomic<bool> isWaiting = false;
  bool hadIt = true;
  std::jthread other([&] {
    const WaitScope scope(nullptr, token);
    isWaiting = true;
    hadIt = Turn(turns, "example.org").isMine();
  });
  while (!isWaiting) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  token.cancel();
  other.join();  // while the first one has it still
  EXPECT_FALSE(hadIt);
}

TEST(TurnsOfThreads, AreWaitedForAsLongAsIsTold) {
  Turns turns;
  const Turn mine(turns, "example.org");
  std::jthread([&] {
    const Turn other(turns, "example.org", std::chrono::milliseconds(20));
    EXPECT_FALSE(other.isMine());
    EXPECT_TRUE(other.isTooLate());
  }).join();
  EXPECT_FALSE(mine.isTooLate());
}

TEST(TurnsOfThreads, AreGivenUpByAListenerThatHearsOfTheServer) {
  class Ending : public WaitListener {
   public:
    WaitAnswer stillWaiting(const WaitedFor& what) override {
      host = what.host;
      return WaitAnswer::GiveUp;
    }
    std::string host;
  };
  Turns turns;
  const Turn mine(turns, "example.org");
  Ending listener;
  bool hadIt = true;
  std::jthread([&] {
    const WaitScope scope(&listener, {}, {std::chrono::milliseconds(0), std::chrono::milliseconds(0)});
    hadIt = Turn(turns, "example.org").isMine();
  }).join();
  EXPECT_FALSE(hadIt);
  EXPECT_EQ(listener.host, "example.org");
}

TEST(TurnsOfThreads, ComeBackWhenTheyEnd) {
  Turns turns;
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(Turn(turns, "").isMine());
}

}  // namespace
}  // namespace vlclientui::client
