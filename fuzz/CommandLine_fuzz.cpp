// Input: words with line ends between, as the command line of vlhost.

#include <variant>

#include "CommandLine.h"
#include "Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vlclientui;
  const std::string text = fuzzing::textOf(data, size);
  std::vector<std::string> words;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    // A word of a command line ends at a zero byte.
    words.emplace_back(text.substr(begin, end - begin).c_str());
    begin = end + 1;
  }
  const vlhost::Command command = vlhost::parseCommandLine(words);
  if (const auto* const wrong = std::get_if<vlhost::UsageError>(&command))
    fuzzing::require(!wrong->reason.empty(), "a refusal has words");
  if (const auto* const jobs = std::get_if<vlhost::JobsCommand>(&command))
    fuzzing::require(!jobs->files.empty(), "there are jobs to run");
  if (const auto* const exported = std::get_if<vlhost::ExportCommand>(&command))
    fuzzing::require(!exported->output.empty() && !exported->reference.empty(), "an export is whole");
  return 0;
}
