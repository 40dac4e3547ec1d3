#pragma once

#include <source_location>
#include <utility>

#include "contracts/Silence.h"

namespace vlclientui {

/// Runs a routine that stops silently at its first failure, whatever was thrown; its caller goes on. The
/// failure's text is told as a silent end of `name`, by default the function that the call stands in.
/// @returns whether it ran to its end.
template <class Routine>
bool endsQuietly(Routine&& routine, const RoutineName& name = std::source_location::current()) {
  try {
    std::forward<Routine>(routine)();
    return true;
  } catch (...) {
    endSilently(handledFailureText(), name);
    return false;
  }
}

}  // namespace vlclientui
