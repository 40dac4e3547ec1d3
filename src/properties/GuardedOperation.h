#pragma once

#include <exception>
#include <source_location>
#include <utility>

#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

/// A host's operation that leaves the failure's own description in gStatus.
/// @returns what the operation gives, or `whenFailing`.
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

/// A host's operation that ends silently. @returns what the operation gives, or `whenFailing`.
template <class Result, class Operation>
Result endsQuietlyWith(Result whenFailing, Operation&& operation,
                       const RoutineName& name = std::source_location::current()) {
  Result result = std::move(whenFailing);
  endsQuietly([&] { result = operation(); }, name);
  return result;
}

}  // namespace vlclientui
