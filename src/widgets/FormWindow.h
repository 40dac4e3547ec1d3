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

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

class ValueLabel;

/// The window of one loaded form. Only unloading the form closes it: Escape and the close box merely ask the
/// form. While the form accepts no input, none reaches the window or its widgets.
///
/// It may be a child of a host's window: at the place that the form tells, or where the host's layout puts
/// it. Enter and Escape belong to the host there. When the host's window is destroyed with this one inside,
/// the form stays loaded without a window.
///
/// It is as high as its content asks for, but never higher than the screen: places that scroll give way then.
class FormWindow : public QDialog {
 public:
  /// @throws RuntimeFailure when there is no layout for the form or for a hosted control.
  FormWindow(Form& form, const ViewRegistry& views, const PathTexts& paths);
  ~FormWindow() override;

  /// Shows the window over its owner and returns when it has been retired. @param owner may be null.
  void run(QWidget* owner);
  /// Shows the window where it is, among other windows. The form is told the first time.
  void appear();
  /// Moves into another widget, or out to a window of its own, and hides. @param parent null for no widget.
  void standIn(QWidget* parent);
  /// The form is unloading: hides the window and forgets the form.
  void retire();

  /// Null after retire.
  [[nodiscard]] Form* form() const { return form_; }
  [[nodiscard]] const FormBinder& binder() const { return *binder_; }

  /// Escape: clicks the form's cancel button; without one, closes the form by its frame.
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
  void addNotice();
  void showNotice();
  [[nodiscard]] int wantedHeight() const;
  [[nodiscard]] int heightOfScreen() const;
  [[nodiscard]] int widthOfScreen() const;
  void fitHeight();
  void stayOnScreen();
  void tellAppearance();
  void moveToPlace();

  Form* form_;
  bool appeared_ = false;
  FormBinder* binder_;
  WindowFocus* focus_;
  ValueLabel* notice_ = nullptr;  ///< at the foot, hidden while there is nothing to tell
  PathTexts paths_;
  Event<>::Connection captionConnection_ = 0;
  Event<>::Connection noticeConnection_ = 0;
  Event<>::Connection placeConnection_ = 0;
  QPointer<QEventLoop> loop_;
  int designHeight_ = 0;  ///< the least that the layout itself asks for
};

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
