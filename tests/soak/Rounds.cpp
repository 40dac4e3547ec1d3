#include "soak/Rounds.h"

#include <cstdlib>
#include <mutex>

namespace vlclientui::test {

namespace {

/// The extents of a host are one set for the whole process, which nothing guards: exports take turns.
std::mutex& exportTurn() {
  static std::mutex turn;
  return turn;
}

std::unique_lock<std::mutex> turnFor(const SweepScenario& scenario) {
  return scenario.name.starts_with("export") ? std::unique_lock(exportTurn())
                                             : std::unique_lock<std::mutex>();
}

void walkThrough(SweepWorld& world, const SweepScenario& scenario) {
  const auto turn = turnFor(scenario);
  world.begin();
  auto made = scenario.make(world);
  world.refresh();
  made->run();
  EXPECT_EQ(world.toolkit->failures, std::vector<std::string>{}) << scenario.name;
  EXPECT_FALSE(made->told().empty());
  made->release();
  made.reset();
  EXPECT_EQ(world.engines->alive(), 0U) << scenario.name;
  world.end();
  world.forget();
}

}  // namespace

void walkThroughAllWindows(SweepWorld& world) {
  for (const SweepScenario& scenario : sweepScenarios()) walkThrough(world, scenario);
}

std::size_t soakRounds(std::size_t usual) {
  const char* const told = std::getenv("VLCLIENTUI_SOAK");
  const std::size_t rounds = told ? std::strtoul(told, nullptr, 10) : 0;
  return rounds ? rounds : usual;
}

}  // namespace vlclientui::test
