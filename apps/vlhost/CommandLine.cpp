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

/// An option of export, and the fields that its values are typed into.
struct ExportOption {
  const char* name;
  std::vector<const char*> controls;
};

const std::vector<ExportOption>& exportOptions() {
  static const std::vector<ExportOption> options{
      {"--extent", {"uiTxtLeft", "uiTxtBottom", "uiTxtRight", "uiTxtTop"}},
      {"--cols", {"uiTxtCols"}},
      {"--rows", {"uiTxtRows"}},
      {"--pixel-size", {"uiTxtGSDX", "uiTxtGSDY"}},
      {"--format", {"FormatCombo"}},
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
  [[nodiscard]] bool has(std::size_t count) const { return words_.size() - next_ >= count; }
  const std::string& take() { return words_[next_++]; }

 private:
  const std::vector<std::string>& words_;
  std::size_t next_ = 0;
};

Command parseExport(const std::vector<std::string>& arguments) {
  ExportCommand command;
  Words words(arguments);
  while (!words.atEnd()) {
    const std::string word = words.take();
    const auto option = std::ranges::find_if(exportOptions(),
                                             [&word](const ExportOption& each) { return word == each.name; });
    if (option != exportOptions().end()) {
      if (!words.has(option->controls.size())) return UsageError{"too few values behind '" + word + "'"};
      for (const char* const control : option->controls) command.edits.push_back({control, words.take()});
    } else if (word == "--metadata") {
      command.edits.push_back({"ExportMD", ""});
    } else if (word == "--dry-run") {
      command.dryRun = true;
    } else if (word == "-o") {
      if (words.atEnd()) return UsageError{"no file behind '-o'"};
      command.output = words.take();
    } else if (word.starts_with("-") || !command.reference.empty()) {
      return UsageError{"cannot make sense of '" + word + "'"};
    } else {
      command.reference = word;
    }
  }
  if (command.reference.empty()) return UsageError{"no service is named"};
  if (command.output.empty()) return UsageError{"no file is named; give one behind -o"};
  return command;
}

}  // namespace

Command parseCommandLine(const std::vector<std::string>& arguments) {
  if (contains(arguments, {"--help", "-h"})) return HelpCommand{};
  if (contains(arguments, {"--version"})) return VersionCommand{};
  if (arguments.empty()) return UsageError{"no command given"};
  if (arguments.front() == "services") return parseServices({arguments.begin() + 1, arguments.end()});
  if (arguments.front() == "export") return parseExport({arguments.begin() + 1, arguments.end()});
  return UsageError{"unknown command '" + arguments.front() + "'"};
}

std::string helpText() {
  return R"(vlhost - image services on the command line

Usage:
  vlhost services [SERVER] [--json | --xml]
  vlhost export REFERENCE [OPTION...] -o FILE
  vlhost --help
  vlhost --version

services lists what a server offers, as a table, as JSON, or as the server's own XML document.

SERVER is one of
  127.0.0.1, localhost   the built-in catalogue (the default): the samples, or the folder that the
                         environment variable VLCLIENTUI_CATALOGUE names
  a folder               the rasters in it and in the folders below

export writes an area of a service to an image file. REFERENCE is one that services are picked by, such as
ImageService://127.0.0.1/World/EGM96_Geoid, or a raster file, a .VLDef or a .VLRef file. Values are typed into
the fields of the export window in the order given, so what the window refuses is refused here, in the same
words; what is not given keeps what the window shows at first.
  --extent LEFT BOTTOM RIGHT TOP    --cols N    --rows N    --pixel-size X Y
  --format ENTRY     TIFF-No Compression, TIFF-JPEG, TIFF-LZ77, JPEG, JP2 or PNG
  --quality Q    --tile-size None|128|256|512
  --metadata         write what the service tells of itself beside the image
  --dry-run          print the request and the estimate, and write nothing

Exit codes: 0 all went well, 1 the server did not answer or something failed, 2 the command line makes
no sense. Rasters that cannot be read are left out and named on standard error.
)";
}

}  // namespace vlclientui::vlhost
