#include "contracts/Silence.h"

#include <cstdlib>
#include <fstream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/TemporaryDataHome.h"

namespace vlclientui::test {
namespace {

struct Heard {
  std::vector<SilentEnd> ends;
  SilenceListener listener{[this](const SilentEnd& end) { ends.push_back(end); }};
};

struct Walker {
  static void walk() { endSilently("the road ends"); }
};

TEST(Silence, TellsRoutineAndReason) {
  const Heard heard;
  Walker::walk();
  endSilently("no file", "File dialog");
  EXPECT_EQ(heard.ends,
            (std::vector<SilentEnd>{{"Walker::walk", "the road ends"}, {"File dialog", "no file"}}));
}

TEST(Silence, TellsReasonsInOneLine) {
  const Heard heard;
  endSilently("a\nb", "x");
  EXPECT_EQ(heard.ends.at(0).reason, "a b");
}

TEST(Silence, TellsAllListenersAsLongAsTheyLive) {
  const Heard first;
  {
    const Heard second;
    Walker::walk();
    EXPECT_EQ(second.ends.size(), 1U);
  }
  Walker::walk();
  EXPECT_EQ(first.ends.size(), 2U);
}

TEST(Silence, OfAnotherThreadIsNotHeard) {
  const Heard heard;
  std::thread([] { Walker::walk(); }).join();
  EXPECT_TRUE(heard.ends.empty());
}

TEST(Silence, IsNotToldToAListenerThatGoesWhileItIsTold) {
  std::optional<SilenceListener> later;
  int heard = 0;
  const SilenceListener removing([&](const SilentEnd&) { later.reset(); });
  later.emplace([&](const SilentEnd&) { ++heard; });
  endSilently("reason");
  EXPECT_EQ(heard, 0);
}

TEST(Silence, ContainsAnObserverThatRaises) {
  const SilenceListener raising([](const SilentEnd&) { throw std::logic_error("x"); });
  const SilenceListener raisingOtherwise([](const SilentEnd&) { throw 17; });
  const SilenceListener none(nullptr);
  const Heard heard;
  Walker::walk();
  Walker::walk();
  EXPECT_EQ(heard.ends.size(), 2U);
}

TEST(Silence, ThatAnObserverCausesIsNotToldToIt) {
  int calls = 0;
  const SilenceListener causing([&](const SilentEnd&) {
    ++calls;
    endSilently("again", "observer");
  });
  const Heard heard;
  Walker::walk();
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(heard.ends.size(), 2U);
}

TEST(Silence, LetsListenersGoAndComeInsideAnObserver) {
  std::optional<Heard> heard(std::in_place);
  std::optional<Heard> late;
  std::optional<SilenceListener> self;
  self.emplace([&](const SilentEnd&) {
    heard.reset();
    late.emplace();
    self.reset();
  });
  Walker::walk();
  EXPECT_FALSE(heard.has_value());
  EXPECT_TRUE(late->ends.empty());
  Walker::walk();
  EXPECT_EQ(late->ends.size(), 1U);
}

std::string textOf(const auto& raise) {
  try {
    raise();
  } catch (...) {
    return handledFailureText();
  }
  return {};
}

TEST(Silence, HasTheTextOfTheFailureAsReason) {
  EXPECT_EQ(textOf([] { throw std::runtime_error("no server"); }), "no server");
  EXPECT_EQ(textOf([] { throw std::runtime_error(""); }), "Unknown failure");
  EXPECT_EQ(textOf([] { throw 17; }), "Unknown failure");
}

/// The environment is read once, so each of these has a process of its own.
class SilenceTrace : public testing::Test {
 protected:
  SilenceTrace() { testing::FLAGS_gtest_death_test_style = "threadsafe"; }

  [[noreturn]] static void walkTraced(const char* wanted) {
    setenv("VLCLIENTUI_TRACE", wanted, 1);
    Walker::walk();
    std::exit(silenceIsPrinted() ? 1 : 0);
  }
};

TEST_F(SilenceTrace, GoesToStandardErrorWhereTheEnvironmentAsksForIt) {
  EXPECT_EXIT(walkTraced("1"), testing::ExitedWithCode(1), "Walker::walk: the road ends\n");
}

TEST_F(SilenceTrace, IsOffOtherwise) {
  EXPECT_EXIT(walkTraced(""), testing::ExitedWithCode(0), "^$");
  EXPECT_EXIT(walkTraced("0"), testing::ExitedWithCode(0), "^$");
}

TEST_F(SilenceTrace, IsAppendedToAFileThatTheEnvironmentNames) {
  // Each of the processes comes this way, and all write to the file of the first.
  const char* const inherited = std::getenv("VLCLIENTUI_TEST_FILE");
  std::optional<TemporaryFolder> folder;
  if (inherited == nullptr) folder.emplace();
  const std::string file = inherited != nullptr ? inherited : (folder->path() / "trace.txt").string();
  const EnvironmentKeeper handedOn("VLCLIENTUI_TEST_FILE", file);
  EXPECT_EXIT(walkTraced(file.c_str()), testing::ExitedWithCode(0), "^$");
  EXPECT_EXIT(walkTraced(file.c_str()), testing::ExitedWithCode(0), "^$");
  std::ifstream read(file);
  EXPECT_EQ((std::stringstream() << read.rdbuf()).str(),
            "Walker::walk: the road ends\nWalker::walk: the road ends\n");
}

TEST_F(SilenceTrace, GoesToStandardErrorWhereTheFileCannotBeOpened) {
  EXPECT_EXIT(walkTraced("/dev/null/none"), testing::ExitedWithCode(1), "Walker::walk: the road ends\n");
}

TEST(Silence, IsKeptThoughAListenerFails) {
  const SilenceListener failing([](const SilentEnd&) { throw std::runtime_error("deaf"); });
  EXPECT_NO_THROW(Walker::walk());
}

}  // namespace
}  // namespace vlclientui::test
