#pragma once

#include <memory>

/// Signals while the library works. Python runs handlers of signals on its main thread alone, between two of
/// its own steps; a call into the library is one such step, however long it lasts.
namespace vlclientui::python {

/// While it lives, a call of the main thread into the library can be interrupted. Ctrl+C gives up what goes
/// on there, unless the program handles it by a function of its own; that one, and those of other signals,
/// run while a server is waited for. Of calls inside a call the innermost is given up: code of Python that
/// made it may catch that and go on. On other threads it does nothing.
///
/// Made and destroyed with the interpreter's lock, on one thread.
class Interruptible {
 public:
  Interruptible();
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;
  ~Interruptible();

  /// Runs handlers of signals that came meanwhile; what they raise waits for the caller. With the lock.
  void lookForSignals() const;
  /// Gives up the innermost call that the main thread is in; on other threads nothing.
  static void giveUp();

 private:
  struct Watch;

  std::unique_ptr<Watch> watch_;
};

/// Whether code of the library runs in such a call, which is given up then, or code of Python inside it,
/// which hears of signals by itself. What came just before the library's turn, and Python has not heard of,
/// gives the call up as well. Turns begin and end with the lock.
class WhoRuns {
 public:
  explicit WhoRuns(bool isLibrary);
  WhoRuns(const WhoRuns&) = delete;
  WhoRuns& operator=(const WhoRuns&) = delete;
  ~WhoRuns();

  /// The turn of the other begins, while there still is the lock.
  void end();

 private:
  static void hearEarlierSignals();

  bool wasLibrary_;
};

struct InLibrary : WhoRuns {
  InLibrary() : WhoRuns(true) {}
};

struct InPython : WhoRuns {
  InPython() : WhoRuns(false) {}
};

}  // namespace vlclientui::python
