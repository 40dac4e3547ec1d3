#pragma once

#include <cstdint>
#include <memory>

#pragma GCC visibility push(default)
namespace vlclientui {

class Form;

/// Ends a routine whose window has gone. It is no failure: nobody reports it, and only the visit that the
/// routine runs in takes it.
struct WindowGone {};

/// A routine's stay in a window, from its first line to its last. The routine may call out to a client, a
/// service, an engine or the toolkit, and come back to a world without its window: the window was closed,
/// shown anew, or went with a window of the host. The visit keeps alive what the routine returns to, the form
/// and its control set, and tells whether the window is still the one that was entered.
///
/// Visits nest as calls do, each thread its own; lookAgain asks the innermost one. A person's action is a
/// visit (Form::dispatch); what else enters a window does so through `visitWindow`, and calls out through
/// `callOut`.
class Visit {
 public:
  /// Enters the window of the form as it is now; the form is kept alive until the visit ends.
  explicit Visit(Form& form);
  /// A visit to no window, which always stands: an operation of a host inside somebody else's visit.
  Visit();
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;
  ~Visit();

  /// Whether the window is still the one that was entered.
  [[nodiscard]] bool stands() const;
  /// @throws WindowGone when the innermost visit does not stand. Nothing outside any visit.
  static void lookAgain();
  /// The same where that visit is one to this form.
  static void lookAgainIn(const Form& form);

 private:
  std::shared_ptr<Form> keptAlive_;
  Form* form_ = nullptr;
  std::uint64_t window_ = 0;
  const Visit* outer_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
