#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vlclientui::client {

/// Hexadecimal digits, 16 at most, that tell a name from others: the same on every machine and in every run.
[[nodiscard]] std::string nameMark(std::string_view name, std::size_t digits);

}  // namespace vlclientui::client
