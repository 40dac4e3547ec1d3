#pragma once

#include <string>

#include "platform/Environment.h"

/// The user's folders as the XDG standards define them. All paths are native, without a trailing separator.
namespace vlclientui::platform {

/// XDG_DOCUMENTS_DIR out of the environment or user-dirs.dirs; else Documents below the home folder if there
/// is one, else the home folder itself.
[[nodiscard]] std::string documentsFolder(const std::string& home, const Environment& environment);
/// The same for the desktop.
[[nodiscard]] std::string desktopFolder(const std::string& home, const Environment& environment);
/// XDG_DATA_HOME, else .local/share below the home folder.
[[nodiscard]] std::string dataFolder(const std::string& home, const Environment& environment);

}  // namespace vlclientui::platform
