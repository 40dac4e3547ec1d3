#include "viewer/waiting/Workers.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>

namespace vlclientui::viewer {
namespace {

struct Counted {
  std::mutex mutex;
  std::condition_variable changed;
  int atWork = 0;
};

// Stays when the program ends: a worker may outlive even that.
Counted& counted() {
  static auto* const all = new Counted;
  return *all;
}

void addWorkers(int count) {
  const std::lock_guard lock(counted().mutex);
  counted().atWork += count;
  counted().changed.notify_all();
}

}  // namespace

void runOnWorker(std::function<void()> work) {
  addWorkers(1);
  try {
    std::thread([work = std::move(work)]() mutable {
      work();
      work = nullptr;
      addWorkers(-1);
    }).detach();
  } catch (...) {
    addWorkers(-1);
    throw;
  }
}

bool workersEnd(std::chrono::milliseconds within) {
  std::unique_lock lock(counted().mutex);
  return counted().changed.wait_for(lock, within, [] { return counted().atWork == 0; });
}

}  // namespace vlclientui::viewer
