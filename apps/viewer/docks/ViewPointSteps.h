#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "contracts/Operations.h"

namespace vlclientui::viewer {

/// Hears when a person moves the viewpoint on the page that stands in a dock: soon behind a step, and once it
/// rests. The page may be at work still when it is soon; nothing has moved since then most often.
class ViewPointSteps : public QObject {
 public:
  explicit ViewPointSteps(const std::function<void()>& moved);

 private:
  void hear(const Operation& operation);

  QTimer soon_;
  QTimer rest_;
  OperationListener listener_;
};

}  // namespace vlclientui::viewer
