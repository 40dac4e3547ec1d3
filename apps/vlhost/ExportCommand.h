#pragma once

#include <string>
#include <vector>

#include "client/facade/ExportForecast.h"

namespace vlclientui::vlhost {

/// Something that a person would type into a field of the export window, or choose there.
struct FieldEdit {
  std::string control;      ///< the control's name
  std::string text;         ///< as typed, under the user's locale; an entry for a list
  std::string option = {};  ///< that gave it; empty for what no option gives
};

/// Where a person can watch how far an export is.
enum class ProgressOutput { OnTerminalsOnly, Always };

/// How the plan of a dry run is told.
enum class PlanOutput { Text, Json };

struct ExportCommand {
  std::string reference;
  std::vector<FieldEdit> edits;  ///< in the order of the command line
  std::string output;
  std::string jobFile = {};  ///< where the job of the export is written; empty for nowhere
  bool dryRun = false;
  PlanOutput plan = PlanOutput::Text;
  client::Keeping keeping = client::Keeping::Nothing;
  ProgressOutput progress = ProgressOutput::OnTerminalsOnly;
};

/// Runs the export window without a screen: the same fields and checks, the same words of refusal, which go
/// to standard error. A dry run prints the `GetImage` element and what the export would take, and writes
/// nothing.
/// @returns the exit code.
[[nodiscard]] int runExport(const ExportCommand& command);

}  // namespace vlclientui::vlhost
