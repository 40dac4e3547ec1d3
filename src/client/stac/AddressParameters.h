#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vlclientui::client {

/// The decoded value of a parameter of an address; empty where it has none.
[[nodiscard]] std::string parameterOf(const std::string& address, std::string_view name);

/// The address with that parameter, and no other one of its name; the value is encoded here.
[[nodiscard]] std::string withReplacedParameter(const std::string& address, std::string_view name,
                                                std::string_view value);

/// The parts between commas, without empty ones.
[[nodiscard]] std::vector<std::string> splitAtCommas(const std::string& text);

}  // namespace vlclientui::client
