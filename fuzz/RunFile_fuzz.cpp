// Input: any text, as a file of operations. What is read is written as a file that reads the same.

#include "Require.h"
#include "contracts/RuntimeFailure.h"
#include "runs/RunFile.h"

namespace {

using namespace vlclientui;
using fuzzing::require;

std::string written(const std::vector<runs::RunStatement>& statements) {
  std::string text = runs::runHeader();
  for (const runs::RunStatement& statement : statements) text += runs::runLine(statement);
  return text;
}

void check(const std::vector<runs::RunStatement>& read) {
  const std::string text = written(read);
  const auto again = runs::readRun(text);
  require(again.size() == read.size(), "as many statements are read again");
  for (std::size_t i = 0; i < read.size(); ++i) {
    require(again[i].verb == read[i].verb, "a verb stays the same");
    require(again[i].words == read[i].words, "words stay the same");
  }
  require(written(again) == text, "a file that was written stays as it is");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<runs::RunStatement> read;
  try {
    read = runs::readRun(fuzzing::textOf(data, size));
  } catch (const RuntimeFailure& failure) {
    require(failure.description().starts_with("line "), "a refusal names its line");
    return 0;
  }
  check(read);
  return 0;
}
