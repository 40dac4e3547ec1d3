#pragma once

#include <filesystem>
#include <vector>

namespace vlclientui::host {

/// Where the files of this installation stand. Native, absolute paths.
struct Installation {
  std::filesystem::path home;         ///< the folder that holds the others
  std::filesystem::path definitions;  ///< VLClient.XADef and VLClient.Xfdef
  std::filesystem::path help;         ///< the help pages
  std::filesystem::path catalogue;    ///< served as "127.0.0.1" unless the host says otherwise

  bool operator==(const Installation&) const = default;
};

/// The installation around the running program: the first of installationPlaces that holds the definitions.
/// @throws RuntimeFailure when none does, with a text that names the places.
[[nodiscard]] Installation findInstallation();

/// Where an installation is looked for, in this order: the folder that the environment variable
/// VLCLIENTUI_HOME names, empty without one; `share/vlclientui` beside the program's `bin`; the same of the
/// place where this library is installed; the source folder that the program was built from.
[[nodiscard]] std::vector<std::filesystem::path> installationPlaces();

/// The installation in the first of the places that holds the definitions; empty ones are passed over.
/// @throws RuntimeFailure as findInstallation.
[[nodiscard]] Installation findInstallationIn(const std::vector<std::filesystem::path>& places);

/// The installation in a folder that a host names itself. Nothing is looked up.
[[nodiscard]] Installation installationIn(const std::filesystem::path& home);

}  // namespace vlclientui::host
