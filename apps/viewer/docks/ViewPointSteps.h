#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "contracts/Operations.h"

namespace vlclientui::viewer {

/// Hears when a person moves the viewpoint on the page that stands in a dock: soon behind a step, and behind
/// typing once it rests.
class ViewPointSteps : public QObject {
 public:
  explicit ViewPointSteps(std::function<void()> moved);

 private:
  void hear(const Operation& operation);

  QTimer soon_;
  OperationListener listener_;
};

}  // namespace vlclientui::viewer
