#pragma once

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "contracts/RuntimeFailure.h"
#include "contracts/Toolkit.h"

class QAbstractButton;
class QComboBox;

namespace vlclientui::test {

/// What all persons at real windows do alike. They act on the widgets of the window that they look at, by
/// synthesized keys and clicks. Whatever opens over it is answered by a timer, since the act that opened it
/// has not returned then; a window that nobody awaits is a failure of the test.
class QtHands {
 public:
  QtHands();

  /// Runs `visit` when the next modal window of a form has appeared, and closes that by its frame if it is
  /// still open then. The person looks at it meanwhile.
  void whenWindowAppears(std::function<void()> visit) { visits_.push_back(std::move(visit)); }
  /// What is done while a modal window that belongs to no form is open; it closes afterwards.
  void whenOtherWindowAppears(std::function<void(QDialog&)> visit) { otherVisit_ = std::move(visit); }
  /// The answer to the next question that can be canceled; without one it is that of the first button.
  void answerQuestion(MessageAnswer answer) { answers_.push_back(answer); }
  /// The file that the next file dialog gives, as the system names it; without one the person cancels.
  void chooseFile(const QString& file) { files_.push_back(file); }
  /// The window, or the page in a window of the host, that the acts go to.
  void lookAt(QWidget& window) { window_ = &window; }

  // Of what the person looks at.
  /// @throws RuntimeFailure when it is gone.
  [[nodiscard]] QWidget& window() const;
  [[nodiscard]] bool windowIsOpen() const { return window_ && window_->isVisible(); }
  [[nodiscard]] std::string caption() const { return window().windowTitle().toStdString(); }
  void closeByFrame() const { window().close(); }
  /// @throws RuntimeFailure when there is no such widget.
  template <class Widget>
  [[nodiscard]] Widget& find(const std::string& name) const {
    auto* const widget = window().findChild<Widget*>(QString::fromStdString(name));
    need(widget, "no widget " + name);
    return *widget;
  }
  /// All that show, of a class with or without a meta object of its own.
  template <class Widget>
  [[nodiscard]] std::vector<Widget*> allShown() const {
    std::vector<Widget*> shown;
    for (QWidget* const child : window().findChildren<QWidget*>()) {
      auto* const widget = dynamic_cast<Widget*>(child);
      if (widget && widget->isVisible()) shown.push_back(widget);
    }
    return shown;
  }
  /// Push buttons and check boxes.
  void click(const std::string& name) const;
  void click(QAbstractButton& button) const;
  /// Moves into the box.
  void enter(QLineEdit& box) const;
  /// Moves into the box and replaces its text; the box keeps the focus.
  void type(QLineEdit& box, const std::string& text) const;
  void pick(QComboBox& box, const std::string& entry) const;
  /// In what holds the focus.
  void press(Qt::Key key) const;
  /// A person's first move into a window makes it active, as after a message that stood over it.
  void waitForWindow() const;

  /// Message boxes seen so far: title, a bar, text.
  [[nodiscard]] const std::vector<std::string>& messages() const { return messages_; }
  /// File dialogs seen so far: title, a bar, the filters as shown.
  [[nodiscard]] const std::vector<std::string>& fileDialogs() const { return fileDialogs_; }

  /// @throws RuntimeFailure with the complaint.
  static void need(bool condition, const std::string& complaint) {
    if (!condition) throw RuntimeFailure(complaint);
  }

 private:
  void answerWindowOnTop();
  void startVisit(QDialog& window);
  void runVisit(QDialog& window, const std::function<void()>& visit);
  void answerMessage(QMessageBox& box);
  void answerFileDialog(QFileDialog& dialog);
  void answerOtherWindow(QDialog& window);
  [[nodiscard]] bool isVisiting(const QDialog& window) const;

  QTimer watch_;
  QPointer<QWidget> window_;
  std::vector<QPointer<QDialog>> visited_;  ///< windows with a visit under way, the last one on top
  std::deque<std::function<void()>> visits_;
  std::function<void(QDialog&)> otherVisit_;
  std::deque<MessageAnswer> answers_;
  std::deque<QString> files_;
  std::vector<std::string> messages_;
  std::vector<std::string> fileDialogs_;
};

}  // namespace vlclientui::test
