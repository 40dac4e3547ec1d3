#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "widgets/PathTexts.h"
#include "widgets/ViewRegistry.h"

namespace vlclientui::widgets {

class ControlBinding;

/// Name of the property that marks a widget whose texts hold paths.
inline constexpr const char* showsPathProperty = "showsPath";

/// Ties a form's controls, those of its hosted controls included, to the widgets of the same names in a
/// window. Only what a person does reaches the controls; what the widgets do while they mirror does not.
///
/// Focus: a person's move to a bound widget is the control's userFocuses; a move to any other widget of
/// the window is the form's userFocusesElsewhere. Switching windows, popups and messages move nothing; a
/// click into a window that was not active yet counts as soon as it is.
/// When the logic takes the focus from a control, the window itself holds it until the next move, and Tab
/// goes on from where the focus was.
class FormBinder : public QObject {
 public:
  /// Builds the layouts of hosted controls inside the window and binds all. A control without its widget
  /// stays unbound; missingWidgets tells.
  /// @throws RuntimeFailure when a hosted control has no layout.
  FormBinder(Form& form, QWidget& window, const ViewRegistry& views, PathTexts paths);
  ~FormBinder() override;

  /// Leaves the form's controls alone from now on. The binder itself may have to live until the event at
  /// work has returned.
  void release();
  /// The window has appeared: focus moves are a person's from now on.
  void startFollowingFocus() { followsFocus_ = true; }

  /// Null when the control has no widget here.
  [[nodiscard]] QWidget* widgetOf(const Control& control) const;

  // For bindings.

  /// Lives while the logic's state goes to a widget; signals of widgets mean nothing then.
  class Mirroring {
   public:
    explicit Mirroring(FormBinder& binder) : binder_(binder) { ++binder_.mirroring_; }
    ~Mirroring() { --binder_.mirroring_; }
    Mirroring(const Mirroring&) = delete;
    Mirroring& operator=(const Mirroring&) = delete;

   private:
    FormBinder& binder_;
  };

  [[nodiscard]] bool isMirroring() const { return mirroring_ > 0; }
  [[nodiscard]] bool followsFocus() const { return followsFocus_; }
  [[nodiscard]] const PathTexts& paths() const { return paths_; }
  /// Takes the focus out of a widget that is about to be disabled or hidden, without giving it to another.
  void parkFocus(QWidget& leaving);
  /// Puts the focus where the form has it, after a move that the form did not follow.
  void restoreFocus();
  /// Whether a person's act is at work, as where a message box was opened inside one.
  [[nodiscard]] bool isActing() const { return acts_ > 0; }
  /// No failure gets past it; the toolkit reports it.
  void runGuarded(const std::function<void()>& action);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void bind(const ControlContainer& container, QWidget& root, const ViewRegistry& views);
  void bindHosted(HostedControl& control, QWidget& slot, const ViewRegistry& views);
  void focusMoved(QWidget* now);
  [[nodiscard]] bool belongsToControl(const QWidget& widget) const;
  bool moveOnFromParkedFocus(bool forward);

  Form* form_;
  Toolkit& toolkit_;
  QWidget& window_;
  PathTexts paths_;
  std::vector<ControlBinding*> bindings_;
  QPointer<QWidget> parkedAt_;
  int mirroring_ = 0;
  int acts_ = 0;
  bool followsFocus_ = false;
};

/// Names of the controls, those of hosted controls included, that lack exactly one widget of the right
/// kind in a window that a binder has filled. Empty when all is well.
[[nodiscard]] std::vector<std::string> missingWidgets(const ControlContainer& container, const QWidget& root);

}  // namespace vlclientui::widgets
