#include "viewer/waiting/Errand.h"

#include <QMetaObject>
#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "viewer/waiting/Workers.h"

namespace vlclientui::viewer {
namespace {

constexpr std::chrono::milliseconds patience(500);  // of a person, and of the end of what was given up

}  // namespace

struct Errand::Shared {
  struct Ended {
    End end = End::Well;
    std::string words;
  };

  [[nodiscard]] static Ended ran(const Work& work);
  void run(const Work& work);

  client::CancelSwitch canceling;
  std::mutex mutex;
  std::condition_variable changed;
  std::optional<Ended> ended;
  Errand* listener = nullptr;  ///< null when nobody wants to know any more
};

Errand::Shared::Ended Errand::Shared::ran(const Work& work) {
  try {
    return {End::Well, work()};
  } catch (const RuntimeFailure& failure) {
    return {End::Failed, failure.description()};
  } catch (const std::exception& failure) {
    return {End::Failed, failure.what()};
  }
}

void Errand::Shared::run(const Work& work) {
  const client::CancelScope scope(canceling);
  Ended outcome = ran(work);
  const std::lock_guard lock(mutex);
  ended = std::move(outcome);
  changed.notify_all();
  if (listener != nullptr) QMetaObject::invokeMethod(listener, &Errand::takeEnd, Qt::QueuedConnection);
}

Errand::Errand(Work work, QObject* parent)
    : QObject(parent), work_(std::move(work)), shared_(std::make_shared<Shared>()) {
  shared_->listener = this;
}

Errand::~Errand() {
  shared_->canceling.cancel();
  std::unique_lock lock(shared_->mutex);
  shared_->listener = nullptr;
  const bool isRunning = work_ == nullptr && !shared_->ended;
  if (isRunning) shared_->changed.wait_for(lock, patience, [this] { return shared_->ended.has_value(); });
}

void Errand::start() {
  runOnWorker([shared = shared_, work = std::exchange(work_, nullptr)] { shared->run(work); });
  QTimer::singleShot(patience, this, [this] {
    if (!isOver_) emit overdue();
  });
}

void Errand::giveUp() {
  shared_->canceling.cancel();
  finish(End::GivenUp, {});
}

void Errand::takeEnd() {
  const auto& [end, words] = *shared_->ended;
  finish(end, QString::fromStdString(words));
}

void Errand::finish(End end, const QString& words) {
  if (isOver_) return;
  isOver_ = true;
  emit done(end, words);
}

}  // namespace vlclientui::viewer
