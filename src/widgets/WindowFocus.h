#pragma once

#include <QObject>
#include <QWidget>

#include "contracts/controls/Form.h"

namespace vlclientui::widgets {

/// Tells a form when the focus enters or leaves its window and when the window becomes active, whether it is
/// a top-level window or a child of a host's window.
///
/// The focus leaves for other widgets of the same top-level window and for other windows of the program. It
/// stays while a message box, a menu, a drop-down list or a dialog is open, and while another program is in
/// front.
class WindowFocus : public QObject {
 public:
  WindowFocus(Form& form, QWidget& window);

  /// The window has appeared: focus moves count from now on. Those of appearing itself were reported already.
  void start();
  /// Stops touching the form.
  void release() { form_ = nullptr; }

  /// Alive while the window moves elsewhere: focus changes are ignored meanwhile. A focus that did not move
  /// along is outside afterwards, without an event.
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
