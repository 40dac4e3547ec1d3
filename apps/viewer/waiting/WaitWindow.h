#pragma once

#include <QDialog>

#include "client/facade/ServerWait.h"

class QLabel;

namespace vlclientui::viewer {

/// Shows that a call waits for a server, and lets a person give it up. The thread of the windows blocks
/// meanwhile: the call lets this window live, and no other one takes input.
class WaitWindow : public QDialog {
  Q_OBJECT

 public:
  explicit WaitWindow(QWidget* parent = nullptr);

  /// Shows how far the wait is and takes what the person does. @returns false once it is given up.
  [[nodiscard]] bool goOn(const client::ServerWait& wait);

  /// Cancel, Escape and the window's own close button.
  void reject() override;

 private:
  QLabel* text_;
  bool isGivenUp_ = false;
};

/// A window for each call that waits for long, over the one that is active then.
[[nodiscard]] client::WaitQuestions showWaits();

}  // namespace vlclientui::viewer
