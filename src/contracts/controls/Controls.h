#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "contracts/controls/Control.h"
#include "contracts/controls/ControlContainer.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// A caption beside other controls; "&" marks its mnemonic, which leads to the next control.
class Label : public Control {
 public:
  Label(ControlContainer& container, std::string name, std::string caption);
  [[nodiscard]] const std::string& caption() const { return caption_; }
  void setCaption(std::string caption);

 private:
  std::string caption_;
};

/// A text box. Writing its text raises change, even when the text stays the same.
class TextBox : public Control {
 public:
  TextBox(ControlContainer& container, std::string name);
  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string text);
  void userTypes(std::string text);

  Event<> change;

 private:
  std::string text_;
};

/// Entries in order, with what all list-like controls share. Adding, removing and clearing raise nothing.
class EntryControl : public Control {
 public:
  using Control::Control;

  [[nodiscard]] std::size_t count() const { return entries_.size(); }
  /// The entry, and an empty string at index count. @throws RuntimeFailure (InvalidIndex) beyond that.
  [[nodiscard]] std::string entry(std::size_t index) const;
  [[nodiscard]] const std::vector<std::string>& entries() const { return entries_; }
  void addEntry(std::string entry) { insertEntry(entries_.size(), std::move(entry)); }
  /// Appends entries; the view is told once for all of them.
  void addEntries(std::vector<std::string> entries);
  /// @throws RuntimeFailure (InvalidIndex) for an index above count.
  void insertEntry(std::size_t index, std::string entry);
  /// @throws RuntimeFailure (InvalidIndex) for an index that is no entry.
  void removeEntry(std::size_t index);
  void clear();

 protected:
  virtual void entryInserted(std::size_t /*index*/) {}
  virtual void entryRemoved(std::size_t /*index*/) {}
  virtual void entriesCleared() {}

 private:
  std::vector<std::string> entries_;
};

/// What typing combos and drop-down lists share: at most one selected entry.
class ComboControl : public EntryControl {
 public:
  using EntryControl::EntryControl;

  [[nodiscard]] const std::string& text() const { return text_; }
  /// Nothing while no entry is selected.
  [[nodiscard]] std::optional<std::size_t> index() const { return index_; }
  /// Every write raises the selection event. @throws RuntimeFailure (InvalidIndex) when out of range.
  void setIndex(std::size_t index);
  /// CB_SETCURSEL: sets selection and text without an event. An index out of range clears the selection.
  void setCurrentSelection(std::size_t index);
  /// A person picks an entry, perhaps the one already selected.
  void userSelects(std::size_t index);

  /// The selection event.
  Event<> click;

 protected:
  void entryInserted(std::size_t index) override;
  void entryRemoved(std::size_t index) override;
  void entriesCleared() override;
  void writeText(std::string text);
  void writeIndex(std::optional<std::size_t> index);

 private:
  std::string text_;
  std::optional<std::size_t> index_;
};

/// A combo box that takes any text (the server box). Writing the text never selects, even a text that equals
/// an entry.
class TypingCombo : public ComboControl {
 public:
  TypingCombo(ControlContainer& container, std::string name);
  void setText(std::string text);
  void userTypes(std::string text);

  Event<> change;
};

/// A list that drops down. Writing a text selects that entry.
class DropDown : public ComboControl {
 public:
  DropDown(ControlContainer& container, std::string name);
  /// @throws RuntimeFailure (InvalidIndex) for a text that is no entry.
  void setText(const std::string& text);
};

/// A list box with any number of selected rows; marks travel with their rows.
class ListBox : public EntryControl {
 public:
  ListBox(ControlContainer& container, std::string name);
  /// False at and beyond count.
  [[nodiscard]] bool selected(std::size_t index) const;
  [[nodiscard]] bool anySelected() const;
  /// A person selects exactly these rows (a click, or one with Shift or Ctrl). Raises click.
  void userSelects(const std::vector<std::size_t>& indexes);

  Event<> click;

 protected:
  void entryInserted(std::size_t index) override;
  void entryRemoved(std::size_t index) override;
  void entriesCleared() override;

 private:
  std::vector<bool> selected_;
};

/// A check box. Writing its state raises click.
class CheckBox : public Control {
 public:
  CheckBox(ControlContainer& container, std::string name, std::string caption);
  [[nodiscard]] const std::string& caption() const { return caption_; }
  [[nodiscard]] bool checked() const { return checked_; }
  void setChecked(bool checked);
  /// Moves the focus here first; the click does not count when that shows a message box.
  void userClicks();

  Event<> click;

 private:
  std::string caption_;
  bool checked_ = false;
};

/// A button, or a picture button (kind PictureButton, no caption shown).
class Button : public Control {
 public:
  Button(ControlContainer& container, std::string name, std::string caption,
         ControlKind kind = ControlKind::Button);
  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// A click, a mnemonic, or Enter or Escape on a default or cancel button. The focus moves to the button
  /// first; the click does not count when a handler showed a message box on the way.
  void userClicks();

  Event<> click;

 protected:
  bool enterPressed() override;

 private:
  std::string caption_;
};

/// A control that is made of controls and stands on a form. Outside a form it has state and events, but no
/// focus and no view.
class HostedControl : public Control, public ControlContainer {
 public:
  HostedControl(ControlContainer* container, std::string name, std::string viewName);

  /// Which view shows it; the name of its class.
  [[nodiscard]] const std::string& viewName() const { return viewName_; }
  /// Raises the hide event when it changes from visible to hidden.
  void setVisible(bool visible) override;
  /// The form calls this each time its window appears, before any control gets the focus.
  void windowAppeared() { onShow(); }
  [[nodiscard]] Form* topForm() override { return Control::form(); }
  void previewKey(const KeyEvent& key) override;

 protected:
  virtual void onShow() {}
  virtual void onHide() {}

 private:
  std::string viewName_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
