#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "scenarios/SweepCases.h"

namespace vlclientui::test {

/// What happened in one run of a scenario, and what a host and the disk had of it afterwards.
struct Aftermath {
  std::string escaped;                         ///< the text of what reached the host; empty for nothing
  std::vector<std::string> reported;           ///< failures that reached the top-level handler
  std::string told;                            ///< what the host reads at the object
  std::map<std::string, std::string> files{};  ///< of the user: path and content
};

/// How a run with something failing went.
struct Verdict {
  bool escaped = false;      ///< a failure reached the host
  std::size_t reported = 0;  ///< failures that reached the top-level handler
};

/// Runs a window of the library with something failing, then again at the same objects with nothing failing,
/// and holds that nothing is left of either.
class FailureStage : public testing::Test {
 protected:
  /// What makes the first run fail.
  struct Failing {
    std::function<void()> begins;  ///< called before that run
    std::function<void()> ends;    ///< called after it
    std::string text{};            ///< of what may reach the top-level handler
  };

  /// Learns what an undisturbed run leaves. Runs it as often as it takes for every cache to be filled.
  void learn(const SweepScenario& scenario);
  /// @returns how the failing run went; what is wrong with what came after is a failure of the test.
  Verdict disturb(const SweepScenario& scenario, const Failing& failing);
  /// Few enough for every build, unless the environment wants each place (Places.h).
  [[nodiscard]] static std::vector<std::size_t> casesOf(const std::vector<std::size_t>& places);
  /// A run in which nothing fails, between the two calls.
  void count(const SweepScenario& scenario, const Failing& counting);

  SweepWorld world_;

 private:
  struct Both {
    Aftermath first;
    Aftermath second;
  };

  [[nodiscard]] static Failing nothingFails();
  Verdict runAndJudge(const SweepScenario& scenario, const Failing& failing);
  Both runTwice(const SweepScenario& scenario, const Failing& failing);
  Aftermath run(SweepCase& made, const Failing& failing);
  [[nodiscard]] std::map<std::string, std::string> files() const;
  /// Each file is as before, as an undisturbed run leaves it, or a whole document.
  void expectWholeFiles(const Aftermath& after) const;

  Both undisturbed_;
  std::int64_t objectsBefore_ = 0;
};

}  // namespace vlclientui::test
