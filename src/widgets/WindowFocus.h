#pragma once

#include <QObject>
#include <QWidget>

#include "contracts/controls/Form.h"

namespace vlclientui::widgets {

/// Tells a form of the focus coming into its window and leaving it, and of the window becoming the active
/// one, wherever the window stands: for itself, or in a window of the host.
///
/// The focus leaves for other widgets of the same top-level window and for other windows of the program. It
/// stays where a message box, a menu, a list that drops down or a dialog opens, and where another program
/// comes to the front.
class WindowFocus : public QObject {
 public:
  WindowFocus(Form& form, QWidget& window);

  /// The window has appeared: moves count from now on. What the appearing did itself is told already.
  void start();
  /// Leaves the form alone from now on.
  void release() { form_ = nullptr; }

  /// Lives while the window moves elsewhere: what the focus does meanwhile means nothing. A focus that did
  /// not come along is outside afterwards, without an event.
  class Pause {
   public:
    explicit Pause(WindowFocus& focus) : focus_(focus) { focus_.paused_ = true; }
    ~Pause();
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;

   private:
    WindowFocus& focus_;
  };

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void focusMoved(const QWidget* now);
  void activated();
  void deactivated();
  void left();
  [[nodiscard]] bool follows() const { return form_ && started_ && !paused_; }
  [[nodiscard]] bool holds(const QWidget* widget) const;
  [[nodiscard]] bool staysBelow(const QWidget& other) const;

  Form* form_;
  QWidget& window_;
  bool started_ = false;
  bool paused_ = false;
  bool active_ = false;
};

}  // namespace vlclientui::widgets
