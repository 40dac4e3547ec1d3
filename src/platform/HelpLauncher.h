#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Environment.h"

namespace vlclientui::platform {

/// The page in a help command: the text between "::/" and ".htm". Nothing for any other command, and for a
/// page with characters other than letters, digits, "_" and "-".
[[nodiscard]] std::optional<std::string> helpPageOf(std::string_view commandText);

/// Program and arguments that open a file for the user: the first program of BROWSER, with "%s" replaced or
/// the file added, else xdg-open.
[[nodiscard]] std::vector<std::string> openerOf(const std::string& file, const Environment& environment);

/// Starts a program from PATH without a shell and returns at once. Leaves no zombie, reports no failure, and
/// connects neither input nor output.
void startAlone(const std::vector<std::string>& command);

}  // namespace vlclientui::platform
