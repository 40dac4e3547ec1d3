#pragma once

#include <qgsfeedback.h>

#include "client/facade/CancelSwitch.h"

namespace vlclientui::qgis {

/// While it lives, the work of this thread ends as soon as QGIS wants it no more.
class GivingUp {
 public:
  /// @param feedback may be null.
  explicit GivingUp(const QgsFeedback* feedback) : scope_(work_) {
    if (feedback == nullptr) return;
    connection_ = QObject::connect(feedback, &QgsFeedback::canceled, [work = work_] { work.cancel(); });
    if (feedback->isCanceled()) work_.cancel();
  }
  GivingUp(const GivingUp&) = delete;
  GivingUp& operator=(const GivingUp&) = delete;
  ~GivingUp() { QObject::disconnect(connection_); }

 private:
  client::CancelSwitch work_;
  client::CancelScope scope_;
  QMetaObject::Connection connection_;
};

}  // namespace vlclientui::qgis
