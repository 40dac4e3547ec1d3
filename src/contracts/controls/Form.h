#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contracts/Silence.h"
#include "contracts/controls/ControlContainer.h"
#include "contracts/controls/Visit.h"

#pragma GCC visibility push(default)
namespace vlclientui {

class Button;
class Toolkit;

/// A window as state and events. Two lifetimes: the fields of the derived class live as long as the object;
/// the control set is built at load and dropped at unload, so that each show has new controls. A destructor
/// does not unload: onUnload is not called then.
///
/// A form held by shared pointers may be released inside its own event: it lives until the outermost event
/// has returned.
///
/// Derived classes keep one pointer into the control set: the one that buildControls returns and dropControls
/// gives up.
class Form : public ControlContainer, public std::enable_shared_from_this<Form> {
 public:
  /// Whether the first control gets the focus when the window appears. A page inside a window of the host
  /// does not take the focus.
  enum class FirstFocus {
    Given,     ///< to the first control that takes it
    LeftAlone  ///< it stays where it is
  };

  /// @param toolkit outlives the form. @param formName by which views and tests know it.
  Form(Toolkit& toolkit, std::string formName);
  ~Form() override;

  /// By which views and tests know it.
  [[nodiscard]] const std::string& formName() const { return formName_; }
  /// That makes its windows.
  [[nodiscard]] Toolkit& toolkit() const { return toolkit_; }
  /// The title of the window.
  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// Tells views by captionChanged.
  void setCaption(std::string caption);

  /// Whether controls and view are there: from before onLoad until after onUnload.
  [[nodiscard]] bool loaded() const { return loaded_; }
  /// Builds the controls and their view, then calls onLoad. Does nothing when loaded.
  void load();
  /// Calls onUnload, then drops view and controls. Inside an event of its own controls the set is destroyed
  /// only when the outermost event has returned. Does nothing when not loaded.
  void unload();
  /// One modal show, from its announcement to its end: there is no second one meanwhile, unless the window
  /// was closed before. Whatever ends it, the form is not loaded afterwards.
  class Show {
   public:
    /// @throws RuntimeFailure (alreadyOnShow) while the form is on show; the open window stays as it is.
    explicit Show(Form& form);
    Show(const Show&) = delete;
    Show& operator=(const Show&) = delete;
    ~Show();

    /// Loads, shows and returns when the form has been unloaded. Nothing shows when the window went while it
    /// loaded, or before.
    void run();

   private:
    std::shared_ptr<Form> keptAlive_;
    Form& form_;
  };

  /// The text of the failure of a second show.
  static constexpr const char* alreadyOnShow = "Cannot show a window that is open already";

  /// A whole modal show.
  void showModal();
  /// Whether a modal show is under way.
  [[nodiscard]] bool onShow() const { return show_ != nullptr; }

  /// Tells one window of the form from the next: it changes with each load and unload, and when the window
  /// goes without the form.
  [[nodiscard]] std::uint64_t windowNumber() const { return windowNumber_; }

  /// Places the window, in twips from the upper left corner of what holds it. Loads the form.
  void moveTo(double left, double top);
  /// Twips from the left edge of what holds it, as moveTo set it.
  [[nodiscard]] double left() const { return left_; }
  /// Twips from the upper edge.
  [[nodiscard]] double top() const { return top_; }

  /// The window becomes active, or the host's window around it does; raised before userEnters. Ignored while
  /// the form is not loaded.
  void userActivates();
  /// The focus comes into the window from outside; also raised, before gotFocus, when a control gets the
  /// focus while it was outside. Ignored while the focus is inside.
  void userEnters();
  /// The focus goes to another window, or out of a page in a window of the host: the focused control loses
  /// it, then the form. A message box or a file dialog over the window does not take it.
  void userLeaves();

  /// A person closes the window by its frame.
  void userCloses();
  /// A person presses Escape, or Enter that nothing else uses: clicks the form's cancel or default button.
  /// @returns whether the form has that button; only then is the key used up.
  bool userPressesEscape();
  /// The same for Enter and the default button.
  bool userPressesEnter();
  /// The button that Escape clicks. @param button of this form's controls, or null for none.
  void setCancelButton(Button* button) { cancelButton_ = button; }
  /// Null for none.
  [[nodiscard]] Button* cancelButton() const { return cancelButton_; }
  /// The button that Enter clicks where nothing else uses the key. @param button of this form's controls, or
  /// null.
  void setDefaultButton(Button* button) { defaultButton_ = button; }
  /// Null for none.
  [[nodiscard]] Button* defaultButton() const { return defaultButton_; }

  /// Runs an action that may let events run while the form must not be touched: until it returns, a person's
  /// input to the window has no effect. Failures pass through.
  void withoutInput(const std::function<void()>& action);
  /// Whether no withoutInput is under way.
  [[nodiscard]] bool acceptsInput() const { return inputBlocks_ == 0; }

  /// Null while no control holds the focus.
  [[nodiscard]] Control* focusedControl() const { return focused_; }
  /// Whether the control, or one that it is made of, holds the focus.
  [[nodiscard]] bool focusLiesIn(const Control& control) const;
  /// The toolkit calls this when the window has appeared: tells hosted controls, activates the form, then
  /// gives the focus to the control that the form chose, or to the first in tab order.
  void windowAppeared(FirstFocus focus = FirstFocus::Given);
  /// Called by the toolkit when the window was taken elsewhere: the focus is outside, and no event tells of
  /// it.
  void windowLost();
  /// Called by the toolkit when the window went without the form, as with a window of the host that it stood
  /// in: lost, and whoever is at work in it stops.
  void windowGone();
  /// Which control gets the focus when the window appears; null for the first in tab order.
  void setFirstFocus(Control* control) { firstFocus_ = control; }
  /// A person moves the focus inside the window to something other than a control, such as an engine's list.
  void userFocusesElsewhere();
  /// lostFocus of the old control runs to its end, then gotFocus of the new. Null takes the focus away.
  void moveFocus(Control* control);

  /// Runs a person's action, as a visit; see Control::act.
  void dispatch(const std::function<void()>& action);
  /// Runs a routine as a visit. Failures pass through; that the window has gone is told as a silent end.
  /// @returns whether it ran to its end; else its window has gone, and the pointer is the default one again.
  bool visited(const std::function<void()>& routine,
               const RoutineName& name = std::source_location::current());
  /// Runs what may raise events of the form's controls, writes from code included: a control set that is
  /// unloaded meanwhile lives until the outermost of these has returned. Failures pass through.
  void holdControlsWhile(const std::function<void()>& action);

  [[nodiscard]] Form* topForm() override { return this; }

  /// Why a person's last click on a button or a row did nothing, for views to tell in the window; empty for
  /// nothing. It is the reason of the first silent end of a click that showed no message and left the window
  /// open. The next edit takes it away.
  [[nodiscard]] const std::string& notice() const { return notice_; }
  /// Raises noticeChanged. @param notice one sentence for a person; empty for nothing.
  void setNotice(std::string notice);
  /// Runs what a click on a button or a row raises, and keeps its notice.
  void runClick(const std::function<void()>& click);

  /// For views only.
  Event<> captionChanged;
  /// For views: notice() has changed.
  Event<> noticeChanged;
  /// For views: left() or top() has changed.
  Event<> placeChanged;

 protected:
  /// Makes a new control set and keeps it reachable for the derived class.
  virtual std::shared_ptr<void> buildControls() = 0;
  /// Drops the derived class's pointer; the form keeps the set while an event runs.
  virtual void dropControls() = 0;
  /// The control set and its view have been made.
  virtual void onLoad() {}
  /// View and control set are about to go.
  virtual void onUnload() {}
  /// The window has become active.
  virtual void onActivate() {}
  /// The form gets the focus, or loses it.
  virtual void onEnter() {}
  /// The form loses the focus to another window.
  virtual void onLeave() {}

  /// The control set that a routine of the form works on. @throws WindowGone when its window has gone,
  /// RuntimeFailure (MissingObject) when there is no set.
  template <class Set>
  [[nodiscard]] Set& served(const std::shared_ptr<Set>& controls) const {
    Visit::lookAgain();
    if (!controls) failUnloaded();
    return *controls;
  }

 private:
  friend class Control;
  friend class Visit;

  [[noreturn]] void failUnloaded() const;
  void beginEvent() { ++eventDepth_; }

  void forget(const Control& control);
  bool clicksDefaultButton();
  void appear(FirstFocus focus);
  void showHostedControls();
  void passFocus(Control* control);
  [[nodiscard]] bool mayReceiveFocus(const Control* control) const;
  void endEvent();
  void forgetControls();
  void releaseRetired();

  Toolkit& toolkit_;
  std::string formName_;
  std::string caption_;
  std::string notice_;
  double left_ = 0;
  double top_ = 0;
  bool loaded_ = false;
  bool entered_ = false;
  bool changing_ = false;  ///< a load or an unload is under way
  int eventDepth_ = 0;
  Control* focused_ = nullptr;
  Button* cancelButton_ = nullptr;
  Button* defaultButton_ = nullptr;
  Control* firstFocus_ = nullptr;
  int inputBlocks_ = 0;
  std::uint64_t windowNumber_ = 0;
  const Show* show_ = nullptr;  ///< the modal show under way, until its window goes
  std::shared_ptr<void> controlSet_;
  std::vector<std::shared_ptr<void>> retired_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
