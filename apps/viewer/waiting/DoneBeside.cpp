#include "viewer/waiting/DoneBeside.h"

#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <mutex>
#include <utility>

#include "client/facade/CancelSwitch.h"
#include "viewer/waiting/WaitWindow.h"
#include "viewer/waiting/Workers.h"

namespace vlclientui::viewer {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds look(20);    // between looks at the work
constexpr milliseconds quick(300);  // that nobody takes for standing still

/// What both threads know of the work.
struct WorkBeside {
  client::CancelSwitch canceling;
  std::promise<void> end;

  explicit WorkBeside(std::string what) : wait_{std::move(what), 0, {}} {}

  void run(const std::function<void()>& work, const std::shared_ptr<WorkBeside>& self) {
    const client::CancelScope scope(canceling);
    const client::ServerWaitScope told([self] {
      return [self](const client::ServerWait& wait) {
        self->note(wait);
        return !self->canceling.isCanceled();
      };
    });
    try {
      work();
      end.set_value();
    } catch (...) {
      end.set_exception(std::current_exception());
    }
  }
  [[nodiscard]] client::ServerWait wait() {
    const std::scoped_lock lock(mutex_);
    return wait_;
  }

 private:
  void note(const client::ServerWait& wait) {
    const std::scoped_lock lock(mutex_);
    wait_ = wait;
  }

  std::mutex mutex_;
  client::ServerWait wait_;
};

}  // namespace

bool doBesideWindows(const QString& what, std::function<void()> work) {
  const auto beside = std::make_shared<WorkBeside>(what.toStdString());
  std::future<void> end = beside->end.get_future();
  runOnWorker([beside, work = std::move(work)] { beside->run(work, beside); });
  if (end.wait_for(quick) != std::future_status::ready) {
    PatientWait wait(milliseconds(0));
    while (end.wait_for(look) != std::future_status::ready) {
      if (wait.goOn(beside->wait())) continue;
      beside->canceling.cancel();
      return false;
    }
  }
  end.get();
  return true;
}

}  // namespace vlclientui::viewer
