#pragma once

#include <source_location>
#include <utility>

#include "contracts/CallOut.h"
#include "contracts/Silence.h"
#include "contracts/controls/Form.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Runs a routine that stops silently at its first failure, whatever was thrown; its caller goes on, unless
/// the window of both has gone. The failure's text is told as a silent end of `name`, by default the function
/// that the call stands in.
/// @returns whether it ran to its end.
template <class Routine>
bool endsQuietly(Routine&& routine, const RoutineName& name = std::source_location::current()) {
  try {
    std::forward<Routine>(routine)();
    return true;
  } catch (const WindowGone&) {
    throw;
  } catch (...) {
    endSilently(handledFailureText(), name);
    return false;
  }
}

/// The same as a visit to a window, for routines that others than a person enter. A routine of the same
/// window that calls it stops here when its window has gone.
/// @param form null for a control that stands in no window.
template <class Routine>
bool visitWindow(Form* form, Routine&& routine, const RoutineName& name = std::source_location::current()) {
  if (!form) {
    const Visit noWindow;
    return endsQuietly(std::forward<Routine>(routine), name);
  }
  Visit::lookAgainIn(*form);
  bool ended = false;
  form->visited([&] { ended = endsQuietly(std::forward<Routine>(routine), name); }, name);
  return ended;
}

}  // namespace vlclientui
#pragma GCC visibility pop
