#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The registration of the public classes, without a system registry: one small text file per user,
/// `VLClientUI/classes.tsv` below the user's data folder (XDG_DATA_HOME, else ~/.local/share). A line is one
/// class: name, identity, interfaces with commas between them, path of the library; tabs between the fields.
/// Needs no platform, since an installer calls it in a process without one.
namespace vlclientui {

struct Registration {
  std::string name;
  std::string classIdentity;
  std::string interfaces;  ///< the default interface first
  std::string libraryPath;

  bool operator==(const Registration&) const = default;
};

[[nodiscard]] std::filesystem::path registrationFile();
/// Lines that are no registrations are left out; a missing file has none.
/// @throws RuntimeFailure when there is a file and it cannot be read.
[[nodiscard]] std::vector<Registration> readRegistrations(const std::filesystem::path& file);

/// Enters every class that a host can create, in place of former entries of the same identities; entries of
/// others stay. The file is written whole or not at all.
/// @throws RuntimeFailure when it cannot be written.
void registerClasses();
/// Takes the library's entries out, and the file when nothing is left in it.
void unregisterClasses();

}  // namespace vlclientui
