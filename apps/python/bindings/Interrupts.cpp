#include "Interrupts.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include <pthread.h>
#include <semaphore.h>

#include "Interpreter.h"
#include "client/waiting/Wait.h"

namespace vlclientui::python {
namespace {

using namespace std::chrono_literals;

constexpr client::WaitPace pace{.quiet = 100ms, .interval = 100ms};

// What the handler of a signal may touch.
std::atomic<bool> mainIsInLibrary{false};
std::atomic<bool> isInterrupted{false};
struct sigaction handlerOfPython {};
sem_t interruption;

// What the thread that cancels shares with the calls of the main thread.
std::mutex mutex;
client::CancelToken* underWay = nullptr;

thread_local bool isWatched = false;

extern "C" void hearInterrupt(int number) {
  handlerOfPython.sa_handler(number);
  if (!mainIsInLibrary) return;
  isInterrupted = true;
  sem_post(&interruption);
}

/// A handler of signals may not cancel by itself.
void cancelWhenInterrupted() {
  for (;;) {
    while (sem_wait(&interruption) != 0) continue;
    const std::scoped_lock lock(mutex);
    if (underWay != nullptr && isInterrupted) underWay->cancel();
  }
}

/// Threads that are made meanwhile hear no signals.
class WithoutSignals {
 public:
  WithoutSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &former_);
  }
  WithoutSignals(const WithoutSignals&) = delete;
  WithoutSignals& operator=(const WithoutSignals&) = delete;
  ~WithoutSignals() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }

 private:
  sigset_t former_{};
};

void startCanceling() {
  sem_init(&interruption, 0, 0);
  const WithoutSignals silence;
  std::thread(cancelWhenInterrupted).detach();
}

/// Once in a process; one that was forked has no threads of the other. Where no thread can be had, calls are
/// not canceled.
void needCanceling() {
  static bool isStarted = false;
  static const int atFork = pthread_atfork(nullptr, nullptr, [] { isStarted = false; });
  static_cast<void>(atFork);
  if (std::exchange(isStarted, true)) return;
  try {
    startCanceling();
  } catch (const std::system_error&) {
    isStarted = false;
  }
}

bool isMainThread() {
  static const unsigned long main =
      py::module_::import("threading").attr("main_thread")().attr("ident").cast<unsigned long>();
  return PyThread_get_thread_ident() == main;
}

/// Whether Ctrl+C raises KeyboardInterrupt, whatever the program was doing.
bool isInterruptPlain() {
  static PyObject* const module = py::module_::import("signal").release().ptr();
  const py::handle signals = module;
  return signals.attr("getsignal")(SIGINT).is(signals.attr("default_int_handler"));
}

class Signals final : public client::WaitListener {
 public:
  client::WaitAnswer stillWaiting(const client::WaitedFor& /*what*/) override {
    const Locked lock;
    if (PyErr_CheckSignals() == 0) return client::WaitAnswer::GoOn;
    keepForCaller(py::error_already_set());
    return client::WaitAnswer::GiveUp;
  }
};

/// Puts its own handler before that of Python, which stays the one that tells Python.
class InterruptHandler {
 public:
  InterruptHandler() {
    struct sigaction present {};
    sigaction(SIGINT, nullptr, &present);
    const bool isFunction = (present.sa_flags & SA_SIGINFO) == 0 && present.sa_handler != SIG_DFL &&
                            present.sa_handler != SIG_IGN && present.sa_handler != hearInterrupt;
    if (!isFunction || !isInterruptPlain()) return;
    handlerOfPython = present;
    present.sa_handler = hearInterrupt;
    sigaction(SIGINT, &present, nullptr);
  }
  InterruptHandler(const InterruptHandler&) = delete;
  InterruptHandler& operator=(const InterruptHandler&) = delete;
  ~InterruptHandler() {
    struct sigaction present {};
    sigaction(SIGINT, nullptr, &present);
    if (present.sa_handler == hearInterrupt) sigaction(SIGINT, &handlerOfPython, nullptr);
  }
};

}  // namespace

struct Interruptible::Watch {
  Watch() {
    const std::scoped_lock lock(mutex);
    isInterrupted = false;
    underWay = &token;
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    mainIsInLibrary = false;
    const std::scoped_lock lock(mutex);
    underWay = nullptr;
  }

  client::CancelToken token;
  Signals signals;
  client::WaitScope scope{&signals, token, pace};
  InterruptHandler handler;
};

Interruptible::Interruptible() {
  if (isWatched || !isMainThread()) return;
  needCanceling();
  watch_ = std::make_unique<Watch>();
  isWatched = true;
}

Interruptible::~Interruptible() {
  if (watch_) isWatched = false;
}

void Interruptible::lookForSignals() const {
  if (isWatched && isInterrupted && PyErr_CheckSignals() != 0) keepForCaller(py::error_already_set());
}

WhoRuns::WhoRuns(bool isLibrary) : wasLibrary_(isWatched && mainIsInLibrary.exchange(isLibrary)) {}

WhoRuns::~WhoRuns() {
  if (isWatched) mainIsInLibrary = wasLibrary_;
}

}  // namespace vlclientui::python
