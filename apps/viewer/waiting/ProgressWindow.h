#pragma once

#include <QDialog>
#include <QTimer>
#include <atomic>
#include <functional>
#include <utility>

class QLabel;
class QProgressBar;
class QPushButton;

namespace vlclientui::viewer {

/// Shows the progress of a long piece of work and lets a person cancel it. Meanwhile no other window of the
/// program takes input. The window stays until the work has ended, even after Cancel.
class ProgressWindow : public QDialog {
  Q_OBJECT

 public:
  explicit ProgressWindow(const QString& what, QWidget* parent = nullptr);

  /// Runs the work on a thread of its own and waits for it, under this window. To be called once.
  /// @param work must not throw. @returns what it returned.
  bool run(const std::function<bool()>& work);

  /// Called by the work, on its thread. @param share from 0 to 1. @returns false once it is to end.
  [[nodiscard]] bool report(double share);

  /// For work that does not report.
  void showBusy();
  /// Called on the thread of the windows when a person cancels, for work that does not report; and in any
  /// case before the window waits for the last of the work.
  void onCancel(std::function<void()> end) { end_ = std::move(end); }

  /// Whether a person has canceled the work.
  [[nodiscard]] bool isCanceledByPerson() const { return canceledByPerson_; }

  /// Cancel, Escape and the window's own close button.
  void reject() override;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void showShare();

  QLabel* text_;
  QProgressBar* bar_;
  QPushButton* cancel_;
  QTimer look_;
  std::function<void()> end_;
  std::atomic<double> share_ = 0;
  std::atomic<bool> canceled_ = false;
  bool canceledByPerson_ = false;
};

}  // namespace vlclientui::viewer
