#pragma once

#include <string>
#include <vector>

#include "ExportCommand.h"

namespace vlclientui::vlhost {

/// What becomes of the other jobs once one failed.
enum class AfterFailure { Stop, GoOn };

struct JobsCommand {
  std::vector<std::string> files;  ///< of jobs, or of metadata with one inside
  std::string output;              ///< instead of the file of the only job; empty for its own
  std::string log;                 ///< keeps what was written; empty for none
  AfterFailure afterFailure = AfterFailure::Stop;
  bool dryRun = false;
  PlanOutput format = PlanOutput::Text;
  client::Keeping keeping = client::Keeping::Nothing;
  ProgressOutput progress = ProgressOutput::OnTerminalsOnly;
};

/// Exports by job documents, one after the other. All of them are read before the first one runs. What was
/// written goes to standard output, and so does a summary of several.
/// @returns the exit code.
[[nodiscard]] int runJobs(const JobsCommand& command);

}  // namespace vlclientui::vlhost
