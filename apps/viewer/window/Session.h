#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vlclientui::viewer {

/// What the command line and the environment ask for.
struct Session {
  enum class Kind { Window, Tour, Help, Version, WrongUsage };

  Kind kind = Kind::Window;
  bool forWantOfDisplay = false;             ///< a tour because there is no display
  std::filesystem::path tourFolder;          ///< of a tour
  std::filesystem::path catalogue;           ///< empty for that of the installation
  std::string server;                        ///< whose services are offered at the start; empty for none
  std::vector<std::filesystem::path> files;  ///< to be opened
  std::vector<std::filesystem::path> allowedFolders;  ///< where files may lead as well
  std::string problem;                                ///< of a wrong usage
};

/// @param arguments without the program's own name.
[[nodiscard]] Session planSession(const std::vector<std::string>& arguments);

/// Whether windows can be shown to somebody: a display is named, or a platform that needs none.
[[nodiscard]] bool hasDisplay();

[[nodiscard]] std::string helpText();

}  // namespace vlclientui::viewer
