#include "viewer/tour/StepRunner.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <exception>

namespace vlclientui::viewer {
namespace {

constexpr int pause = 20;         // milliseconds between looks
constexpr int patience = 30'000;  // milliseconds until something must be true

void print(const char* outcome, const QString& what) {
  std::printf("  %-6s %s\n", outcome, qPrintable(what));
  std::fflush(stdout);
}

}  // namespace

void StepRunner::act(const QString& what, std::function<void()> action) {
  steps_.push_back({what, [action = std::move(action)] { return action(), true; }, false});
}

void StepRunner::see(const QString& what, std::function<bool()> condition) {
  steps_.push_back({what, std::move(condition), true});
}

int StepRunner::run() {
  at_ = 0;
  waiting_.start();
  QTimer::singleShot(pause, this, &StepRunner::next);
  return QCoreApplication::exec();
}

// Schedules the next step before this one acts: an action may open a modal window and return only when
// later steps have closed it.
void StepRunner::next() {
  if (isHeldUp()) return static_cast<void>(QTimer::singleShot(pause, this, &StepRunner::next));
  if (at_ == steps_.size()) return QCoreApplication::exit(0);
  const Step& step = steps_[at_];
  if (step.mayWait) {
    look(step);
  } else {
    goOn("done", step);
    acting_.emplace_back(QApplication::activeModalWidget());
    const bool isDone = attempt(step);
    acting_.pop_back();
    if (!isDone) fail(step, lastReason_);
  }
}

// Pages and lists let events run while they are half made. Only what has opened a window, or a menu, waits
// for the next steps.
bool StepRunner::isHeldUp() const {
  return !acting_.empty() && acting_.back() == QApplication::activeModalWidget() &&
         QApplication::activePopupWidget() == nullptr;
}

void StepRunner::look(const Step& step) {
  if (attempt(step)) return goOn("seen", step);
  if (waiting_.elapsed() > patience) return fail(step, lastReason_);
  QTimer::singleShot(pause, this, &StepRunner::next);
}

void StepRunner::goOn(const char* outcome, const Step& step) {
  print(outcome, step.what);
  ++at_;
  waiting_.restart();
  QTimer::singleShot(pause, this, &StepRunner::next);
}

bool StepRunner::attempt(const Step& step) {
  try {
    lastReason_.clear();
    return step.tryIt();
  } catch (const std::exception& failure) {
    lastReason_ = QString::fromUtf8(failure.what());
    return false;
  }
}

void StepRunner::fail(const Step& step, const QString& reason) {
  print("FAILED", reason.isEmpty() ? step.what : step.what + ": " + reason);
  at_ = steps_.size();
  if (look_) look_();
  QCoreApplication::exit(1);
}

}  // namespace vlclientui::viewer
