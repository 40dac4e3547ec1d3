#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Environment.h"

namespace vlclientui::platform {

/// The page that a help command names: what stands between "::/" and ".htm". Nothing for another command, or
/// a page with other characters than letters, digits, "_" and "-".
[[nodiscard]] std::optional<std::string> helpPageOf(std::string_view commandText);

/// Program and arguments that open a file for the user: the first program of BROWSER, with "%s" replaced or
/// the file added, else xdg-open.
[[nodiscard]] std::vector<std::string> openerOf(const std::string& file, const Environment& environment);

/// Starts a program by its name in PATH, without a shell, on its own: returns at once, leaves no zombie, and
/// tells nobody whether it could be started. Its input and outputs lead nowhere.
void startAlone(const std::vector<std::string>& command);

}  // namespace vlclientui::platform
