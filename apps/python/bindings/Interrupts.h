#pragma once

#include <memory>

/// Signals while the library works. Python runs handlers of signals on its main thread alone, between two of
/// its own steps; a call into the library is one such step, however long it lasts.
namespace vlclientui::python {

/// While it lives, a call of the main thread into the library can be interrupted. Ctrl+C gives up what goes
/// on there, unless the program handles it by a function of its own; that one, and those of other signals,
/// run while a server is waited for. On other threads, and inside another one, it does nothing.
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

 private:
  struct Watch;

  std::unique_ptr<Watch> watch_;
};

/// Whether code of the library runs in such a call, which is given up then, or code of Python inside it,
/// which hears of signals by itself.
class WhoRuns {
 public:
  explicit WhoRuns(bool isLibrary);
  WhoRuns(const WhoRuns&) = delete;
  WhoRuns& operator=(const WhoRuns&) = delete;
  ~WhoRuns();

 private:
  bool wasLibrary_;
};

struct InLibrary : WhoRuns {
  InLibrary() : WhoRuns(true) {}
};

struct InPython : WhoRuns {
  InPython() : WhoRuns(false) {}
};

}  // namespace vlclientui::python
