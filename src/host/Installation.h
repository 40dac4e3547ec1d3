#pragma once

#include <filesystem>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui::host {

/// Where the files of this installation are. Native, absolute paths.
struct Installation {
  std::filesystem::path home;         ///< the folder that holds the others
  std::filesystem::path definitions;  ///< VLClient.XADef and VLClient.Xfdef
  std::filesystem::path help;         ///< the help pages
  std::filesystem::path catalogue;    ///< served as "127.0.0.1" unless the host says otherwise

  /// Whether all paths are equal.
  bool operator==(const Installation&) const = default;
};

/// The installation around the running program: the first of installationPlaces that holds the definitions.
/// @throws RuntimeFailure, naming the places, when none does.
[[nodiscard]] Installation findInstallation();

/// Places to look for an installation, in this order: the folder in the environment variable VLCLIENTUI_HOME
/// (empty without one); `share/vlclientui` beside the program's `bin`; the same relative to this library; the
/// source folder of the build.
[[nodiscard]] std::vector<std::filesystem::path> installationPlaces();

/// The installation in the first of the places that holds the definitions. Skips empty places.
/// @throws RuntimeFailure as findInstallation.
[[nodiscard]] Installation findInstallationIn(const std::vector<std::filesystem::path>& places);

/// The installation in a folder that a host names itself, unchecked.
[[nodiscard]] Installation installationIn(const std::filesystem::path& home);

}  // namespace vlclientui::host
#pragma GCC visibility pop
