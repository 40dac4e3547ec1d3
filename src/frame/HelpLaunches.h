#pragma once

#include <cstddef>

namespace vlclientui {

/// How often the calling thread has opened help, by which a view knows that a key was used.
[[nodiscard]] std::size_t helpLaunches();

}  // namespace vlclientui
