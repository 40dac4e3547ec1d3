#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "CommandLine.h"
#include "ServiceReport.h"
#include "client/CatalogueServerClient.h"
#include "frame/ThreadState.h"
#include "host/Compose.h"

namespace {

using namespace vlclientui;
using namespace vlclientui::vlhost;

enum ExitCode { Success = 0, Failure = 1, WrongUsage = 2 };

// On a command line a folder may be named from where one stands; a server text always says the whole.
std::string serverText(const std::string& given) {
  std::error_code error;
  const std::filesystem::path path(given);
  const bool relativeFolder = path.is_relative() && std::filesystem::is_directory(path, error);
  return relativeFolder ? std::filesystem::absolute(path).lexically_normal().string() : given;
}

std::string report(OutputFormat format, const XmlService& xml, const std::string& server,
                   const std::string& answer) {
  if (format == OutputFormat::Xml) return answer + "\n";
  const auto services = host::readServices(xml, answer);
  return format == OutputFormat::Json ? serviceJson(services, server) : serviceTable(services, server);
}

// What nobody gets was not done: a full disk, for one.
int withOutputKept(int exitCode) {
  if (std::cout.flush()) return exitCode;
  std::cerr << "vlhost: the output cannot be written\n";
  return exitCode == Success ? Failure : exitCode;
}

struct Runner {
  int operator()(const HelpCommand&) const {
    std::cout << helpText();
    return Success;
  }

  int operator()(const VersionCommand&) const {
    std::cout << "vlhost " << VLCLIENTUI_VERSION << "\n";
    return Success;
  }

  int operator()(const UsageError& error) const {
    std::cerr << "vlhost: " << error.reason << "; vlhost --help tells the usage\n";
    return WrongUsage;
  }

  int operator()(const ExportCommand& command) const { return runExport(command); }
  int operator()(const PropertiesCommand& command) const { return runProperties(command); }
  int operator()(const MetadataCommand& command) const { return runMetadata(command); }

  int operator()(const ServicesCommand& command) const {
    const host::ComposedHost composed = host::composeHeadlessPlatform({});
    setPlatform(composed.platform);
    const std::string server = serverText(command.server);
    client::OVLCatalogueServerClient serverClient(composed.catalogue);
    const std::string answer = serverClient.GetServerInfo(host::serverInfoRequest(server));
    for (const auto& problem : serverClient.problems()) {
      std::cerr << "vlhost: left out " << problem.path << ": " << problem.reason << "\n";
    }
    if (answer.empty()) {
      std::cerr << "vlhost: the server '" << server << "' does not answer\n";
      return Failure;
    }
    std::cout << report(command.format, *composed.platform->xml, server, answer);
    return Success;
  }
};

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    return withOutputKept(std::visit(Runner(), parseCommandLine({arguments + 1, arguments + argumentCount})));
  } catch (const std::exception& failure) {
    std::cerr << "vlhost: " << failure.what() << "\n";
    return Failure;
  }
}
