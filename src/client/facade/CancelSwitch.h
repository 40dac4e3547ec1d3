#pragma once

#include <memory>

#pragma GCC visibility push(default)
namespace vlclientui::client {

class CancelToken;
class WaitScope;

/// Ends work of other threads. Copies are the same switch. Any thread may use it.
class CancelSwitch {
 public:
  CancelSwitch();

  /// What goes on under this switch ends soon, as a failure; what begins under it later fails at once.
  void cancel() const;
  /// Whether any copy was told to cancel.
  [[nodiscard]] bool isCanceled() const;

 private:
  friend class CancelScope;

  std::shared_ptr<CancelToken> token_;
};

/// While it lives, the work of the thread that made it is under the switch: opening, drawing and exporting
/// services, and waiting for servers. Scopes nest; each switch ends it. To be destroyed on that thread.
class CancelScope {
 public:
  /// @param canceling the switch that ends the work from here on.
  explicit CancelScope(const CancelSwitch& canceling);
  CancelScope(const CancelScope&) = delete;
  CancelScope& operator=(const CancelScope&) = delete;
  ~CancelScope();

 private:
  std::unique_ptr<WaitScope> scope_;
};

}  // namespace vlclientui::client
#pragma GCC visibility pop
