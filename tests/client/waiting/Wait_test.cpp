#include "client/waiting/Wait.h"

#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "client/waiting/SideBySide.h"

namespace vlclientui::client {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

/// Asked at once and each time.
constexpr WaitPace always{milliseconds(0), milliseconds(0)};

class CountingListener : public WaitListener {
 public:
  WaitAnswer stillWaiting(const WaitedFor& what) override {
    ++questions;
    last = what;
    return answer;
  }

  int questions = 0;
  WaitedFor last;
  WaitAnswer answer = WaitAnswer::GoOn;
};

TEST(WaitScopes, WithoutOneNobodyIsAskedAndNothingGivenUp) {
  Waiting waiting([] {});
  EXPECT_FALSE(waiting.nextQuestion());
  EXPECT_FALSE(waiting.isGivenUp());
  EXPECT_FALSE(WaitScope::isGivenUp());
}

TEST(WaitScopes, AListenerIsNotAskedBeforeTheQuietTimeHasGone) {
  CountingListener listener;
  const WaitScope scope(&listener, {}, {hours(1), milliseconds(0)});
  Waiting waiting([] {});
  waiting.ask({});
  EXPECT_EQ(listener.questions, 0);
  EXPECT_GT(*waiting.nextQuestion(), Waiting::Clock::now() + std::chrono::minutes(59));
}

TEST(WaitScopes, TheUsualQuietTimeIsHalfASecondAndTheUsualIntervalATwentieth) {
  EXPECT_EQ(WaitPace().quiet, milliseconds(500));
  EXPECT_EQ(WaitPace().interval, milliseconds(50));
}

TEST(WaitScopes, AListenerIsAskedAgainOnlyAfterTheInterval) {
  CountingListener listener;
  const WaitScope scope(&listener, {}, {milliseconds(0), hours(1)});
  Waiting waiting([] {});
  waiting.ask({});
  waiting.ask({});
  EXPECT_EQ(listener.questions, 1);
  EXPECT_GT(*waiting.nextQuestion(), Waiting::Clock::now() + std::chrono::minutes(59));
}

TEST(WaitScopes, AListenerIsToldWhatIsWaitedFor) {
  CountingListener listener;
  const WaitScope scope(&listener, {}, always);
  Waiting waiting([] {});
  waiting.ask({"example.org", 12, 3, {}});
  EXPECT_EQ(listener.last.host, "example.org");
  EXPECT_EQ(listener.last.bytes, 12U);
  EXPECT_EQ(listener.last.openRequests, 3U);
}

TEST(WaitScopes, SeveralShortWaitsAddUp) {
  CountingListener listener;
  const WaitScope scope(&listener, {}, {milliseconds(20), milliseconds(0)});
  for (int i = 0; i < 3; ++i) {
    Waiting waiting([] {});
    std::this_thread::sleep_for(milliseconds(10));
  }
  Waiting waiting([] {});
  waiting.ask({});
  EXPECT_EQ(listener.questions, 1);
  EXPECT_GE(listener.last.waited, milliseconds(30));
}

TEST(WaitScopes, WhatIsGivenUpStaysSoAndWakesTheWait) {
  CountingListener listener;
  listener.answer = WaitAnswer::GiveUp;
  const WaitScope scope(&listener, {}, always);
  int wakes = 0;
  Waiting waiting([&] { ++wakes; });
  waiting.ask({});
  EXPECT_TRUE(waiting.isGivenUp());
  EXPECT_EQ(wakes, 1);
  EXPECT_TRUE(Waiting([] {}).isGivenUp());
}

TEST(WaitScopes, TheOuterListenerIsAskedWhereTheInnerScopeHasNone) {
  CountingListener outer;
  const WaitScope outerScope(&outer, {}, always);
  const WaitScope innerScope(nullptr);
  Waiting waiting([] {});
  waiting.ask({});
  EXPECT_EQ(outer.questions, 1);
}

TEST(WaitScopes, TheInnerListenerIsAskedInPlaceOfTheOuterOne) {
  CountingListener outer;
  CountingListener inner;
  inner.answer = WaitAnswer::GiveUp;
  const WaitScope outerScope(&outer, {}, always);
  {
    const WaitScope innerScope(&inner, {}, always);
    Waiting waiting([] {});
    waiting.ask({});
    EXPECT_EQ(inner.questions, 1);
    EXPECT_EQ(outer.questions, 0);
    EXPECT_TRUE(WaitScope::isGivenUp());
  }
  // Only what stood under the inner scope was given up.
  EXPECT_FALSE(WaitScope::isGivenUp());
}

TEST(WaitScopes, WhatEndsTheOuterScopeEndsTheInnerOne) {
  CancelToken token;
  const WaitScope outerScope(nullptr, token);
  const WaitScope innerScope(nullptr);
  token.cancel();
  EXPECT_TRUE(WaitScope::isGivenUp());
}

TEST(WaitScopes, ATokenThatWasCanceledBeforeWakesAtOnce) {
  CancelToken token;
  token.cancel();
  const WaitScope scope(nullptr, token);
  int wakes = 0;
  const Waiting waiting([&] { ++wakes; });
  EXPECT_EQ(wakes, 1);
}

TEST(WaitScopes, AreOfTheirThreadAlone) {
  CancelToken token;
  const WaitScope scope(nullptr, token);
  token.cancel();
  bool isGivenUp = true;
  std::thread([&] { isGivenUp = WaitScope::isGivenUp(); }).join();
  EXPECT_FALSE(isGivenUp);
}

TEST(WaitScopes, AHelperThreadIsGivenUpWithTheOneThatSentIt) {
  CountingListener listener;
  listener.answer = WaitAnswer::GiveUp;
  const WaitScope scope(&listener, {}, always);
  const WaitScope::Link link = WaitScope::link();
  Waiting([] {}).ask({});
  bool isGivenUp = false;
  std::thread([&] {
    const WaitScope helper(link);
    isGivenUp = WaitScope::isGivenUp();
    Waiting waiting([] {});
    EXPECT_FALSE(waiting.nextQuestion());
  }).join();
  EXPECT_TRUE(isGivenUp);
  EXPECT_EQ(listener.questions, 1);
}

/// Waits itself while it is asked, as a window does that lets events run.
class WaitingListener : public WaitListener {
 public:
  WaitAnswer stillWaiting(const WaitedFor& /*what*/) override {
    ++questions;
    Waiting inner([] {});
    inner.ask({});
    return WaitAnswer::GoOn;
  }

  int questions = 0;
};

TEST(WaitScopes, TellWhetherAThreadWorksForSomebody) {
  const CancelToken one;
  const CancelToken other;
  EXPECT_FALSE(WaitScope::isUnder(one));
  const WaitScope outer(nullptr, one);
  const WaitScope inner(nullptr);
  EXPECT_TRUE(WaitScope::isUnder(one));
  EXPECT_FALSE(WaitScope::isUnder(other));
  std::thread([&, link = WaitScope::link()] {
    EXPECT_FALSE(WaitScope::isUnder(one));
    const WaitScope helping(link);
    EXPECT_TRUE(WaitScope::isUnder(one));
  }).join();
}

TEST(SideBySide, DoesEachPieceOnceAndIsGivenUpTogether) {
  CancelToken token;
  const WaitScope scope(nullptr, token);
  std::vector<int> done(100);
  std::atomic<int> workers = 0;
  std::atomic<int> givenUp = 0;
  doSideBySide(done.size(), 4, [&] {
    ++workers;
    return [&](std::size_t i) {
      ++done[i];
      if (i == 50) token.cancel();
      while (i >= 50 && !WaitScope::isGivenUp()) std::this_thread::yield();
      if (i >= 50) ++givenUp;
    };
  });
  EXPECT_EQ(done, std::vector<int>(100, 1));
  EXPECT_LE(workers, 4);
  EXPECT_EQ(givenUp, 50);
}

TEST(WaitScopes, AListenerThatIsBeingAskedIsNotAskedOnceMore) {
  WaitingListener listener;
  const WaitScope scope(&listener, {}, always);
  Waiting waiting([] {});
  waiting.ask({});
  EXPECT_EQ(listener.questions, 1);
}

}  // namespace
}  // namespace vlclientui::client
