#pragma once

#include <filesystem>

namespace vlclientui::host {

/// Where the files of this installation stand. Native, absolute paths.
struct Installation {
  std::filesystem::path home;         ///< the folder that holds the others
  std::filesystem::path definitions;  ///< VLClient.XADef and VLClient.Xfdef
  std::filesystem::path help;         ///< the help pages
  std::filesystem::path catalogue;    ///< served as "127.0.0.1" unless the host says otherwise

  bool operator==(const Installation&) const = default;
};

/// The installation around the running program. In this order: the folder that the environment variable
/// VLCLIENTUI_HOME names; `share/vlclientui` beside the program's `bin`; the same of the place where this
/// library is installed; the source folder that the program was built from. The first that holds the
/// definitions counts.
/// @throws RuntimeFailure when none does, with a text that names the places.
[[nodiscard]] Installation findInstallation();

/// The installation in a folder that a host names itself. Nothing is looked up.
[[nodiscard]] Installation installationIn(const std::filesystem::path& home);

}  // namespace vlclientui::host
