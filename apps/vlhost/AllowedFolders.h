#pragma once

#include <string>
#include <vector>

namespace vlclientui::vlhost {

/// Takes "--allow-outside FOLDER" out of the arguments, wherever it stands and however often, and lets files
/// lead to these folders as well. @returns what is wrong with one of them; empty when nothing is.
[[nodiscard]] std::string takeAllowedFolders(std::vector<std::string>& arguments);

}  // namespace vlclientui::vlhost
