// Every window of the library, struck in the middle of each of its calls to the world outside. Built once per
// window system.

#include <iostream>
#include <tuple>

#include <gtest/gtest.h>

#include "frame/LiveObjects.h"
#include "scenarios/SweepCases.h"

namespace vlclientui::test {

namespace {

enum class Deed { Closes, ShowsAgain, ClosesAndShowsAgain, DestroysTheHostWindow, ReleasesTheObject };

struct NamedDeed {
  Deed deed;
  std::string name;
};

const std::vector<NamedDeed> deeds{{Deed::Closes, "closed"},
                                   {Deed::ShowsAgain, "shown again"},
                                   {Deed::ClosesAndShowsAgain, "closed and shown again"},
                                   {Deed::DestroysTheHostWindow, "host window destroyed"},
                                   {Deed::ReleasesTheObject, "object released"}};

class Sweep : public testing::TestWithParam<std::tuple<std::size_t, std::size_t>> {
 protected:
  void sweep(const SweepScenario& scenario, Deed deed) {
    const std::size_t calls = runCase(scenario, 0, deed);
    ASSERT_GT(calls, 0U);
    const auto worthStriking = world_.strike.worthStriking();
    for (const std::size_t call : worthStriking) {
      SCOPED_TRACE("call " + std::to_string(call));
      runCase(scenario, call, deed);
      if (HasFailure()) return;
    }
    std::cout << scenario.name << ": " << calls << " calls, " << worthStriking.size() << " cases, "
              << refusals_ << " second shows refused\n";
  }

 private:
  /// @returns the calls that were counted.
  std::size_t runCase(const SweepScenario& scenario, std::size_t at, Deed deed) {
    world_.begin();
    const auto objectsBefore = liveObjectCount();
    {
      const auto made = scenario.make(world_);
      world_.strike.arm(at, [&] { strike(*made, deed); });
      made->run();
      world_.strike.disarm();
      EXPECT_EQ(world_.strike.struck(), at != 0);
      made->release();
    }
    const std::size_t calls = world_.strike.calls();
    expectNothingLeft(objectsBefore);
    world_.end();
    return calls;
  }

  void expectNothingLeft(std::int64_t objectsBefore) {
    EXPECT_EQ(world_.toolkit->failures, std::vector<std::string>{});
    EXPECT_NE(world_.toolkit->pointer, Pointer::Hourglass);
    EXPECT_EQ(liveObjectCount(), objectsBefore);
    EXPECT_EQ(world_.engines->alive(), 0U);
  }

  void strike(SweepCase& made, Deed deed) {
    switch (deed) {
      case Deed::Closes:
        return made.close();
      case Deed::ShowsAgain:
        return showAgain(made);
      case Deed::ClosesAndShowsAgain:
        made.close();
        return showAgain(made);
      case Deed::DestroysTheHostWindow:
        return destroyHostWindow(made);
      case Deed::ReleasesTheObject:
        return made.release();
    }
  }

  /// A window on show stays as it is.
  void showAgain(SweepCase& made) {
    const auto window = made.window();
    // The first Init makes the window.
    const bool open = window && window->onShow();
    const auto number = window ? window->windowNumber() : 0;
    const std::string told = made.showAgain();
    if (!open) return;
    EXPECT_EQ(told, Form::alreadyOnShow);
    EXPECT_EQ(window->windowNumber(), number);
    ++refusals_;
  }

  /// A page outside the host's window is embedded first.
  void destroyHostWindow(SweepCase& made) {
    const auto window = made.window();
    if (window && window->loaded()) {
      world_.toolkit->setParent(world_.toolkit->windowOf(*window), world_.stage->hostWindow());
    }
    world_.stage->destroyHostWindow();
  }

  SweepWorld world_;
  std::size_t refusals_ = 0;
};

TEST_P(Sweep, NoCallThatLosesItsWindowCrashesOrLeavesAnything) {
  const auto [scenario, deed] = GetParam();
  sweep(sweepScenarios()[scenario], deeds[deed].deed);
}

INSTANTIATE_TEST_SUITE_P(Windows, Sweep,
                         testing::Combine(testing::Range(std::size_t{0}, sweepScenarios().size()),
                                          testing::Range(std::size_t{0}, deeds.size())),
                         [](const auto& of) {
                           const std::string window = sweepScenarios()[std::get<0>(of.param)].name;
                           return asTestName(window + " " + deeds[std::get<1>(of.param)].name);
                         });

}  // namespace

}  // namespace vlclientui::test
