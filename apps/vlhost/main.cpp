#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "AllowedFolders.h"
#include "CommandLine.h"
#include "ExitCode.h"
#include "HelpText.h"
#include "SecretPrompt.h"
#include "SilencePrinter.h"
#include "Telling.h"

namespace {

using namespace vlclientui::vlhost;

// Output that could not be written counts as a failure, for example on a full disk.
int withOutputKept(int exitCode) {
  if (std::cout.flush()) return exitCode;
  tell("the output cannot be written");
  return exitCode == Success ? Failure : exitCode;
}

struct Runner {
  int operator()(const HelpCommand& command) const {
    std::cout << helpText(command.topic);
    return Success;
  }

  int operator()(const VersionCommand&) const {
    std::cout << "vlhost " << VLCLIENTUI_VERSION << "\n";
    return Success;
  }

  int operator()(const UsageError& error) const {
    tell(error.reason + "; vlhost --help tells the usage");
    return WrongUsage;
  }

  int operator()(const ServicesCommand& command) const { return runServices(command); }
  int operator()(const ExportCommand& command) const { return runExport(command); }
  int operator()(const JobsCommand& command) const { return runJobs(command); }
  int operator()(const PropertiesCommand& command) const { return runProperties(command); }
  int operator()(const MetadataCommand& command) const { return runMetadata(command); }
  int operator()(const RunCommand& command) const { return runRunFile(command); }
  int operator()(const ConnectionsCommand& command) const { return runConnections(command); }
};

}  // namespace

int main(int argumentCount, char** arguments) {
  try {
    std::vector<std::string> words(arguments + 1, arguments + argumentCount);
    answerQuestionsOfConnections();
    const auto printer = takeVerbose(words) ? std::make_unique<SilencePrinter>() : nullptr;
    if (const std::string problem = takeAllowedFolders(words); !problem.empty())
      return Runner()(UsageError{problem});
    return withOutputKept(std::visit(Runner(), parseCommandLine(words)));
  } catch (const std::exception& failure) {
    tell(failure.what());
    return Failure;
  }
}
