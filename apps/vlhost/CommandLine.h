#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ConnectionsCommand.h"
#include "ExportCommand.h"
#include "JobsCommand.h"
#include "MetadataCommand.h"
#include "PropertiesCommand.h"
#include "RunCommand.h"
#include "ServicesCommand.h"

namespace vlclientui::vlhost {

struct HelpCommand {
  std::string topic;  ///< a command; empty for all of them
};
struct VersionCommand {};
/// The command line makes no sense.
struct UsageError {
  std::string reason;
};

using Command = std::variant<HelpCommand, VersionCommand, ServicesCommand, ExportCommand, JobsCommand,
                             PropertiesCommand, MetadataCommand, ConnectionsCommand, RunCommand, UsageError>;

/// @param arguments without the program's own name.
[[nodiscard]] Command parseCommandLine(const std::vector<std::string>& arguments);

}  // namespace vlclientui::vlhost
