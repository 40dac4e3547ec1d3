#include "CommandLine.h"

#include <algorithm>

namespace vlclientui::vlhost {
namespace {

bool contains(const std::vector<std::string>& arguments, std::initializer_list<const char*> names) {
  return std::any_of(arguments.begin(), arguments.end(), [&](const std::string& argument) {
    return std::find(names.begin(), names.end(), argument) != names.end();
  });
}

Command parseServices(const std::vector<std::string>& arguments) {
  ServicesCommand command;
  bool serverGiven = false;
  for (const std::string& argument : arguments) {
    if (argument == "--json") {
      command.format = OutputFormat::Json;
    } else if (argument == "--xml") {
      command.format = OutputFormat::Xml;
    } else if (argument.starts_with("-")) {
      return UsageError{"unknown option '" + argument + "'"};
    } else if (serverGiven) {
      return UsageError{"more than one server: '" + argument + "'"};
    } else {
      command.server = argument;
      serverGiven = true;
    }
  }
  return command;
}

}  // namespace

Command parseCommandLine(const std::vector<std::string>& arguments) {
  if (contains(arguments, {"--help", "-h"})) return HelpCommand{};
  if (contains(arguments, {"--version"})) return VersionCommand{};
  if (arguments.empty()) return UsageError{"no command given"};
  if (arguments.front() == "services") return parseServices({arguments.begin() + 1, arguments.end()});
  return UsageError{"unknown command '" + arguments.front() + "'"};
}

std::string helpText() {
  return R"(vlhost - image services on the command line

Usage:
  vlhost services [SERVER] [--json | --xml]
  vlhost --help
  vlhost --version

services lists what a server offers, as a table, as JSON, or as the server's own XML document.

SERVER is one of
  127.0.0.1, localhost   the built-in catalogue (the default): the samples, or the folder that the
                         environment variable VLCLIENTUI_CATALOGUE names
  a folder               the rasters in it and in the folders below

Exit codes: 0 all went well, 1 the server did not answer or something failed, 2 the command line makes
no sense. Rasters that cannot be read are left out and named on standard error.
)";
}

}  // namespace vlclientui::vlhost
