#pragma once

#include <utility>

namespace vlclientui {

/// Runs a routine that stops silently at its first failure, whatever was thrown; its caller goes on.
/// @returns whether it ran to its end.
template <class Routine>
bool endsQuietly(Routine&& routine) {
  try {
    std::forward<Routine>(routine)();
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace vlclientui
