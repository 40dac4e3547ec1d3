// Two processes at a time write one file, now in one state, now in the other, and are killed at any moment.
// VLCLIENTUI_KILLS in the environment tells how many times each; a few by default.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "apps/saving/SavingFixture.h"
#include "client/ChildProcess.h"

namespace vlclientui {
namespace {

namespace fs = std::filesystem;

using State = test::Saver::State;
using std::chrono::microseconds;

int killsWanted() {
  const char* const told = std::getenv("VLCLIENTUI_KILLS");
  return told == nullptr ? 4 : std::atoi(told);
}

class KilledSavers : public test::SavingFixture, public testing::WithParamInterface<test::Saver> {
 protected:
  [[nodiscard]] std::string content() const { return test::contentOf((home() / GetParam().file).string()); }

  /// All files, hidden ones too.
  [[nodiscard]] std::set<fs::path> names() const {
    std::set<fs::path> all;
    for (const auto& entry : fs::recursive_directory_iterator(home())) all.insert(entry.path());
    return all;
  }

  /// What the file holds in that state. Raster library and network are used in child processes alone.
  std::string saved(State state) {
    const auto result = test::inChild([&] { return GetParam().save(home(), state); });
    EXPECT_EQ(result.text, "");
    return content();
  }

  microseconds timeOfOne() {
    const auto start = std::chrono::steady_clock::now();
    saved(State::First);
    return std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start);
  }

  [[nodiscard]] pid_t startSaving() const {
    const pid_t process = fork();
    if (process != 0) return process;
    for (;;) {
      for (const State state : {State::First, State::Second}) {
        if (!GetParam().save(home(), state).empty()) _exit(1);
      }
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Saving, KilledSavers, testing::ValuesIn(test::savers()),
                         [](const auto& one) { return one.param.name; });

TEST_P(KilledSavers, LeaveAWholeFileAndNothingThatTheNextOneDoesNotTakeAway) {
  const std::set<std::string> whole = {saved(State::First), saved(State::Second)};
  ASSERT_EQ(whole.size(), 2U);
  const microseconds one = timeOfOne();
  const std::set<fs::path> expected = names();
  std::mt19937 chance(1);
  std::uniform_int_distribution<microseconds::rep> moment(0, 3 * one.count());
  int leftSomething = 0;
  const int kills = killsWanted();
  for (int i = 0; i < kills; ++i) {
    const std::array<pid_t, 2> processes = {startSaving(), startSaving()};
    usleep(static_cast<useconds_t>(moment(chance)));
    for (const pid_t process : processes) kill(process, SIGKILL);
    for (const pid_t process : processes) {
      int status = 0;
      waitpid(process, &status, 0);
      EXPECT_TRUE(WIFSIGNALED(status)) << "it could not save: " << status;
    }
    ASSERT_TRUE(whole.contains(content())) << "after " << i << " kills: " << content().size() << " bytes";
    leftSomething += names() != expected ? 1 : 0;
  }
  saved(State::First);
  EXPECT_EQ(names(), expected);
  std::cout << GetParam().name << ": " << kills
            << " times two processes killed, 0 files damaged, hidden files left " << leftSomething
            << " times until the next was saved" << std::endl;
}

}  // namespace
}  // namespace vlclientui
