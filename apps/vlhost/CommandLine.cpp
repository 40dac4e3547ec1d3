#include "CommandLine.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

#include "ExportOptions.h"
#include "HelpText.h"
#include "JobsOptions.h"
#include "Words.h"

namespace vlclientui::vlhost {
namespace {

bool contains(const std::vector<std::string>& arguments, std::initializer_list<const char*> names) {
  return std::ranges::any_of(arguments, [&](const std::string& argument) {
    return std::find(names.begin(), names.end(), argument) != names.end();
  });
}

bool acceptsAnything(const std::string& /*word*/) { return true; }

ServicesCommand parseServices(const std::vector<std::string>& arguments) {
  ServicesCommand command;
  bool serverGiven = false;
  if (contains(arguments, {"--json"}) && contains(arguments, {"--xml"})) {
    throw Misuse("'--json' and '--xml' do not go together");
  }
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "--json" || word == "--xml") {
      command.format = word == "--json" ? OutputFormat::Json : OutputFormat::Xml;
    } else if (word.starts_with("-")) {
      throw Misuse("unknown option '" + word + "'");
    } else if (serverGiven) {
      throw Misuse("more than one server: '" + word + "'");
    } else {
      command.server = word;
      serverGiven = true;
    }
  }
  return command;
}

/// The word is a reference, where none was given before. @throws Misuse for any other word.
void takeReference(std::string& reference, const std::string& word) {
  if (word.starts_with("-") || !reference.empty()) throw Misuse("cannot make sense of '" + word + "'");
  reference = word;
}

PropertyEdit takeEdit(Words& words) {
  const std::string edit = words.takeValue(acceptsAnything).value_or("");
  const auto equals = edit.find('=');
  if (equals == std::string::npos || equals == 0) throw Misuse("'--set' wants Name=Value");
  return {edit.substr(0, equals), edit.substr(equals + 1)};
}

// Under another name the file would be taken for a raster when it is opened again.
std::string takeReferenceFile(Words& words) {
  const std::string file = words.takeFile("--save");
  std::string ending = std::filesystem::path(file).extension().string();
  std::ranges::transform(ending, ending.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (ending != ".vlref" && ending != ".xml")
    throw Misuse("the file behind '--save' must end in .VLRef or .xml");
  return file;
}

void refuseTwoOutputs(const std::string& file, DocumentOutput format) {
  if (!file.empty() && format == DocumentOutput::Json)
    throw Misuse("'--json' and '--save' do not go together");
}

PropertiesCommand parseProperties(const std::vector<std::string>& arguments) {
  PropertiesCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "--set") {
      command.edits.push_back(takeEdit(words));
    } else if (word == "--save") {
      command.file = takeReferenceFile(words);
    } else if (word == "--json") {
      command.format = DocumentOutput::Json;
    } else {
      takeReference(command.reference, word);
    }
  }
  if (command.reference.empty()) throw Misuse("no service is named");
  refuseTwoOutputs(command.file, command.format);
  return command;
}

MetadataCommand::Document takeLevel(Words& words) {
  const std::string level = words.takeValue(acceptsAnything).value_or("");
  if (level != "Basic" && level != "Full") throw Misuse("'--level' wants Basic or Full");
  return level == "Basic" ? MetadataCommand::Document::ImageBasic : MetadataCommand::Document::ImageFull;
}

MetadataCommand parseMetadata(const std::vector<std::string>& arguments) {
  MetadataCommand command;
  Words words(arguments);
  bool levelGiven = false;
  bool serviceGiven = false;
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "--level") {
      command.document = takeLevel(words);
      levelGiven = true;
    } else if (word == "--service") {
      serviceGiven = true;
    } else if (word == "--save") {
      command.file = words.takeFile(word);
    } else if (word == "--json") {
      command.format = DocumentOutput::Json;
    } else {
      takeReference(command.reference, word);
    }
  }
  if (command.reference.empty()) throw Misuse("no service is named");
  refuseTwoOutputs(command.file, command.format);
  if (levelGiven && serviceGiven) throw Misuse("'--level' is of the image; it does not go with '--service'");
  if (serviceGiven) command.document = MetadataCommand::Document::Service;
  return command;
}

int takePause(Words& words) {
  const std::string text = words.takeValue(acceptsAnything).value_or("");
  int pause = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), pause);
  constexpr int longest = 60'000;
  if (read.ec != std::errc() || read.ptr != text.data() + text.size() || pause < 0 || pause > longest)
    throw Misuse("'--pause' wants milliseconds from 0 to 60000");
  return pause;
}

RunCommand parseRun(const std::vector<std::string>& arguments) {
  RunCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "--show") {
      command.windows = RunWindows::Shown;
    } else if (word == "--json") {
      command.format = PlanOutput::Json;
    } else if (word == "--pause") {
      command.pause = takePause(words);
    } else {
      takeReference(command.file, word);
    }
  }
  if (command.file.empty()) throw Misuse("no file is named");
  return command;
}

Command parseCommand(const std::string& name, const std::vector<std::string>& arguments) {
  if (name == "services") return parseServices(arguments);
  if (name == "export" && namesJobs(arguments)) return parseJobs(arguments);
  if (name == "export") return parseExport(arguments);
  if (name == "properties") return parseProperties(arguments);
  if (name == "metadata") return parseMetadata(arguments);
  if (name == "connections") return parseConnections(arguments);
  if (name == "run") return parseRun(arguments);
  throw Misuse("unknown command '" + name + "'");
}

}  // namespace

Command parseCommandLine(const std::vector<std::string>& arguments) {
  if (arguments.empty()) return UsageError{"no command given"};
  const std::string& first = arguments.front();
  if (contains(arguments, {"--help", "-h"})) return HelpCommand{isCommand(first) ? first : std::string()};
  if (contains(arguments, {"--version"})) return VersionCommand{};
  try {
    return parseCommand(first, {arguments.begin() + 1, arguments.end()});
  } catch (const Misuse& misuse) {
    return UsageError{misuse.what()};
  }
}

}  // namespace vlclientui::vlhost
