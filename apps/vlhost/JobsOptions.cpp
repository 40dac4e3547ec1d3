#include "JobsOptions.h"

#include <algorithm>

#include "ExportOptions.h"
#include "HeadlessSession.h"
#include "Words.h"

namespace vlclientui::vlhost {
namespace {

/// An option without a value. @returns whether the word is one.
bool takeJobsSwitch(JobsCommand& command, const std::string& word) {
  if (word == "--keep-going") {
    command.afterFailure = AfterFailure::GoOn;
  } else if (word == "--dry-run") {
    command.dryRun = true;
  } else if (word == "--json") {
    command.format = PlanOutput::Json;
  } else if (word == "--progress") {
    command.progress = ProgressOutput::Always;
  } else {
    return takeKeeping(command.keeping, word);
  }
  return true;
}

}  // namespace

bool namesJobs(const std::vector<std::string>& arguments) {
  return std::ranges::any_of(arguments, [](const std::string& argument) {
    return argument == "--job" || argument.starts_with("--job=");
  });
}

JobsCommand parseJobs(const std::vector<std::string>& arguments) {
  JobsCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "-o" || word == "--output") {
      command.output = wholePath(words.takeFile(word)).string();
      refuseUnwritable(command.output);
    } else if (word == "--log") {
      command.log = words.takeFile(word);
    } else if (word == "--job") {
      command.files.push_back(words.takeFile(word));
    } else if (takeJobsSwitch(command, word)) {
      continue;
    } else if (word.starts_with("-")) {
      throw Misuse("'" + word + "' does not go with '--job', which says all of an export");
    } else {
      command.files.push_back(word);
    }
  }
  if (!command.output.empty() && command.files.size() > 1) throw Misuse("'-o' goes with a single job");
  return command;
}

}  // namespace vlclientui::vlhost
