#include "CommandLine.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

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
  if (contains(arguments, {"--json"}) && contains(arguments, {"--xml"})) {
    return UsageError{"'--json' and '--xml' do not go together"};
  }
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

/// An option of export, and the fields that its values are typed into.
struct ExportOption {
  const char* name;
  std::vector<const char*> controls;
};

/// What the ending of a file tells of its format.
struct FormatEnding {
  const char* ending;
  const char* entry;
};

constexpr FormatEnding formatEndings[] = {
    {".tif", "TIFF-No Compression"},
    {".tiff", "TIFF-No Compression"},
    {".jpg", "JPEG"},
    {".jpeg", "JPEG"},
    {".jp2", "JP2"},
    {".png", "PNG"},
};

constexpr const char* kFormatList = "FormatCombo";

const std::vector<ExportOption>& exportOptions() {
  static const std::vector<ExportOption> options{
      {"--extent", {"uiTxtLeft", "uiTxtBottom", "uiTxtRight", "uiTxtTop"}},
      {"--cols", {"uiTxtCols"}},
      {"--rows", {"uiTxtRows"}},
      {"--pixel-size", {"uiTxtGSDX", "uiTxtGSDY"}},
      {"--format", {kFormatList}},
      {"--quality", {"uiTxtCompression"}},
      {"--tile-size", {"TileSizeCombo"}},
  };
  return options;
}

/// The words of a command line, taken one by one.
class Words {
 public:
  explicit Words(const std::vector<std::string>& words) : words_(words) {}
  [[nodiscard]] bool atEnd() const { return next_ == words_.size(); }
  [[nodiscard]] const std::string& peek() const { return words_[next_]; }
  const std::string& take() { return words_[next_++]; }

 private:
  const std::vector<std::string>& words_;
  std::size_t next_ = 0;
};

/// A file whose name begins with a dash can be given as "./-name".
bool hasFileNext(const Words& words) {
  return !words.atEnd() && !words.peek().empty() && !words.peek().starts_with("-");
}

bool isExportOption(const std::string& word) {
  const auto names = [&word](const ExportOption& each) { return word == each.name; };
  return word == "--metadata" || word == "--dry-run" || word == "-o" ||
         std::ranges::any_of(exportOptions(), names);
}

/// @returns false when there are fewer values than fields, as where the next option begins.
bool takeValues(ExportCommand& command, const ExportOption& option, Words& words) {
  for (const char* const control : option.controls) {
    if (words.atEnd() || isExportOption(words.peek())) return false;
    command.edits.push_back({control, words.take()});
  }
  return true;
}

bool hasEnding(const std::string& file, const std::string& ending) {
  const auto same = [](unsigned char one, unsigned char other) {
    return std::tolower(one) == std::tolower(other);
  };
  return file.size() > ending.size() && std::equal(ending.rbegin(), ending.rend(), file.rbegin(), same);
}

/// First, since a format resets quality and tile size.
void chooseFormatOf(ExportCommand& command) {
  if (std::ranges::count(command.edits, kFormatList, &FieldEdit::control) > 0) return;
  const auto* const found = std::ranges::find_if(
      formatEndings, [&](const FormatEnding& each) { return hasEnding(command.output, each.ending); });
  if (found != std::end(formatEndings))
    command.edits.insert(command.edits.begin(), {kFormatList, found->entry});
}

Command completed(ExportCommand command) {
  if (command.reference.empty()) return UsageError{"no service is named"};
  if (command.output.empty()) return UsageError{"no file is named; give one behind -o"};
  const std::string name = std::filesystem::path(command.output).filename().string();
  if (name.empty() || name == "." || name == "..") {
    return UsageError{"'" + command.output + "' behind '-o' names no file"};
  }
  chooseFormatOf(command);
  return command;
}

Command parseExport(const std::vector<std::string>& arguments) {
  ExportCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    const auto option = std::ranges::find_if(exportOptions(),
                                             [&word](const ExportOption& each) { return word == each.name; });
    if (option != exportOptions().end()) {
      if (!takeValues(command, *option, words)) return UsageError{"too few values behind '" + word + "'"};
    } else if (word == "--metadata") {
      command.edits.push_back({"ExportMD", ""});
    } else if (word == "--dry-run") {
      command.dryRun = true;
    } else if (word == "-o") {
      if (!hasFileNext(words)) return UsageError{"no file behind '-o'"};
      command.output = words.take();
    } else if (word.starts_with("-") || !command.reference.empty()) {
      return UsageError{"cannot make sense of '" + word + "'"};
    } else {
      command.reference = word;
    }
  }
  return completed(std::move(command));
}

/// The word is a reference, where none was given before.
bool takeReference(std::string& reference, const std::string& word) {
  if (word.starts_with("-") || !reference.empty()) return false;
  reference = word;
  return true;
}

Command parseProperties(const std::vector<std::string>& arguments) {
  PropertiesCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "--set") {
      const std::string edit = words.atEnd() ? "" : words.take();
      const auto equals = edit.find('=');
      if (equals == std::string::npos || equals == 0) return UsageError{"'--set' wants Name=Value"};
      command.edits.push_back({edit.substr(0, equals), edit.substr(equals + 1)});
    } else if (word == "--save") {
      if (!hasFileNext(words)) return UsageError{"no file behind '--save'"};
      command.file = words.take();
      // Under another name the file would be taken for a raster when it is opened again.
      if (!hasEnding(command.file, ".VLRef") && !hasEnding(command.file, ".xml")) {
        return UsageError{"the file behind '--save' must end in .VLRef or .xml"};
      }
    } else if (!takeReference(command.reference, word)) {
      return UsageError{"cannot make sense of '" + word + "'"};
    }
  }
  if (command.reference.empty()) return UsageError{"no service is named"};
  return command;
}

Command parseMetadata(const std::vector<std::string>& arguments) {
  using Document = MetadataCommand::Document;
  MetadataCommand command;
  Words words(arguments);
  bool levelGiven = false;
  while (!words.atEnd()) {
    const std::string word = words.take();
    if (word == "--level") {
      const std::string level = words.atEnd() ? "" : words.take();
      if (level != "Basic" && level != "Full") return UsageError{"'--level' wants Basic or Full"};
      command.document = level == "Basic" ? Document::ImageBasic : Document::ImageFull;
      levelGiven = true;
    } else if (word == "--service") {
      command.document = Document::Service;
    } else if (word == "--save") {
      if (!hasFileNext(words)) return UsageError{"no file behind '--save'"};
      command.file = words.take();
    } else if (!takeReference(command.reference, word)) {
      return UsageError{"cannot make sense of '" + word + "'"};
    }
  }
  if (command.reference.empty()) return UsageError{"no service is named"};
  if (levelGiven && std::ranges::count(arguments, "--service") > 0) {
    return UsageError{"'--level' is of the image; it does not go with '--service'"};
  }
  return command;
}

}  // namespace

Command parseCommandLine(const std::vector<std::string>& arguments) {
  if (contains(arguments, {"--help", "-h"})) return HelpCommand{};
  if (contains(arguments, {"--version"})) return VersionCommand{};
  if (arguments.empty()) return UsageError{"no command given"};
  if (arguments.front() == "services") return parseServices({arguments.begin() + 1, arguments.end()});
  if (arguments.front() == "export") return parseExport({arguments.begin() + 1, arguments.end()});
  if (arguments.front() == "properties") return parseProperties({arguments.begin() + 1, arguments.end()});
  if (arguments.front() == "metadata") return parseMetadata({arguments.begin() + 1, arguments.end()});
  return UsageError{"unknown command '" + arguments.front() + "'"};
}

std::string helpText() {
  return R"(vlhost - image services on the command line

Usage:
  vlhost services [SERVER] [--json | --xml]
  vlhost export REFERENCE [OPTION...] -o FILE
  vlhost properties REFERENCE [--set NAME=VALUE...] [--save FILE]
  vlhost metadata REFERENCE [--level Basic|Full | --service] [--save FILE]
  vlhost --help
  vlhost --version

services lists what a server offers, as a table, as JSON, or as the server's own XML document. The line below the
table tells how a REFERENCE is made of a name; in JSON each service has its own.

SERVER is one of
  127.0.0.1, localhost   the built-in catalogue (the default): the samples, or the folder that the
                         environment variable VLCLIENTUI_CATALOGUE names
  a folder               the rasters in it and in the folders below

REFERENCE is one that services are picked by, such as ImageService://127.0.0.1/World/EGM96_Geoid, or a raster
file, a .VLDef or a .VLRef file.

export writes an area of a service to an image file. Values are typed into the fields of the export window in
the order given, so what the window refuses is refused here, in the same words; what is not given keeps what
the window shows at first. A file that is there is replaced.
  --extent LEFT BOTTOM RIGHT TOP    --cols N    --rows N    --pixel-size X Y
  --format ENTRY     TIFF-No Compression, TIFF-JPEG, TIFF-LZ77, JPEG, JP2 or PNG. When it is not given, the ending
                     of FILE tells: .tif, .tiff, .jpg, .jpeg, .jp2 or .png
  --quality Q    --tile-size None|128|256|512
  --metadata         write what the service tells of itself beside the image
  --dry-run          print the request and the estimate, and write nothing
Whatever the ending of FILE is, the file that is written has the one of its format: .Tif, .JPEG, .JP2 or .PNG.

properties prints how a service is set up, as an XML document. Values go into the fields of the properties page
in the order given; what the page refuses is refused here, in the same words, and then nothing is written.
  --set NAME=VALUE   change a property first, named by its element: NoData=0, "MosaicMethod=By Attribute",
                     ViewPointX=442500; as often as needed
  --save FILE        write a reference file with the properties instead, which opens like a service. FILE ends
                     in .VLRef or .xml; a former one is replaced, a file of the service itself never

metadata prints what is known of the image of the whole service: its place, how it was made, and its rasters.
  --level LEVEL      Full for all of it (the default), or Basic for the image alone
  --service          what the service tells of itself, in place of the image
  --save FILE        write the document to a file instead

Environment: VLCLIENTUI_HOME names the folder that holds definitions/ and help/, VLCLIENTUI_CATALOGUE the
catalogue.

Exit codes: 0 all went well, 1 the server did not answer or something failed, 2 the command line makes
no sense. Rasters that cannot be read are left out and named on standard error.
)";
}

}  // namespace vlclientui::vlhost
