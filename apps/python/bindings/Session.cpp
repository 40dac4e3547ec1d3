#include "Session.h"

#include <utility>

#include "Windows.h"
#include "contracts/RuntimeFailure.h"
#include "library/HostThread.h"

namespace vlclientui::python {
namespace {

SessionPtr& sessionOfThread() {
  static thread_local SessionPtr session;
  return session;
}

}  // namespace

Session::Session(host::ComposedHost host, Surfaces surfaces, std::shared_ptr<Desktop> desktop)
    : host_(std::move(host)), surfaces_(std::move(surfaces)), desktop_(std::move(desktop)) {}

SessionPtr Session::start(host::ComposedHost host, Surfaces surfaces, std::shared_ptr<Desktop> desktop) {
  const SessionPtr session(
      new Session(host::start(std::move(host)), std::move(surfaces), std::move(desktop)));
  if (const SessionPtr former = std::exchange(sessionOfThread(), session)) former->forgetFunctions();
  session->surfaces_->setWindowScript(
      [weak = std::weak_ptr(session)](const headless::HeadlessWindow& window) {
        if (const auto living = weak.lock()) living->visitInformation(window);
      });
  if (session->isHeadless()) {
    session->awaitNextWindow();
  } else {
    session->watchDesktop();
  }
  return session;
}

void Session::watchDesktop() {
  const auto weak = weak_from_this();
  desktop().watch({.awaitsWindow =
                       [weak] {
                         const auto living = weak.lock();
                         return living && living->isCurrent() && living->hasVisit();
                       },
                   .visit =
                       [weak](Form& form) {
                         if (const auto living = weak.lock()) living->visit(form);
                       },
                   .isInterrupted =
                       [] {
                         const Locked lock;
                         if (PyErr_CheckSignals() == 0) return false;
                         keepForCaller(py::error_already_set());
                         return true;
                       }});
}

/// One script stands ready at any time, so that a window that nobody awaits is closed as ever.
void Session::awaitNextWindow() {
  headlessToolkit().scriptModal([weak = weak_from_this()](Form& form) {
    const auto living = weak.lock();
    if (!living) return;
    living->awaitNextWindow();
    if (living->hasVisit()) living->visit(form);
  });
}

bool Session::isCurrent() const { return sessionOfThread().get() == this; }

void Session::use() {
  if (std::this_thread::get_id() != thread_) {
    throw RuntimeFailure("This belongs to the thread that started its session");
  }
  if (!isCurrent()) failMissingObject("the session, which has ended");
  std::vector<std::shared_ptr<void>> left;
  {
    const std::scoped_lock lock(mutex_);
    left.swap(left_);
  }
  if (left.empty()) return;
  const Unlocked unlocked;
  left.clear();
}

void Session::end() {
  if (!isCurrent()) return;
  forgetFunctions();
  const SessionPtr kept = std::exchange(sessionOfThread(), nullptr);
  startThread(nullptr);
}

headless::HeadlessToolkit& Session::headlessToolkit() const {
  auto* const toolkit = dynamic_cast<headless::HeadlessToolkit*>(host_.platform->toolkit.get());
  if (toolkit == nullptr) throw RuntimeFailure("Only a session without windows can be asked for this");
  return *toolkit;
}

Desktop& Session::desktop() const {
  if (!desktop_) throw RuntimeFailure("Only a session with real windows can be asked for this");
  return *desktop_;
}

void Session::answerMessage(MessageAnswer answer) {
  if (desktop_) return desktop_->answerMessage(answer);
  headlessToolkit().answerMessage(answer);
}

void Session::chooseFile(const std::string& file) {
  if (desktop_) return desktop_->chooseFile(file);
  headlessToolkit().chooseFile(host_.platform->system->logicPath(file));
}

WindowHandle Session::addHostWindow(const std::string& title) {
  return desktop_ ? desktop_->addHostWindow(host_, title) : headlessToolkit().addHostWindow(title);
}

void Session::awaitInformation(const py::object& visit) {
  information_ = visit.is_none() ? Reference() : referenceTo(visit);
}

void Session::visit(Form& form) {
  const Locked lock;
  const Reference visit = std::move(visits_.front());
  visits_.pop_front();
  try {
    objectOf(visit)(Window(shared_from_this(), form));
  } catch (py::error_already_set& raised) {
    keepForCaller(std::move(raised));
  }
}

void Session::visitInformation(const headless::HeadlessWindow& window) {
  const Reference visit = information_;
  if (!visit || window.surface == nullptr) return;
  const Locked lock;
  try {
    objectOf(visit)(Text{window.caption}, Page(shared_from_this(), *window.surface));
  } catch (py::error_already_set& raised) {
    keepForCaller(std::move(raised));
  }
}

void Session::letGo(std::shared_ptr<void> object) {
  if (std::this_thread::get_id() == thread_) {
    // Its rasters are closed, and its work is given up and waited for.
    const Unlocked unlocked;
    object.reset();
    return;
  }
  const std::scoped_lock lock(mutex_);
  left_.push_back(std::move(object));
}

void Session::forgetFunctions() {
  forgetVisits();
  const auto information = std::exchange(information_, {});
}

SessionPtr currentSession() {
  SessionPtr session = sessionOfThread();
  if (!session) failMissingObject("the session of this thread: call vlclientui.headless() first");
  return session;
}

}  // namespace vlclientui::python
