#include "HelpText.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "documents/ExportFormats.h"

namespace vlclientui::vlhost {
namespace {

struct CommandHelp {
  const char* name;
  const char* usage;
  const char* purpose;
  const char* text;
};

constexpr const char* serverText = R"(
SERVER is one of
  127.0.0.1, localhost   the built-in catalogue (the default): the samples, or the folder that the
                         environment variable VLCLIENTUI_CATALOGUE names
  a folder               the rasters in it and in the folders below
  NAME                   the server of the connection of that name: see vlhost connections --help
  host, host:port        the coverage service (WCS) of that computer, looked for at the usual places
  http://..., https://...   what stands at that address: a coverage service, a catalogue of STAC, an image,
                         or a folder that its web server lists. A user, password or key in it is used by this
                         command and shown nowhere; a connection keeps it off the command line
)";

constexpr const char* referenceText = R"(
REFERENCE is one that services are picked by, such as ImageService://127.0.0.1/World/EGM96_Geoid, or a raster
file, a .VLDef or a .VLRef file.
)";

constexpr CommandHelp commands[] = {
    {"services", "[SERVER] [--json | --xml]", "lists what a server offers", R"(
Prints a table, or with --json or --xml a document: JSON with the size, the coordinate system and the extent of
each service in its own coordinates, or the server's own XML. The line below the table tells how a REFERENCE is
made of a name; in JSON each service has its own. Rasters that cannot be read are left out and named on standard
error.
)"},
    {"export", "REFERENCE [OPTION...] -o FILE\n  vlhost export --job JOB... [OPTION...]",
     "writes an area of a service to an image file", R"(
Values are typed into the fields of the export window in the order given, so what the window refuses is refused
here, in the same words, with the option; what is not given keeps what the window shows at first. A file that is
there is replaced.
  --extent LEFT BOTTOM RIGHT TOP    in the coordinates of the service
  --cols N    --rows N    --pixel-size X Y
  --format ENTRY     {entries}. When it is not given, the ending
                     of FILE tells: {endings}
  --quality Q    --tile-size None|128|256|512
  --metadata         write what the service tells of itself beside the image, and where its pixels come from
  --dry-run          print the request, a plan and the job, and write nothing: what there is to fetch and to write,
                     how long it takes and the room on the disk, measured on a small part
  --json             print what was written, or the plan of a dry run, as a JSON object
  --save-job JOB     write the whole export to a job file, which --job runs; with --dry-run without the export
  --keep-partial     keep what was read beside the file, in FILE.unfinished, where the export breaks off
  --resume           the same, and go on with what an earlier export kept
  --restart          the same, and begin anew where an earlier export kept something
  --progress         tell how far the export is also where standard error is no terminal
  -o, --output FILE  the file to write. It gets the ending of its format, as in image.Tif; where that changes the
                     name, standard error tells the new one before the file is written

Numbers are written as the user's locale has them.

  --job JOB...       run jobs: files that say a whole export, and metadata that --metadata wrote beside an image.
                     All of them are read before the first one runs. Besides go --dry-run, --json, --progress,
                     --keep-partial, --resume and --restart, and
  --keep-going       go on with the next job where one fails or cannot be read
  --log FILE         add a line for each job that was written; with --resume a job in it is not run again, where
                     neither the job nor its file changed since
  -o, --output FILE  write the only job's image to FILE, under exactly this name
)"},
    {"properties", "REFERENCE [--set NAME=VALUE...] [--save FILE | --json]",
     "tells or changes how a service is set up", R"(
Prints an XML document. Values go into the fields of the properties page in the order given; what the page
refuses is refused here, in the same words, and then nothing is written.
  --set NAME=VALUE   change a property first, named by its element: NoData=0, "MosaicMethod=By Attribute",
                     ViewPointX=442500; as often as needed
  --save FILE        write a reference file with the properties instead, which opens like a service. FILE ends
                     in .VLRef or .xml; a former one is replaced, a file of the service itself never
  --json             print the document as JSON
)"},
    {"metadata", "REFERENCE [--level Basic|Full | --service] [--save FILE | --json]",
     "tells what is known of an image", R"(
Prints the metadata of the image of the whole service: its place, how it was made, and its rasters.
  --level LEVEL      Full for all of it (the default), or Basic for the image alone
  --service          what the service tells of itself, in place of the image
  --save FILE        write the document to a file instead
  --json             print the document as JSON
)"},
    {"run", "FILE [--show] [--pause MS] [--json]", "does in the windows what a file of operations says", R"(
Such a file opens dialogs and fills, presses and reads their controls: docs/run-files.md tells how it is written. The
viewer records one. What it reads is printed.
  --show       in windows on the desktop, to be watched; otherwise without a display
  --pause MS   between two operations in shown windows, in milliseconds; 300 when it is not given
  --json       print what was read, and why the run ended early, as a JSON document
)"},
    {"connections", "list | add NAME ADDRESS [OPTION...] | try NAME | remove NAME [--json]",
     "keeps servers by names of one's own", R"(
NAME then stands for ADDRESS, which begins with https:// or http://, as a server and in references:
ImageService://NAME/World/EGM96_Geoid.
  list     prints the connections. Passwords and tokens are never printed
  add      adds one
  try      asks its server for services and tells how many there are
  remove   removes one, with its password or token
  --json   prints what came of it as a JSON document

How the server is to know who asks, one at most:
  --user USER               a user with a password
  --token                   a token, in the header "Authorization: Bearer ..."
  --token-header HEADER     a token in another header
  --token-parameter NAME    a token in a parameter of the address
The password or token is asked for, without showing it; where standard input is no terminal, its first line counts.
  --password-file FILE      the first line of a file, or of standard input for -
  --keep desktop|file|session   where it is kept: in the secret store of the desktop, in a file that only you can read,
                            or nowhere, so that each command asks. When this is not given: in the store if there is
                            one, else in the file, and add tells which
  --replace                 take the place of a connection of that name
)"},
};

constexpr const char* commonText = R"(
An option and its value may also stand in one word: --cols=360. With --verbose standard error also tells each
routine of the windows behind a command that ended without a word, and why. With --allow-outside FOLDER, as often as
needed, virtual rasters and definitions may lead to that folder as well.

What --json prints is described by definitions/vlhost.schema.json. Progress is shown on terminals alone, and so are
colors, unless NO_COLOR or CLICOLOR=0 is set; CLICOLOR_FORCE=1 asks for them anywhere.

Environment: VLCLIENTUI_HOME names the folder that holds definitions/ and help/, VLCLIENTUI_CATALOGUE the
catalogue. VLCLIENTUI_TRACE=1 does what --verbose does. VLCLIENTUI_ALLOW_OUTSIDE, VLCLIENTUI_DRIVERS_OFF and
VLCLIENTUI_DRIVERS_ON tell where files may lead and what opens them.

Exit codes: 0 all went well, 1 something was refused or failed, 2 the command line makes no sense, 3 a job
or a file of operations cannot be read, or makes no sense, and nothing else failed. Whatever failed is told on standard error.
)";

const CommandHelp* find(std::string_view name) {
  const auto* const found = std::ranges::find(commands, name, &CommandHelp::name);
  return found == std::end(commands) ? nullptr : found;
}

std::string allEntries() {
  std::string all;
  for (const ExportFormat& format : exportFormats())
    all += (all.empty() ? "" : ", ") + std::string(format.entry);
  return all;
}

/// The text with what the table of formats tells.
std::string filledIn(std::string text) {
  const std::pair<std::string, std::string> places[] = {{"{entries}", allEntries()},
                                                        {"{endings}", allEndings()}};
  for (const auto& [place, words] : places) {
    if (const auto found = text.find(place); found != std::string::npos)
      text.replace(found, place.size(), words);
  }
  return text;
}

std::string usageLine(const CommandHelp& command) {
  return std::string("  vlhost ") + command.name + " " + command.usage + "\n";
}

std::string helpOf(const CommandHelp& command) {
  const std::string_view name = command.name;
  const char* const about = name == "services"                       ? serverText
                            : name == "connections" || name == "run" ? ""
                                                                     : referenceText;
  return std::string("vlhost ") + command.name + " " + command.purpose + ".\n\nUsage:\n" +
         usageLine(command) + filledIn(command.text) + about + commonText;
}

std::string helpOfAll() {
  std::string usage;
  std::string purposes;
  for (const CommandHelp& command : commands) {
    usage += usageLine(command);
    purposes += "  " + std::string(command.name) +
                std::string(12 - std::string_view(command.name).size(), ' ') + command.purpose + "\n";
  }
  return "vlhost - image services on the command line\n\nUsage:\n" + usage +
         "  vlhost COMMAND --help\n  vlhost --help\n  vlhost --version\n\n" + purposes +
         "\nvlhost COMMAND --help tells the options of a command.\n" + serverText + referenceText +
         commonText;
}

}  // namespace

bool isCommand(std::string_view name) { return find(name) != nullptr; }

std::string helpText(std::string_view command) {
  const CommandHelp* const found = find(command);
  return found == nullptr ? helpOfAll() : helpOf(*found);
}

}  // namespace vlclientui::vlhost
