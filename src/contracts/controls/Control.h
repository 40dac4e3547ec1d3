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
  TextBox,        ///< a box for a text
  TypingCombo,    ///< a box for a text, with a list to choose it from
  DropDown,       ///< a list that drops down, for one choice
  ListBox,        ///< a list for any number of choices
  CheckBox,       ///< a box that is checked or not
  Button,         ///< a button with a caption
  PictureButton,  ///< a button with a picture
  Label,          ///< a caption beside others
  Frame,          ///< a border with others in it
  TabStrip,       ///< tabs, one of them chosen
  TreeView,       ///< nodes below nodes
  ReportList,     ///< rows of columns
  Hosted          ///< a control made of controls; its viewName tells the view
};

/// Which part of a control's state has changed, for the view that mirrors it.
enum class Aspect {
  Text,        ///< what stands in it, or its caption
  Enabled,     ///< whether it takes input
  Visible,     ///< whether it is shown
  ToolTip,     ///< the text under a resting mouse
  Color,       ///< the color of its text
  Complaint,   ///< what is wrong with its value
  Entries,     ///< its entries, rows, nodes or tabs
  Selection,   ///< which of these are chosen
  CheckState,  ///< whether it is checked, or bears a mark
  Focus        ///< it has just got the focus
};

/// Key codes with a meaning of their own; other keys pass as their own number.
namespace keyCode {
/// The Backspace key.
inline constexpr std::int32_t backspace = 8;
/// The Enter key.
inline constexpr std::int32_t enter = 13;
/// The Escape key.
inline constexpr std::int32_t escape = 27;
/// The F1 key; the other function keys follow it.
inline constexpr std::int32_t f1 = 112;
}  // namespace keyCode

/// Shift state of a key event: the sum of these. Other modifiers do not count.
namespace keyModifier {
/// No modifier.
inline constexpr std::int32_t none = 0;
/// Shift is down.
inline constexpr std::int32_t shift = 1;
/// Ctrl is down.
inline constexpr std::int32_t control = 2;
/// Alt is down.
inline constexpr std::int32_t alt = 4;
}  // namespace keyModifier

/// A key that a person presses while a control holds the focus.
struct KeyEvent {
  /// As in the name space keyCode, or the key's own number.
  std::int32_t keyCode = 0;
  /// Sum of keyModifier values.
  std::int32_t shift = keyModifier::none;
};

/// Place in the container, in twips. Read only where a form computes with it; views do their own layout.
struct DesignGeometry {
  /// From the left edge of the container.
  std::int32_t left = 0;
  /// From its upper edge.
  std::int32_t top = 0;
  /// Across.
  std::int32_t width = 0;
  /// Down.
  std::int32_t height = 0;
};

/// How the text of a control is to be seen: Red tells of something wrong.
enum class TextColor {
  Normal,  ///< as all other texts
  Red      ///< something is wrong
};

/// State and events of one control. Code writes its properties; a person, or a test in a person's place, acts
/// through the members that begin with "user". A view mirrors the state and calls the same "user" members, so
/// the logic cannot tell a window from a test.
class Control {
 public:
  /// Adds the control to its container, behind those that are there. @param container outlives the control;
  /// null for a control that stands nowhere. @param name unique in the container. @param kind tells views
  /// what to build.
  Control(ControlContainer* container, std::string name, ControlKind kind);
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;
  virtual ~Control();

  /// By which code, tests and views find it.
  [[nodiscard]] const std::string& name() const { return name_; }
  /// What a view builds for it.
  [[nodiscard]] ControlKind kind() const { return kind_; }
  /// Null for a control without a form.
  [[nodiscard]] Form* form() const;

  /// Whether it takes input by itself; see acceptsInput for all that counts.
  [[nodiscard]] bool enabled() const { return enabled_; }
  /// A focused control that is disabled or hidden loses the focus, with its event.
  void setEnabled(bool enabled);
  /// Whether it is shown where its container is.
  [[nodiscard]] bool visible() const { return visible_; }
  /// Shows or hides it; see setEnabled for the focus.
  virtual void setVisible(bool visible);
  /// The text that appears while the mouse rests on it; empty for none.
  [[nodiscard]] const std::string& toolTip() const { return toolTip_; }
  /// Empty takes the tool tip away.
  void setToolTip(std::string toolTip);
  /// The color of its text.
  [[nodiscard]] TextColor textColor() const { return textColor_; }
  /// Tells views of the change; raises nothing else.
  void setTextColor(TextColor color);

  /// What is wrong with the control's value; views show it beside the control. Empty when all is well.
  [[nodiscard]] const std::string& complaint() const { return complaint_; }
  /// Empty takes the complaint away.
  void setComplaint(std::string complaint);

  /// Its place at design time, in twips.
  [[nodiscard]] const DesignGeometry& geometry() const { return geometry_; }
  /// Views are not told: they do their own layout.
  void setGeometry(const DesignGeometry& geometry) { geometry_ = geometry; }

  /// Whether it is the focused control of its form.
  [[nodiscard]] bool hasFocus() const;
  /// Whether a person could move the focus here: it accepts input, and is no label, frame or control made of
  /// controls.
  [[nodiscard]] bool canTakeFocus() const;
  /// Whether a person can use it: it, what it stands in and its window are shown and not blocked.
  [[nodiscard]] bool acceptsInput() const;

  /// A person moves the focus here: the old control's lostFocus runs to its end, then gotFocus here.
  void userFocuses();
  /// A person presses a key while this control holds the focus. Tab raises nothing. Enter and Escape, without
  /// modifiers, then click: Enter this control where it is a button, else the form's default button; Escape
  /// the form's cancel button. Enter is told as an operation of its own, with all that comes of it.
  /// @param keyCode of the name space keyCode, or the key's own number. @param shift modifiers other than
  /// Shift, Ctrl and Alt are left out.
  /// @returns whether such a click used the key up.
  bool userPresses(std::int32_t keyCode, std::int32_t shift = keyModifier::none);

  /// The focus has come here.
  Event<> gotFocus;
  /// The focus leaves. Runs to its end before gotFocus of the next control.
  Event<> lostFocus;
  /// A key but Tab was pressed here; raised behind the keyPreview of all containers.
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
  /// What it stands in; null for a control that stands nowhere.
  [[nodiscard]] ControlContainer* container() const { return container_; }
  /// Enter that no handler has taken. @returns whether this control used it up.
  virtual bool enterPressed();

 private:
  friend class ControlContainer;

  void dropFocus();
  [[nodiscard]] bool isButton() const;
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
