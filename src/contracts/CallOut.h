#pragma once

#include <exception>
#include <memory>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Visit.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// One call to the world outside, made as `callOut(service)->ServiceInfo()`. The visit under way is looked at
/// before the call and again when the whole expression has been evaluated, so the results of a call whose
/// window went meanwhile reach the variable that they are assigned to and nothing behind it.
///
/// Releases of engines and windows are no call-outs: they are due whatever became of the window.
template <class Port>
class CallOut {
 public:
  /// Prepares a call on the port, which is kept alive until the whole expression has been evaluated. Null
  /// fails at the call, not here.
  explicit CallOut(std::shared_ptr<Port> port) : port_(std::move(port)) {}
  CallOut(const CallOut&) = delete;
  CallOut& operator=(const CallOut&) = delete;
  /// @throws WindowGone, unless the call has failed by itself.
  ~CallOut() noexcept(false) {
    if (std::uncaught_exceptions() == exceptionsBefore_) Visit::lookAgain();
  }

  /// @throws WindowGone when the window went before the call, RuntimeFailure (MissingObject) when there is no
  /// port; the call is not made then.
  Port* operator->() const {
    Visit::lookAgain();
    if (!port_) failMissingObject("the object of a call");
    return port_.get();
  }

 private:
  std::shared_ptr<Port> port_;  ///< outlives the call
  int exceptionsBefore_ = std::uncaught_exceptions();
};

/// A call on a shared port; null fails at the call.
template <class Port>
[[nodiscard]] CallOut<Port> callOut(std::shared_ptr<Port> port) {
  return CallOut<Port>(std::move(port));
}

/// @param port outlives the call, as the toolkit of a form does.
template <class Port>
[[nodiscard]] CallOut<Port> callOut(Port& port) {
  return CallOut<Port>(std::shared_ptr<Port>(std::shared_ptr<void>(), &port));
}

}  // namespace vlclientui
#pragma GCC visibility pop
