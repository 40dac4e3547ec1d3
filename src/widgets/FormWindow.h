#pragma once

#include <QDialog>
#include <QPointer>
#include <functional>

#include "contracts/controls/Form.h"
#include "widgets/FormBinder.h"
#include "widgets/PathTexts.h"
#include "widgets/ViewRegistry.h"
#include "widgets/WindowFocus.h"

class QEventLoop;

namespace vlclientui::widgets {

/// The window of one loaded form. It closes when its form unloads, and in no other way: Escape and the
/// close box only ask the form. Input reaches neither the window nor its widgets while the form accepts none.
///
/// It may stand in a window of the host, as a widget like any other: at the place that the form tells, or
/// where a layout of the host puts it. Enter and Escape are the host's there. When the host's window goes and
/// takes this one along, the form stays as it is, without a window.
class FormWindow : public QDialog {
 public:
  /// @throws RuntimeFailure when there is no layout for the form or for a hosted control.
  FormWindow(Form& form, const ViewRegistry& views, const PathTexts& paths);
  ~FormWindow() override;

  /// Shows the window over its owner and returns when it has been retired. @param owner may be null.
  void run(QWidget* owner);
  /// Shows the window where it stands, among other windows. The first time the form is told.
  void appear();
  /// Goes into another widget, or back to a window of its own; hidden. @param parent null for no widget.
  void standIn(QWidget* parent);
  /// The form is unloading: hides the window and lets go of the form.
  void retire();

  /// Null after retire.
  [[nodiscard]] Form* form() const { return form_; }
  [[nodiscard]] const FormBinder& binder() const { return *binder_; }

  /// Escape: a click on the form's cancel button; without one the form is closed by its frame.
  void reject() override;

  void setVisible(bool visible) override;

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void showDefaultButton();
  void fitHeight();
  void tellAppearance();
  void moveToPlace();

  Form* form_;
  bool appeared_ = false;
  FormBinder* binder_;
  WindowFocus* focus_;
  Event<>::Connection captionConnection_ = 0;
  Event<>::Connection placeConnection_ = 0;
  QPointer<QEventLoop> loop_;
  int designHeight_ = 0;  ///< the least that the layout asks for itself
};

}  // namespace vlclientui::widgets
