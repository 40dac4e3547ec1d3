#include "host/Installation.h"

#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

#include <dlfcn.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::host {
namespace {

namespace fs = std::filesystem;

constexpr const char* homeVariable = "VLCLIENTUI_HOME";

fs::path environmentPath(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? fs::path() : fs::path(value);
}

fs::path folderBesideProgram() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? fs::path() : program.parent_path().parent_path() / "share" / "vlclientui";
}

/// A program that links the installed library may lie anywhere.
fs::path folderBesideLibrary() {
  Dl_info library{};
  if (dladdr(reinterpret_cast<const void*>(&folderBesideLibrary), &library) == 0) return {};
  // The loader may have come by a link, such as /lib for /usr/lib.
  std::error_code error;
  const fs::path file = fs::canonical(library.dli_fname, error);
  return error ? fs::path() : (file.parent_path() / VLCLIENTUI_HOME_FROM_LIBRARY).lexically_normal();
}

bool holdsDefinitions(const fs::path& home) {
  std::error_code error;
  return !home.empty() && fs::is_regular_file(home / "definitions" / "VLClient.XADef", error);
}

// The build makes the samples, so in a build tree they lie beside the programs, not the sources.
fs::path catalogueIn(const fs::path& home) {
  std::error_code error;
  const fs::path installed = home / "samples" / "catalogue";
  return fs::is_directory(installed, error) ? installed : fs::path(VLCLIENTUI_SAMPLE_CATALOGUE);
}

}  // namespace

Installation installationIn(const fs::path& home) {
  const fs::path absolute = fs::absolute(home).lexically_normal();
  return {absolute, absolute / "definitions", absolute / "help", catalogueIn(absolute)};
}

std::vector<fs::path> installationPlaces() {
  return {environmentPath(homeVariable), folderBesideProgram(), folderBesideLibrary(),
          VLCLIENTUI_SOURCE_FOLDER};
}

Installation findInstallationIn(const std::vector<fs::path>& places) {
  std::string tried;
  for (const fs::path& home : places) {
    if (holdsDefinitions(home)) return installationIn(home);
    if (!home.empty()) tried += (tried.empty() ? " " : ", ") + home.string();
  }
  throw RuntimeFailure(std::string("No definitions/VLClient.XADef found; set ") + homeVariable +
                       " to the folder that holds it. Looked in:" + tried);
}

Installation findInstallation() { return findInstallationIn(installationPlaces()); }

}  // namespace vlclientui::host
