#pragma once

#include <string>
#include <vector>

#include "ExportCommand.h"

namespace vlclientui::vlhost {

/// How to keep what is read, by an option. @returns whether the word is one. @throws Misuse where another one
/// says otherwise.
[[nodiscard]] bool takeKeeping(client::Keeping& keeping, const std::string& word);

/// A name travels in documents. @throws Misuse for one that is no UTF-8, or holds a control character.
void refuseUnwritable(const std::string& file);

/// @param arguments behind the word `export`. @throws Misuse when they make no sense.
[[nodiscard]] ExportCommand parseExport(const std::vector<std::string>& arguments);

}  // namespace vlclientui::vlhost
