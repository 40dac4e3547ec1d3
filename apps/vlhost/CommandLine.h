#pragma once

#include <string>
#include <variant>
#include <vector>

#include "ExportCommand.h"
#include "MetadataCommand.h"
#include "PropertiesCommand.h"

namespace vlclientui::vlhost {

enum class OutputFormat { Table, Json, Xml };

struct HelpCommand {};
struct VersionCommand {};
struct ServicesCommand {
  std::string server = "127.0.0.1";
  OutputFormat format = OutputFormat::Table;
};
/// The command line makes no sense.
struct UsageError {
  std::string reason;
};

using Command = std::variant<HelpCommand, VersionCommand, ServicesCommand, ExportCommand, PropertiesCommand,
                             MetadataCommand, UsageError>;

/// @param arguments without the program's own name.
[[nodiscard]] Command parseCommandLine(const std::vector<std::string>& arguments);

/// What --help prints.
[[nodiscard]] std::string helpText();

}  // namespace vlclientui::vlhost
