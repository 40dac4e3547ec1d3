#pragma once

#include <cstddef>
#include <string_view>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Where user and password end in an address: behind the last "@" of the server; 0 where there is none. A
/// password may hold a "/" that nobody encoded; what stands before that is then no server with a port.
/// @param rest what stands behind "://".
[[nodiscard]] std::size_t endOfAddressUser(std::string_view rest);

}  // namespace vlclientui
#pragma GCC visibility pop
