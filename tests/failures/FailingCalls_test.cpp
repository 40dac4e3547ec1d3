// Every window of the library with one call to the world outside failing, for every place that calls.

#include <iostream>

#include "contracts/RuntimeFailure.h"
#include "failures/FailureStage.h"

namespace vlclientui::test {

namespace {

constexpr const char* struckText = "the struck call fails";

class FailingCalls : public FailureStage, public testing::WithParamInterface<std::size_t> {
 protected:
  Failing at(std::size_t call) {
    return {[this, call] { world_.strike.arm(call, [] { throw RuntimeFailure(struckText); }); },
            [this] { world_.strike.disarm(); }, struckText};
  }
};

TEST_P(FailingCalls, LeaveTheSameObjectsWorkingAndNothingBehind) {
  const auto scenario = sweepScenarios()[GetParam()];
  learn(scenario);
  count(scenario, at(0));
  const std::size_t calls = world_.strike.calls();
  const auto cases = casesOf(world_.strike.worthStriking());
  ASSERT_FALSE(cases.empty());
  // The first failure of all fills what grows once, such as the memory of the exception.
  count(scenario, at(cases.front()));
  std::size_t escaped = 0;
  std::size_t reported = 0;
  for (const std::size_t call : cases) {
    SCOPED_TRACE("call " + std::to_string(call));
    const Verdict verdict = disturb(scenario, at(call));
    EXPECT_TRUE(world_.strike.struck());
    escaped += verdict.escaped ? 1 : 0;
    reported += verdict.reported;
  }
  // The show of an export is the one operation that lets failures through.
  if (!scenario.name.starts_with("export")) {
    EXPECT_EQ(escaped, 0U);
  }
  std::cout << scenario.name << ": " << calls << " calls, " << cases.size() << " failed, " << escaped
            << " told to the host, " << reported << " to the top-level handler\n";
}

INSTANTIATE_TEST_SUITE_P(Windows, FailingCalls, testing::Range(std::size_t{0}, sweepScenarios().size()),
                         [](const auto& of) { return asTestName(sweepScenarios()[of.param].name); });

}  // namespace

}  // namespace vlclientui::test
