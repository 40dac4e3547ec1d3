#pragma once

#include <exception>
#include <source_location>
#include <utility>

#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

// Operations of a host visit no window themselves, and keep alive the object that was called.

/// Runs an operation of the host. On a failure gStatus gets its description.
/// @returns the operation's result, or `whenFailing`.
template <class Called, class Result, class Operation>
Result reportsToStatus(Called& called, Result whenFailing, Operation&& operation) {
  const Visit noWindow;
  const auto keptAlive = called.weak_from_this().lock();
  try {
    return std::forward<Operation>(operation)();
  } catch (const std::exception& failure) {
    threadState().gStatus = failure.what();
  } catch (...) {
    threadState().gStatus = "Unknown failure";
  }
  return whenFailing;
}

/// Runs an operation of the host; a failure is silent. @returns the operation's result, or `whenFailing`.
template <class Called, class Result, class Operation>
Result endsQuietlyWith(Called& called, Result whenFailing, Operation&& operation,
                       const RoutineName& name = std::source_location::current()) {
  const Visit noWindow;
  const auto keptAlive = called.weak_from_this().lock();
  Result result = std::move(whenFailing);
  endsQuietly([&] { result = operation(); }, name);
  return result;
}

/// A host's operation that gives nothing back and ends silently.
template <class Called, class Operation>
void operatesQuietly(Called& called, Operation&& operation,
                     const RoutineName& name = std::source_location::current()) {
  const Visit noWindow;
  const auto keptAlive = called.weak_from_this().lock();
  endsQuietly(std::forward<Operation>(operation), name);
}

}  // namespace vlclientui
