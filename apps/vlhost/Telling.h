#pragma once

#include <string>
#include <string_view>

namespace vlclientui::vlhost {

/// A text that may come from a file or its name, as it can be put on a terminal: what would steer the
/// terminal or begin a new line, and bytes that are no UTF-8, become "?".
[[nodiscard]] std::string terminalText(std::string_view text);

/// Puts a line for a person on standard error, behind the name of the program. Secrets of addresses in it are
/// hidden.
void tell(std::string_view text);

}  // namespace vlclientui::vlhost
