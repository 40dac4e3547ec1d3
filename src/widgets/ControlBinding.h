#pragma once

#include <QObject>
#include <QPalette>
#include <QWidget>
#include <functional>

#include "contracts/controls/Control.h"

namespace vlclientui::widgets {

class FormBinder;

/// Ends the name of the label that tells what is wrong with the widget whose name stands before it.
inline constexpr QLatin1String complaintSuffix("Complaint");

/// Ties one control to one widget: the widget mirrors the control's state, and what a person does to the
/// widget reaches the control as a person's act. Derived classes know the kinds.
///
/// A control may be destroyed while an event of its widget is still being handled, so a binding outlives its
/// control: after release it does nothing.
class ControlBinding : public QObject {
 public:
  ControlBinding(FormBinder& binder, Control& control, QWidget& widget);
  ~ControlBinding() override;

  void release();
  /// Copies the control's whole state to the widget.
  void mirrorAll();

  /// Null after release.
  [[nodiscard]] Control* control() const { return control_; }
  [[nodiscard]] QWidget& widget() const { return widget_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

  /// Copies one aspect to the widget. Called only between construction and release; must not look like a
  /// person's input.
  virtual void mirror(Aspect aspect);
  /// Passes on a person's input, except while mirroring and after release. Copies the aspect back to the
  /// widget afterwards, in case the control did not follow.
  void act(const std::function<void()>& action, Aspect aspect);
  [[nodiscard]] FormBinder& binder() const { return binder_; }

 private:
  void follow(Aspect aspect);
  void focusArrived(Qt::FocusReason reason);
  bool keyPressed(const QKeyEvent& event);
  void mirrorEnabled();
  void mirrorVisible();
  void mirrorColor();
  void mirrorComplaint();

  FormBinder& binder_;
  Control* control_;
  QWidget& widget_;
  QPalette normalPalette_;
  int connection_ = 0;
};

}  // namespace vlclientui::widgets
