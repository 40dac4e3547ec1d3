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

/// Ties the controls of a form and of its hosted controls to a window's widgets of the same names. Controls
/// hear of a person's input only, never of what widgets do while they mirror.
///
/// Focus: a person's move to a bound widget calls the control's userFocuses, a move to any other widget of
/// the window the form's userFocusesElsewhere. Switching windows, popups and messages do not count; a click
/// into an inactive window counts once it is active. When the logic takes the focus from a control, the
/// window itself holds it until the next move, and Tab continues from where the focus was.
class FormBinder : public QObject {
 public:
  /// Builds the layouts of hosted controls inside the window and binds all controls. A control without its
  /// widget stays unbound; missingWidgets lists it.
  /// @throws RuntimeFailure when a hosted control has no layout.
  FormBinder(Form& form, QWidget& window, const ViewRegistry& views, PathTexts paths);
  ~FormBinder() override;

  /// Stops touching the form's controls. The binder itself may have to live until the current event has
  /// returned.
  void release();
  /// The window has appeared: from now on focus moves count as a person's.
  void startFollowingFocus() { followsFocus_ = true; }

  /// Null when the control has no widget here.
  [[nodiscard]] QWidget* widgetOf(const Control& control) const;

  // For bindings.

  /// Alive while state is copied to a widget; signals of widgets are ignored meanwhile.
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
  /// Takes the focus out of a widget that is about to be disabled or hidden, without passing it on.
  void parkFocus(QWidget& leaving);
  /// Puts the focus back where the form has it, after a move that the form did not follow.
  void restoreFocus();
  /// Whether a person's action is running, as while a message box of its own is open.
  [[nodiscard]] bool isActing() const { return acts_ > 0; }
  /// Lets no failure through; the toolkit reports it.
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

/// Names of controls, those of hosted controls included, without exactly one widget of the right kind in a
/// window that a binder has filled. Empty when all is well.
[[nodiscard]] std::vector<std::string> missingWidgets(const ControlContainer& container, const QWidget& root);

}  // namespace vlclientui::widgets
