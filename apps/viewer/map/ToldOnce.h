#pragma once

#include <QMetaObject>
#include <QObject>
#include <atomic>
#include <utility>

namespace vlclientui::viewer {

/// A word from any thread to an object, on that object's own: several that come before it is heard are one.
class ToldOnce {
 public:
  /// Returns at once. @param heard called on the thread of the listener, unless that is gone by then. This
  /// object lives at least as long as the listener.
  template <class Heard>
  void tell(QObject& listener, Heard heard) {
    if (isTold_.exchange(true)) return;
    const auto hear = [this, heard = std::move(heard)] {
      isTold_ = false;
      heard();
    };
    QMetaObject::invokeMethod(&listener, hear, Qt::QueuedConnection);
  }

 private:
  std::atomic<bool> isTold_ = false;
};

}  // namespace vlclientui::viewer
