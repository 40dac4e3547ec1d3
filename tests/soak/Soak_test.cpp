// What a process holds after many rounds of all windows.

#include <algorithm>
#include <ctime>
#include <iostream>

#include "soak/ProcessUse.h"
#include "soak/Rounds.h"

namespace vlclientui::test {

namespace {

/// The time of the processor for so many rounds, in seconds: what else the machine does is no part of it.
double rounds(SweepWorld& world, std::size_t count) {
  const std::clock_t begin = std::clock();
  for (std::size_t round = 0; round < count; ++round) walkThroughAllWindows(world);
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

TEST(Soak, HoldsNoMoreAfterManyRoundsOfAllWindowsThanAfterAFew) {
  SweepWorld world;
  const std::size_t part = std::max<std::size_t>(1, soakRounds(12) / 4);
  rounds(world, std::max<std::size_t>(3, part / 10));
  const ProcessUse before = ProcessUse::now();
  for (int quarter = 1; quarter <= 4; ++quarter) {
    const double time = rounds(world, part);
    std::cout << "after " << part * static_cast<std::size_t>(quarter)
              << " rounds: " << inWords(ProcessUse::now()) << ", " << time / static_cast<double>(part) * 1000
              << " ms a round" << std::endl;
    ASSERT_FALSE(HasFailure());
  }
  const ProcessUse after = ProcessUse::now();
  EXPECT_EQ(after.allocations, before.allocations);
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.threads, before.threads);
  // The allocator of the system keeps pages back, though not with each round anew. Sanitizers do: they keep
  // what was given back, to see whether anyone still reads it.
  if (!VL_IS_SANITIZED) {
    EXPECT_LT(after.kilobytes, before.kilobytes + 8192);
  }
}

}  // namespace

}  // namespace vlclientui::test
