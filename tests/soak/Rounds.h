#pragma once

#include <cstddef>

#include "scenarios/SweepWorld.h"

namespace vlclientui::test {

/// Walks through every window of the library once, on the calling thread.
void walkThroughAllWindows(SweepWorld& world);

/// How many rounds to make: VLCLIENTUI_SOAK in the environment, otherwise what suits every build.
[[nodiscard]] std::size_t soakRounds(std::size_t usual);

}  // namespace vlclientui::test
