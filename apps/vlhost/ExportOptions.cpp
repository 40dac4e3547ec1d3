#include "ExportOptions.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "Words.h"
#include "contracts/Utf8.h"
#include "documents/ExportFormats.h"

namespace vlclientui::vlhost {
namespace {

/// An option of export, and the fields that its values are typed into.
struct ExportOption {
  const char* name;
  std::vector<const char*> controls;
};

constexpr const char* formatList = "FormatCombo";

const std::vector<ExportOption>& exportOptions() {
  static const std::vector<ExportOption> options{
      {"--extent", {"uiTxtLeft", "uiTxtBottom", "uiTxtRight", "uiTxtTop"}},
      {"--cols", {"uiTxtCols"}},
      {"--rows", {"uiTxtRows"}},
      {"--pixel-size", {"uiTxtGSDX", "uiTxtGSDY"}},
      {"--format", {formatList}},
      {"--quality", {"uiTxtCompression"}},
      {"--tile-size", {"TileSizeCombo"}},
  };
  return options;
}

bool isFileOption(const std::string& word) {
  return word == "-o" || word == "--output" || word == "--save-job";
}

/// An option without a value. @returns whether the word is one.
bool takeSwitch(ExportCommand& command, const std::string& word) {
  if (word == "--metadata") {
    command.edits.push_back({"ExportMD", ""});
  } else if (word == "--dry-run") {
    command.dryRun = true;
  } else if (word == "--json") {
    command.plan = PlanOutput::Json;
  } else if (word == "--progress") {
    command.progress = ProgressOutput::Always;
  } else {
    return takeKeeping(command.keeping, word);
  }
  return true;
}

/// A value may begin with a minus, so only a known option ends the values of another.
bool isNoOption(const std::string& word) {
  ExportCommand unused;
  const auto named = [&word](const ExportOption& each) { return word == each.name; };
  return !takeSwitch(unused, word) && !isFileOption(word) && std::ranges::none_of(exportOptions(), named);
}

void takeValues(ExportCommand& command, const ExportOption& option, Words& words) {
  if (option.controls.size() > 1) words.splitJoinedValue();
  for (const char* const control : option.controls) {
    const auto value = words.takeValue(isNoOption);
    if (!value) throw Misuse(std::string("too few values behind '") + option.name + "'");
    command.edits.push_back({control, *value, option.name});
  }
}

/// A dot at the end of a name begins no ending.
bool hasEnding(const std::string& name) { return name.find('.') < name.size() - 1; }

/// The format of the ending goes first, since a format resets quality and tile size.
void followEnding(ExportCommand& command, const std::string& name) {
  if (!hasEnding(name)) return;
  const ExportFormat* const format = exportFormatOf(name);
  if (format == nullptr)
    throw Misuse("no format has the ending of '" + name + "'; there are " + allEndings());
  if (std::ranges::count(command.edits, formatList, &FieldEdit::control) > 0) return;
  command.edits.insert(command.edits.begin(), {formatList, format->entry});
}

ExportCommand completed(ExportCommand command) {
  if (command.reference.empty()) throw Misuse("no service is named");
  if (command.output.empty()) throw Misuse("no file is named; give one behind -o");
  const std::string name = std::filesystem::path(command.output).filename().string();
  if (name.empty() || name == "." || name == "..")
    throw Misuse("'" + command.output + "' behind '-o' names no file");
  refuseUnwritable(command.output);
  followEnding(command, name);
  return command;
}

}  // namespace

void refuseUnwritable(const std::string& file) {
  const auto isControl = [](unsigned char c) { return c < 0x20 || c == 0x7F; };
  if (!isUtf8(file)) throw Misuse("the name behind '-o' is no UTF-8 text");
  if (std::ranges::any_of(file, isControl)) throw Misuse("the name behind '-o' holds a control character");
}

bool takeKeeping(client::Keeping& keeping, const std::string& word) {
  using client::Keeping;
  static const std::vector<std::pair<const char*, Keeping>> options = {
      {"--keep-partial", Keeping::Begin}, {"--resume", Keeping::GoOn}, {"--restart", Keeping::Anew}};
  const auto found = std::ranges::find_if(options, [&](const auto& each) { return word == each.first; });
  if (found == options.end()) return false;
  if (keeping != Keeping::Nothing && keeping != found->second)
    throw Misuse("of '--keep-partial', '--resume' and '--restart' only one can be given");
  keeping = found->second;
  return true;
}

ExportCommand parseExport(const std::vector<std::string>& arguments) {
  ExportCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    const auto named = [&word](const ExportOption& each) { return word == each.name; };
    const auto option = std::ranges::find_if(exportOptions(), named);
    if (option != exportOptions().end()) {
      takeValues(command, *option, words);
    } else if (takeSwitch(command, word)) {
      continue;
    } else if (isFileOption(word)) {
      (word == "--save-job" ? command.jobFile : command.output) = words.takeFile(word);
    } else if (word.starts_with("-") || !command.reference.empty()) {
      throw Misuse("cannot make sense of '" + word + "'");
    } else {
      command.reference = word;
    }
  }
  return completed(std::move(command));
}

}  // namespace vlclientui::vlhost
