#pragma once

#include <string>
#include <vector>

#include "ExportCommand.h"

namespace vlclientui::vlhost {

/// @param arguments behind the word `export`. @throws Misuse when they make no sense.
[[nodiscard]] ExportCommand parseExport(const std::vector<std::string>& arguments);

}  // namespace vlclientui::vlhost
