// How a host sees and ends what a thread waits for: questions, switches, and both inside each other.
#include <array>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "client/facade/CancelSwitch.h"
#include "client/facade/ServerWait.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

bool isListenedTo() {
  return Waiting([] {}).nextQuestion().has_value();
}

WaitQuestions questionsThat(bool goOn) {
  return [goOn] { return [goOn](const ServerWait& /*wait*/) { return goOn; }; };
}

TEST(ServerWaits, AskNobodyWithoutAQuestion) {
  const ServerWaitScope nothing{WaitQuestions()};
  EXPECT_FALSE(isListenedTo());
  const ServerWaitScope empty([] { return WaitQuestion(); });
  EXPECT_FALSE(isListenedTo());
  const ServerWaitScope asked(questionsThat(true));
  EXPECT_TRUE(isListenedTo());
}

TEST(ServerWaits, LeaveTheOuterQuestionWhereTheInnerScopeHasNone) {
  const ServerWaitScope outer(questionsThat(true));
  {
    const ServerWaitScope inner{WaitQuestions()};
    EXPECT_TRUE(isListenedTo());
  }
  EXPECT_TRUE(isListenedTo());
}

TEST(ServerWaits, MakeOneQuestionForACallAndDropItWithTheCall) {
  int made = 0;
  const auto kept = std::make_shared<int>(7);
  const WaitQuestions questions = [&made, weak = std::weak_ptr<int>(kept)]() -> WaitQuestion {
    ++made;
    return [held = weak.lock()](const ServerWait& /*wait*/) { return *held == 7; };
  };
  EXPECT_EQ(made, 0);
  {
    const ServerWaitScope scope(questions);
    EXPECT_EQ(made, 1);
    EXPECT_EQ(kept.use_count(), 2);
    EXPECT_TRUE(isListenedTo());
    EXPECT_TRUE(isListenedTo());
    EXPECT_EQ(made, 1);
  }
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_FALSE(isListenedTo());
}

TEST(ServerWaits, AskAboutHalfASecondAfterTheyBegan) {
  const ServerWaitScope scope(questionsThat(true));
  const auto before = Waiting::Clock::now();
  const Waiting waiting([] {});
  const auto after = Waiting::Clock::now();
  ASSERT_TRUE(waiting.nextQuestion());
  EXPECT_GE(*waiting.nextQuestion(), before + std::chrono::milliseconds(500));
  EXPECT_LE(*waiting.nextQuestion(), after + std::chrono::milliseconds(500));
}

TEST(ServerWaits, AreOfTheThreadThatMadeThem) {
  const ServerWaitScope scope(questionsThat(true));
  bool isListened = true;
  std::thread([&] { isListened = isListenedTo(); }).join();
  EXPECT_FALSE(isListened);
}

TEST(CancelSwitches, AreTheSameAsTheirCopies) {
  const CancelSwitch first;
  const CancelSwitch copy = first;
  CancelSwitch assigned;
  const CancelSwitch other = assigned;
  assigned = copy;
  EXPECT_FALSE(first.isCanceled());
  assigned.cancel();
  EXPECT_TRUE(first.isCanceled());
  EXPECT_TRUE(copy.isCanceled());
  EXPECT_FALSE(other.isCanceled()) << "what was assigned to before";
  assigned.cancel();
  EXPECT_TRUE(first.isCanceled());
}

TEST(CancelSwitches, EndWorkOnlyWhileTheirScopeLives) {
  const CancelSwitch canceling;
  {
    const CancelScope scope(canceling);
    EXPECT_FALSE(WaitScope::isGivenUp());
    canceling.cancel();
    EXPECT_TRUE(WaitScope::isGivenUp());
  }
  EXPECT_FALSE(WaitScope::isGivenUp());
  const CancelScope again(canceling);
  EXPECT_TRUE(WaitScope::isGivenUp()) << "what begins later fails at once";
}

struct Nesting {
  int canceled;  ///< of three switches, counted from outside
  bool isOuterGivenUp;
  bool isMiddleGivenUp;
};

TEST(CancelSwitches, EndWhatIsInsideTheirScopeAndNothingOutside) {
  for (const auto& [canceled, isOuterGivenUp, isMiddleGivenUp] :
       {Nesting{0, true, true}, Nesting{1, false, true}, Nesting{2, false, false}}) {
    const std::array<CancelSwitch, 3> switches{};
    const CancelScope outer(switches[0]);
    {
      const CancelScope middle(switches[1]);
      {
        const CancelScope inner(switches[2]);
        switches.at(static_cast<std::size_t>(canceled)).cancel();
        EXPECT_TRUE(WaitScope::isGivenUp()) << canceled;
      }
      EXPECT_EQ(WaitScope::isGivenUp(), isMiddleGivenUp) << canceled;
    }
    EXPECT_EQ(WaitScope::isGivenUp(), isOuterGivenUp) << canceled;
  }
}

TEST(CancelSwitches, MayBeTheSameOutsideAndInside) {
  const CancelSwitch canceling;
  const CancelScope outer(canceling);
  { const CancelScope inner(canceling); }
  EXPECT_FALSE(WaitScope::isGivenUp());
  canceling.cancel();
  const CancelScope inner(canceling);
  EXPECT_TRUE(WaitScope::isGivenUp());
}

TEST(CancelSwitches, GovernTheirScopeAfterTheyAreGone) {
  auto canceling = std::make_unique<CancelSwitch>();
  const CancelSwitch copy = *canceling;
  const CancelScope scope(*canceling);
  canceling.reset();
  EXPECT_FALSE(WaitScope::isGivenUp());
  copy.cancel();
  EXPECT_TRUE(WaitScope::isGivenUp());
}

TEST(CancelSwitches, WakeAWaitOfAnotherThreadOnce) {
  const CancelSwitch canceling;
  const CancelScope scope(canceling);
  int wakes = 0;
  const Waiting waiting([&] { ++wakes; });
  std::thread([&] {
    canceling.cancel();
    canceling.cancel();
  }).join();
  EXPECT_EQ(wakes, 1);
  EXPECT_TRUE(waiting.isGivenUp());
}

TEST(CancelSwitches, EndOnlyTheWorkOfTheThreadThatMadeTheScope) {
  const CancelSwitch canceling;
  const CancelScope scope(canceling);
  canceling.cancel();
  bool isGivenUp = true;
  std::thread([&] { isGivenUp = WaitScope::isGivenUp(); }).join();
  EXPECT_FALSE(isGivenUp);
}

TEST(CancelSwitches, LeaveTheQuestionsOfWaitsAsTheyAre) {
  const ServerWaitScope asked(questionsThat(true));
  const CancelSwitch canceling;
  const CancelScope scope(canceling);
  EXPECT_TRUE(isListenedTo()) << "a scope of a switch asks nobody itself";
  const ServerWaitScope inner(questionsThat(false));
  canceling.cancel();
  EXPECT_TRUE(WaitScope::isGivenUp()) << "under a question of its own too";
}

}  // namespace
}  // namespace vlclientui::client
