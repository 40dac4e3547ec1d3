#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Registers the public classes without a system registry, in one small text file per user:
/// `VLClientUI/classes.tsv` below the user's data folder (XDG_DATA_HOME, else ~/.local/share). A line is one
/// class: name, identity, interfaces joined by commas, path of the library; fields are separated by tabs.
/// Needs no platform, since installers have none.
namespace vlclientui {

struct Registration {
  std::string name;
  std::string classIdentity;
  std::string interfaces;  ///< the default interface first
  std::string libraryPath;

  bool operator==(const Registration&) const = default;
};

[[nodiscard]] std::filesystem::path registrationFile();
/// Skips malformed lines; a missing file has no registrations.
/// @throws RuntimeFailure when the file exists and cannot be read.
[[nodiscard]] std::vector<Registration> readRegistrations(const std::filesystem::path& file);

/// Enters every class that a host can create and replaces old entries of the same identities; other
/// libraries' entries stay. The file is written whole or not at all.
/// @throws RuntimeFailure when it cannot be written.
void registerClasses();
/// Removes the library's entries, and the file when it becomes empty.
void unregisterClasses();

}  // namespace vlclientui
