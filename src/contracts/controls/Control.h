#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "contracts/Event.h"
#include "contracts/Operations.h"

#pragma GCC visibility push(default)
namespace vlclientui {

class ControlContainer;
class Form;

/// What a view has to build for a control.
enum class ControlKind {
  TextBox,
  TypingCombo,
  DropDown,
  ListBox,
  CheckBox,
  Button,
  PictureButton,
  Label,
  Frame,
  TabStrip,
  TreeView,
  ReportList,
  Hosted
};

/// Which part of a control's state has changed, for the view that mirrors it.
enum class Aspect {
  Text,
  Enabled,
  Visible,
  ToolTip,
  Color,
  Complaint,
  Entries,
  Selection,
  CheckState,
  Focus
};

/// Key codes with a meaning of their own; other keys pass as their own number.
namespace keyCode {
inline constexpr std::int32_t backspace = 8;
inline constexpr std::int32_t enter = 13;
inline constexpr std::int32_t escape = 27;
inline constexpr std::int32_t f1 = 112;
}  // namespace keyCode

/// Shift state of a key event: the sum of these. Other modifiers do not count.
namespace keyModifier {
inline constexpr std::int32_t none = 0;
inline constexpr std::int32_t shift = 1;
inline constexpr std::int32_t control = 2;
inline constexpr std::int32_t alt = 4;
}  // namespace keyModifier

struct KeyEvent {
  std::int32_t keyCode = 0;
  std::int32_t shift = keyModifier::none;
};

/// Place in the container, in twips. Read only where a form computes with it; views do their own layout.
struct DesignGeometry {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t width = 0;
  std::int32_t height = 0;
};

enum class TextColor { Normal, Red };

/// State and events of one control. Code writes its properties; a person, or a test in a person's place, acts
/// through the members that begin with "user". A view mirrors the state and calls the same "user" members, so
/// the logic cannot tell a window from a test.
class Control {
 public:
  Control(ControlContainer* container, std::string name, ControlKind kind);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control();

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] ControlKind kind() const { return kind_; }
  /// Null for a control without a form.
  [[nodiscard]] Form* form() const;

  [[nodiscard]] bool enabled() const { return enabled_; }
  /// A focused control that is disabled or hidden loses the focus, with its event.
  void setEnabled(bool enabled);
  [[nodiscard]] bool visible() const { return visible_; }
  virtual void setVisible(bool visible);
  [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
  void setToolTip(std::string toolTip);
  [[nodiscard]] TextColor textColor() const { return textColor_; }
  void setTextColor(TextColor color);

  /// What is wrong with the control's value; views show it beside the control. Empty when all is well.
  [[nodiscard]] const std::string& complaint() const { return complaint_; }
  void setComplaint(std::string complaint);

  [[nodiscard]] const DesignGeometry& geometry() const { return geometry_; }
  void setGeometry(const DesignGeometry& geometry) { geometry_ = geometry; }

  [[nodiscard]] bool hasFocus() const;
  [[nodiscard]] bool canTakeFocus() const;
  /// Whether a person can use it: it, what it stands in and its window are shown and not blocked.
  [[nodiscard]] bool acceptsInput() const;

  /// A person moves the focus here: the old control's lostFocus runs to its end, then gotFocus here.
  void userFocuses();
  /// A person presses a key while this control holds the focus. Tab raises nothing. Enter and Escape, without
  /// modifiers, then click: Enter this control where it is a button, else the form's default button; Escape
  /// the form's cancel button.
  /// @param shift modifiers other than Shift, Ctrl and Alt are left out.
  /// @returns whether such a click used the key up.
  bool userPresses(std::int32_t keyCode, std::int32_t shift = keyModifier::none);

  Event<> gotFocus;
  Event<> lostFocus;
  Event<const KeyEvent&> keyDown;

  /// For views only: the state has changed, for whatever reason.
  Event<Aspect> changed;

 protected:
  /// Runs a person's action. Handlers inside may unload the form; a failure that they do not catch reaches
  /// the toolkit's top-level handler.
  void act(const std::function<void()>& action);
  /// Tells what a person is about to do here.
  void tell(Operation::Kind kind, const std::string& value) const;
  /// Runs a write from code that raises events: a handler may unload the form.
  void write(const std::function<void()>& writing);
  /// Moves the focus here before a click. False when the click does not count: a handler on the way showed a
  /// message box, or this control can no longer be clicked.
  [[nodiscard]] bool takesFocusForClick();
  [[nodiscard]] ControlContainer* container() const { return container_; }
  /// Enter that no handler has taken. @returns whether this control used it up.
  virtual bool enterPressed();

 private:
  friend class ControlContainer;

  void dropFocus();
  /// A person's action that edits nothing, such as a move of the focus.
  void run(const std::function<void()>& action);
  bool keyLeftOver(const KeyEvent& key);

  ControlContainer* container_;
  std::string name_;
  ControlKind kind_;
  bool enabled_ = true;
  bool visible_ = true;
  std::string toolTip_;
  TextColor textColor_ = TextColor::Normal;
  std::string complaint_;
  DesignGeometry geometry_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
