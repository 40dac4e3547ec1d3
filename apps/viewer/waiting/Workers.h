#pragma once

#include <chrono>
#include <functional>

namespace vlclientui::viewer {

/// Runs work on a thread of its own. Whoever gives it up waits for it no more, and it ends soon by itself.
/// @param work raises nothing, and holds all that it uses.
void runOnWorker(std::function<void()> work);

/// For the end of a program: what is still at work uses what goes with the program.
/// @returns whether all workers have ended within the time, and have let go what they used.
[[nodiscard]] bool workersEnd(std::chrono::milliseconds within);

}  // namespace vlclientui::viewer
