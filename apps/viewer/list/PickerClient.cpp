#include "viewer/list/PickerClient.h"

#include <QApplication>
#include <QThreadPool>
#include <chrono>
#include <exception>
#include <future>
#include <mutex>
#include <utility>

#include "client/facade/CancelSwitch.h"
#include "contracts/Silence.h"
#include "viewer/waiting/WaitWindow.h"

namespace vlclientui::viewer {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds look(10);         // between looks at what is being read
constexpr milliseconds untilShown(500);  // before the window about it

}  // namespace

struct PickerClient::Reading {
  client::CancelSwitch work;
  std::promise<std::string> answer;
  std::vector<SilentEnd> ends;  ///< of the reading thread; complete with the answer

  void note(const client::ServerWait& wait) {
    const std::scoped_lock lock(mutex_);
    wait_ = wait;
  }
  [[nodiscard]] client::ServerWait wait() const {
    const std::scoped_lock lock(mutex_);
    return wait_;
  }

 private:
  mutable std::mutex mutex_;
  client::ServerWait wait_{};
};

PickerClient::PickerClient(const std::shared_ptr<client::CatalogueServer>& server,
                           std::function<void(const std::vector<client::LeftOut>&)> told)
    : OVLCatalogueServerClient(server), server_(server), told_(std::move(told)) {}

PickerClient::~PickerClient() {
  if (last_) last_->work.cancel();
}

std::string PickerClient::GetServerInfo(const std::string& request) {
  const auto reading = last_ = std::make_shared<Reading>();
  std::future<std::string> answer = reading->answer.get_future();
  QThreadPool::globalInstance()->start([reading, request, server = server_] {
    const client::CancelScope scope(reading->work);
    const SilenceListener ends([reading](const SilentEnd& end) { reading->ends.push_back(end); });
    const client::ServerWaitScope counting([reading] {
      return [reading](const client::ServerWait& wait) {
        reading->note(wait);
        return !reading->work.isCanceled();
      };
    });
    try {
      reading->answer.set_value(server->serverInfo(request));
    } catch (...) {
      reading->answer.set_exception(std::current_exception());
    }
  });
  PatientWait wait(untilShown);
  while (answer.wait_for(look) != std::future_status::ready) {
    if (wait.goOn(reading->wait())) continue;
    reading->work.cancel();
    endSilently("the list of services was given up");
    told_({});
    return {};
  }
  // Who listens to silence listens on the thread of the windows.
  for (const SilentEnd& end : reading->ends) endSilently(end.reason, end.routine.c_str());
  told_(problems());
  return answer.get();
}

}  // namespace vlclientui::viewer
