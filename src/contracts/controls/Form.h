#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/controls/ControlContainer.h"

namespace vlclientui {

class Button;
class Toolkit;

/// A window as state and events, in two parts of different lifetimes: the fields of the derived class live
/// as long as the object; the control set is built at load and dropped at unload, so that each show has
/// new controls. Releasing a form is not unloading it: no unload rule runs then.
///
/// A form that is held by shared pointers may be let go inside an event of its own: it lives until the
/// outermost event has returned.
///
/// Derived classes keep no pointer into the control set but the one that they return from buildControls
/// and give up in dropControls.
class Form : public ControlContainer, public std::enable_shared_from_this<Form> {
 public:
  /// Whether the first control gets the focus when the window appears. A page that appears in a window of the
  /// host takes the focus from nobody.
  enum class FirstFocus { Given, LeftAlone };

  Form(Toolkit& toolkit, std::string formName);
  ~Form() override;

  [[nodiscard]] const std::string& formName() const { return formName_; }
  [[nodiscard]] Toolkit& toolkit() const { return toolkit_; }
  [[nodiscard]] const std::string& caption() const { return caption_; }
  void setCaption(std::string caption);

  [[nodiscard]] bool loaded() const { return loaded_; }
  /// Builds the controls and their view, then runs the load rule. Nothing when loaded.
  void load();
  /// Runs the unload rule, then drops view and controls. Inside an event of its own controls the set is
  /// destroyed only when the outermost event has returned. Nothing when not loaded.
  void unload();
  /// Loads, shows and returns when the form has been unloaded.
  void showModal();

  /// Places the window, in twips from the upper left corner of what holds it. Loads the form.
  void moveTo(double left, double top);
  [[nodiscard]] double left() const { return left_; }
  [[nodiscard]] double top() const { return top_; }

  /// The window becomes the active one, or, standing in a window of the host, that does; raised before
  /// userEnters. Nothing while the form is not loaded.
  void userActivates();
  /// The focus comes into the window from outside; also raised, before gotFocus, when a control gets the
  /// focus while it was outside. Nothing while it is inside already.
  void userEnters();
  /// The focus goes to another window, or out of the page in a window of the host: lost on the focused
  /// control, then on the form. A message box or a file dialog over the window takes no focus from it.
  void userLeaves();

  /// A person closes the window by its frame.
  void userCloses();
  /// A person presses Escape, or Enter where nothing else uses it: a click on the form's cancel button, or on
  /// its default button. @returns whether it has one; only then the key is used up.
  bool userPressesEscape();
  bool userPressesEnter();
  void setCancelButton(Button* button) { cancelButton_ = button; }
  [[nodiscard]] Button* cancelButton() const { return cancelButton_; }
  void setDefaultButton(Button* button) { defaultButton_ = button; }
  [[nodiscard]] Button* defaultButton() const { return defaultButton_; }

  /// Runs what may let events run although the form is not to be acted on: until it returns, nothing that a
  /// person does to the window or its controls has an effect. Failures pass through.
  void withoutInput(const std::function<void()>& action);
  [[nodiscard]] bool acceptsInput() const { return inputBlocks_ == 0; }

  [[nodiscard]] Control* focusedControl() const { return focused_; }
  [[nodiscard]] bool focusLiesIn(const Control& control) const;
  /// Called by the toolkit when the window has appeared: hosted controls are told, the form is activated,
  /// then the focus enters it, to the form's own choice, else to the first control in tab order.
  void windowAppeared(FirstFocus focus = FirstFocus::Given);
  /// Called by the toolkit when the window went without the form, as with a window of the host that it stood
  /// in, or was taken elsewhere: the focus is outside, and no event tells of it.
  void windowLost();
  void setFirstFocus(Control* control) { firstFocus_ = control; }
  /// A person moves the focus inside the window to something that is no control, such as an engine's list.
  void userFocusesElsewhere();
  /// Lost on the old control runs to its end, then gained on the new. A null control takes the focus away.
  void moveFocus(Control* control);

  /// Runs a person's action; see Control::act.
  void dispatch(const std::function<void()>& action);
  /// Runs what may raise events of the form's controls, also by a write from code: a control set that is
  /// unloaded meanwhile lives until the outermost of these has returned. Failures pass through.
  void holdControlsWhile(const std::function<void()>& action);

  [[nodiscard]] Form* topForm() override { return this; }

  /// For views only.
  Event<> captionChanged;
  Event<> placeChanged;

 protected:
  /// Makes a new control set and keeps it reachable for the derived class.
  virtual std::shared_ptr<void> buildControls() = 0;
  /// The derived class forgets the set; the form still holds it while an event runs.
  virtual void dropControls() = 0;
  virtual void onLoad() {}
  virtual void onUnload() {}
  virtual void onActivate() {}
  /// The form gets the focus, or loses it.
  virtual void onEnter() {}
  virtual void onLeave() {}

 private:
  friend class Control;

  void forget(const Control& control);
  void showHostedControls();
  void passFocus(Control* control);
  [[nodiscard]] bool mayReceiveFocus(const Control* control) const;
  void endEvent();
  void releaseRetired();

  Toolkit& toolkit_;
  std::string formName_;
  std::string caption_;
  double left_ = 0;
  double top_ = 0;
  bool loaded_ = false;
  bool entered_ = false;
  bool unloading_ = false;
  int eventDepth_ = 0;
  Control* focused_ = nullptr;
  Button* cancelButton_ = nullptr;
  Button* defaultButton_ = nullptr;
  Control* firstFocus_ = nullptr;
  int inputBlocks_ = 0;
  std::shared_ptr<void> controlSet_;
  std::vector<std::shared_ptr<void>> retired_;
};

}  // namespace vlclientui
