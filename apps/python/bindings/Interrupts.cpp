#include "Interrupts.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <mutex>
#include <optional>
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

// What the handler of a signal may touch. It may run on any thread.
std::atomic<bool> mainIsInLibrary{false};
std::atomic<bool> isInterrupted{false};
std::atomic<void (*)(int)> handlerOfPython{nullptr};
std::atomic<int> handlersUnderWay{0};
sem_t interruption;

// What the thread that cancels shares with the calls of the main thread.
std::mutex mutex;
client::CancelToken* underWay = nullptr;  ///< of the innermost call

thread_local bool isWatched = false;

extern "C" void hearInterrupt(int number) {
  ++handlersUnderWay;
  handlerOfPython.load()(number);
  if (mainIsInLibrary) {
    isInterrupted = true;
    sem_post(&interruption);
  }
  --handlersUnderWay;
}

/// What one call was interrupted by means no other call.
void replaceUnderWay(client::CancelToken* token) {
  while (handlersUnderWay != 0) std::this_thread::yield();
  const std::scoped_lock lock(mutex);
  isInterrupted = false;
  underWay = token;
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
  static const int atFork = pthread_atfork(nullptr, nullptr, [] {
    isStarted = false;
    handlersUnderWay = 0;
  });
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

/// Runs handlers of signals, with the lock. What they raise waits for the caller. @returns whether they did.
bool isRaisedBySignals() {
  if (PyErr_Occurred() != nullptr || PyErr_CheckSignals() == 0) return false;
  keepForCaller(py::error_already_set());
  return true;
}

class Signals final : public client::WaitListener {
 public:
  client::WaitAnswer stillWaiting(const client::WaitedFor& /*what*/) override {
    const Locked lock;
    return isRaisedBySignals() ? client::WaitAnswer::GiveUp : client::WaitAnswer::GoOn;
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
    former_ = present;
    handlerOfPython = present.sa_handler;
    present.sa_handler = hearInterrupt;
    sigaction(SIGINT, &present, nullptr);
  }
  InterruptHandler(const InterruptHandler&) = delete;
  InterruptHandler& operator=(const InterruptHandler&) = delete;
  ~InterruptHandler() {
    struct sigaction present {};
    sigaction(SIGINT, nullptr, &present);
    if (present.sa_handler == hearInterrupt) sigaction(SIGINT, &former_, nullptr);
  }

 private:
  struct sigaction former_ {};
};

}  // namespace

struct Interruptible::Watch {
  Watch() : outer(underWay) {
    if (outer == nullptr) handler.emplace();
    replaceUnderWay(&token);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() { replaceUnderWay(outer); }

  client::CancelToken* outer;  ///< of the call whose Python code makes this one; null for none
  client::CancelToken token;
  Signals signals;
  client::WaitScope scope{&signals, token, pace};
  std::optional<InterruptHandler> handler;
};

Interruptible::Interruptible() {
  if (!isMainThread()) return;
  needCanceling();
  watch_ = std::make_unique<Watch>();
  isWatched = true;
}

Interruptible::~Interruptible() {
  if (watch_) isWatched = watch_->outer != nullptr;
}

void Interruptible::lookForSignals() const {
  if (watch_ && isInterrupted) isRaisedBySignals();
}

void Interruptible::giveUp() {
  if (!isWatched) return;
  const std::scoped_lock lock(mutex);
  if (underWay != nullptr) underWay->cancel();
}

WhoRuns::WhoRuns(bool isLibrary) : wasLibrary_(isWatched && mainIsInLibrary.exchange(isLibrary)) {
  if (isLibrary) hearEarlierSignals();
}

WhoRuns::~WhoRuns() {
  if (isWatched) mainIsInLibrary = wasLibrary_;
}

void WhoRuns::end() {
  if (!isWatched) return;
  mainIsInLibrary = wasLibrary_;
  if (wasLibrary_) hearEarlierSignals();
}

void WhoRuns::hearEarlierSignals() {
  if (isWatched && isRaisedBySignals()) Interruptible::giveUp();
}

}  // namespace vlclientui::python
