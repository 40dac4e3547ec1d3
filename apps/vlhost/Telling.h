#pragma once

#include <string>
#include <string_view>

namespace vlclientui::vlhost {

/// A text that may come from a file or its name, as it can be put on a terminal: what would steer the
/// terminal or begin a new line, and bytes that are no UTF-8, become "?".
[[nodiscard]] std::string terminalText(std::string_view text);

/// Whether a person reads colors there: at a terminal, unless NO_COLOR, CLICOLOR=0 or TERM=dumb say
/// otherwise; anywhere where CLICOLOR_FORCE asks for them.
enum class Reader { Terminal, Program };
[[nodiscard]] bool wantsColors(Reader reader);

/// Puts a line for a person on standard error, behind the name of the program. Secrets of addresses in it are
/// hidden.
void tell(std::string_view text);

}  // namespace vlclientui::vlhost
