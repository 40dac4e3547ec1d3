#include "viewer/window/Session.h"

#include <cstdlib>
#include <system_error>

namespace vlclientui::viewer {
namespace {

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

Session wrongUsage(const std::string& problem) {
  Session session;
  session.kind = Session::Kind::WrongUsage;
  session.problem = problem;
  return session;
}

Session ofKind(Session::Kind kind) {
  Session session;
  session.kind = kind;
  return session;
}

bool isFolder(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_directory(path, error);
}

}  // namespace

bool hasDisplay() {
  const std::string platform = environment("QT_QPA_PLATFORM");
  if (platform.starts_with("offscreen") || platform.starts_with("minimal")) return false;
  return !platform.empty() || !environment("DISPLAY").empty() || !environment("WAYLAND_DISPLAY").empty();
}

Session planSession(const std::vector<std::string>& arguments) {
  Session session;
  session.tourFolder = std::filesystem::current_path() / "out" / "tour";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool hasValue = i + 1 < arguments.size() && !arguments[i + 1].starts_with("-");
    if (argument == "--help" || argument == "-h") return ofKind(Session::Kind::Help);
    if (argument == "--version") return ofKind(Session::Kind::Version);
    if (argument == "--tour") {
      session.kind = Session::Kind::Tour;
      if (hasValue) session.tourFolder = std::filesystem::absolute(arguments[++i]);
    } else if (argument == "--catalogue") {
      if (!hasValue) return wrongUsage("--catalogue wants a folder");
      session.catalogue = std::filesystem::absolute(arguments[++i]);
      if (!isFolder(session.catalogue)) {
        return wrongUsage("the catalogue '" + session.catalogue.string() + "' is no folder");
      }
    } else if (argument == "--server") {
      if (!hasValue) return wrongUsage("--server wants a host, an address or a folder");
      session.server = arguments[++i];
    } else if (argument == "--allow-outside") {
      if (!hasValue || !isFolder(arguments[i + 1])) return wrongUsage("--allow-outside wants a folder");
      session.allowedFolders.push_back(std::filesystem::absolute(arguments[++i]));
    } else if (!argument.starts_with("-")) {
      session.files.push_back(std::filesystem::absolute(argument));
    } else {
      return wrongUsage("unknown option '" + argument + "'");
    }
  }
  if (session.kind == Session::Kind::Window && !hasDisplay()) {
    session.kind = Session::Kind::Tour;
    session.forWantOfDisplay = true;
  }
  return session;
}

std::string helpText() {
  return R"(vlviewer - a small map viewer for image services

Usage: vlviewer [--catalogue FOLDER] [--server SERVER] [--allow-outside FOLDER] [--tour [FOLDER]] [FILE ...]

  FILE                a raster, a mosaic definition (.VLDef) or a saved service (.VLRef) to be opened
  --catalogue FOLDER  serve this folder of rasters as "127.0.0.1" instead of the samples
  --server SERVER     begin with the services of this one: a host, an address or a folder
  --allow-outside FOLDER   let virtual rasters and definitions lead to that folder as well
  --tour [FOLDER]     walk through the windows without showing them, and leave pictures and documents in
                      FOLDER (out/tour). This is also what happens where there is no display. A tour is
                      always one of the samples
  --help, --version

Environment: VLCLIENTUI_HOME names the folder that holds definitions/ and help/, VLCLIENTUI_CATALOGUE the
built-in catalogue, VLCLIENTUI_ALLOW_OUTSIDE folders as --allow-outside does, VLCLIENTUI_DRIVERS_OFF drivers
of GDAL that open nothing.
)";
}

}  // namespace vlclientui::viewer
