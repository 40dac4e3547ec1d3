#pragma once

#include <cstddef>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// How often the calling thread has opened help, by which a view knows that a key was used.
[[nodiscard]] std::size_t helpLaunches();

}  // namespace vlclientui
#pragma GCC visibility pop
