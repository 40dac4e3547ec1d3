#pragma once

#include <optional>
#include <string_view>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// A finite number with "." or ",", whatever the locale; blanks around it are passed over. Nothing for any
/// other text.
[[nodiscard]] std::optional<double> readDecimal(std::string_view text);

}  // namespace vlclientui
#pragma GCC visibility pop
