#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <shared_mutex>
#include <string>
#include <string_view>

#include "client/reach/Allowance.h"

namespace vlclientui::client {

/// Where a person pointed, as long as the process lives: folders opened as servers, files and what lies
/// beside them, servers of the web. Files that a stranger wrote lead there and nowhere else. Safe on any
/// thread.
class Places {
 public:
  Places();

  /// The places of this process.
  static Places& shared();

  /// A folder with all below it.
  void pointAt(const std::filesystem::path& folder);
  /// A file that was chosen: the file itself, its folder with all below, and the neighboring folders, which
  /// are those in the folder that holds its own. Folders in the root, in a home, in what holds homes and in
  /// shared ones (with the sticky bit, or where others may write and that are not this user's) have no
  /// neighbors, and neither have homes and shared folders; of the root and of what holds homes the files
  /// count alone. A file in a neighboring folder adds none, so that files do not lead on and on; one in a
  /// folder that was opened does. Where a link leads counts for the file alone.
  void pointAtFile(const std::filesystem::path& file);
  /// A name of this library's own for a file or service of the web: all of its server.
  void pointAtServer(std::string_view name);
  /// Names of that beginning are this library's own, made by nobody else.
  void keepOwnNames(const std::string& beginning);

  /// Whether a file lies in such a place, by its real path. Files that are not there lie everywhere.
  [[nodiscard]] bool reach(const std::filesystem::path& file) const;
  /// Whether a file was chosen by itself, though a link to it was.
  [[nodiscard]] bool hold(const std::filesystem::path& file) const;
  /// Whether a name is one of this library's own, of a server that was pointed at.
  [[nodiscard]] bool reachName(std::string_view name) const;

  [[nodiscard]] std::shared_ptr<const Allowance> allowance() const;
  /// Reads the environment again, which else is read once: what is allowed, and the home.
  void learnAllowance();

 private:
  [[nodiscard]] bool reachReal(const std::filesystem::path& real) const;
  [[nodiscard]] bool isNeighbor(const std::filesystem::path& folder) const;

  mutable std::shared_mutex mutex_;
  std::set<std::filesystem::path> trees_;          ///< real paths, as all here
  std::set<std::filesystem::path> neighborhoods_;  ///< around chosen files
  std::set<std::filesystem::path> flat_;           ///< folders whose own files alone
  std::set<std::filesystem::path> seen_;           ///< folders of chosen files
  std::set<std::filesystem::path> files_;          ///< outside of the folders
  std::set<std::string, std::less<>> names_;
  std::shared_ptr<const Allowance> allowance_;  ///< with real folders, looked up once
  std::filesystem::path home_;
};

}  // namespace vlclientui::client
