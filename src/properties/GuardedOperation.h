#pragma once

#include <exception>
#include <source_location>
#include <utility>

#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

/// Runs an operation of the host. On a failure gStatus gets its description.
/// @returns the operation's result, or `whenFailing`.
template <class Result, class Operation>
Result reportsToStatus(Result whenFailing, Operation&& operation) {
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
template <class Result, class Operation>
Result endsQuietlyWith(Result whenFailing, Operation&& operation,
                       const RoutineName& name = std::source_location::current()) {
  Result result = std::move(whenFailing);
  endsQuietly([&] { result = operation(); }, name);
  return result;
}

}  // namespace vlclientui
