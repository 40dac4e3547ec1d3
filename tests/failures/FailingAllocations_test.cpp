// Every window of the library with one allocation failing, for every place that allocates.

#include <iostream>
#include <new>

#include "failures/CountedMemory.h"
#include "failures/FailureStage.h"

namespace vlclientui::test {

namespace {

class FailingAllocations : public FailureStage, public testing::WithParamInterface<std::size_t> {
 protected:
  static Failing at(std::size_t allocation) {
    return {[allocation] { memory::arm(allocation, allocation == 0); }, [] { memory::disarm(); },
            std::bad_alloc().what()};
  }
};

TEST_P(FailingAllocations, LeaveTheSameObjectsWorkingAndNothingBehind) {
  const auto scenario = sweepScenarios()[GetParam()];
  world_.strike.tellActsTo(&memory::nextAct);
  learn(scenario);
  count(scenario, at(0));
  const std::size_t allocations = memory::allocations();
  const auto cases = casesOf(memory::worthFailing());
  ASSERT_FALSE(cases.empty());
  // The first failure of all fills what grows once, such as the memory of the exception.
  count(scenario, at(cases.front()));
  std::size_t inLibrary = 0;
  std::size_t escaped = 0;
  std::size_t reported = 0;
  for (const std::size_t allocation : cases) {
    SCOPED_TRACE("allocation " + std::to_string(allocation));
    const Verdict verdict = disturb(scenario, at(allocation));
    EXPECT_TRUE(memory::failed());
    // What a host's own lines allocate before they call fails in the host.
    inLibrary += memory::failedInLibrary();
    if (verdict.escaped && memory::failedInLibrary()) ++escaped;
    reported += verdict.reported;
  }
  // Else the next line holds whatever escapes.
  EXPECT_GT(inLibrary, 0U) << "The library is not found among the callers";
  if (!scenario.name.starts_with("export")) {
    EXPECT_EQ(escaped, 0U);
  }
  std::cout << scenario.name << ": " << allocations << " allocations, " << cases.size() << " failed, "
            << inLibrary << " of them in the library, " << escaped << " told to the host, " << reported
            << " to the top-level handler\n";
}

INSTANTIATE_TEST_SUITE_P(Windows, FailingAllocations, testing::Range(std::size_t{0}, sweepScenarios().size()),
                         [](const auto& of) { return asTestName(sweepScenarios()[of.param].name); });

}  // namespace

}  // namespace vlclientui::test
