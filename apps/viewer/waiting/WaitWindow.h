#pragma once

#include <QDialog>
#include <chrono>

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

/// A wait for work of another thread: the host's windows live on meanwhile, and what lasts gets a window in
/// which it can be given up.
class PatientWait {
 public:
  /// @param untilShown how long it takes to get the window.
  explicit PatientWait(std::chrono::milliseconds untilShown);
  PatientWait(const PatientWait&) = delete;
  PatientWait& operator=(const PatientWait&) = delete;
  ~PatientWait();

  /// To be asked again and again. @param wait for a server, as far as there is one. @returns false once it is
  /// given up.
  [[nodiscard]] bool goOn(client::ServerWait wait);

 private:
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::chrono::milliseconds untilShown_;
  client::WaitQuestion question_;
};

}  // namespace vlclientui::viewer
