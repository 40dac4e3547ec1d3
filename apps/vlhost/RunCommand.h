#pragma once

#include <string>

#include "ExportCommand.h"

namespace vlclientui::vlhost {

/// Whether a person can watch.
enum class RunWindows { Unseen, Shown };

struct RunCommand {
  std::string file;  ///< of operations
  RunWindows windows = RunWindows::Unseen;
  PlanOutput format = PlanOutput::Text;
  int pause = 300;  ///< between two operations in windows that are shown, in milliseconds
};

/// Does what a run file says. What it reads goes to standard output.
/// @returns the exit code.
[[nodiscard]] int runRunFile(const RunCommand& command);

}  // namespace vlclientui::vlhost
