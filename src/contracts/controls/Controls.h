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
  /// @param container outlives it. @param name unique there. @param caption with its mnemonic.
  Label(ControlContainer& container, std::string name, std::string caption);
  /// The text with its "&".
  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// Views are told; no other event is raised.
  void setCaption(std::string caption);

 private:
  std::string caption_;
};

/// A text box. Writing its text raises change, even when the text stays the same.
class TextBox : public Control {
 public:
  /// An empty box. @param container outlives it. @param name unique there.
  TextBox(ControlContainer& container, std::string name);
  /// What stands in it, UTF-8.
  [[nodiscard]] const std::string& text() const { return text_; }
  /// Code writes the text: raises change always.
  void setText(std::string text);
  /// A person replaces the whole text, which raises change. Nothing while it takes no input.
  void userTypes(std::string text);

  /// The text was written, by code or by a person.
  Event<> change;

 private:
  std::string text_;
};

/// Entries in order, with what all list-like controls share. Of adding, removing and clearing only
/// views are told.
class EntryControl : public Control {
 public:
  /// Made as any control: of a container, or null for one that stands nowhere, a name and a kind.
  using Control::Control;

  /// How many entries there are.
  [[nodiscard]] std::size_t count() const { return entries_.size(); }
  /// The entry, and an empty string at index count. @throws RuntimeFailure (InvalidIndex) beyond that.
  [[nodiscard]] std::string entry(std::size_t index) const;
  /// All of them; valid until the next change.
  [[nodiscard]] const std::vector<std::string>& entries() const { return entries_; }
  /// Appends one entry.
  void addEntry(std::string entry) { insertEntry(entries_.size(), std::move(entry)); }
  /// Appends entries; the view is told once for all of them.
  void addEntries(std::vector<std::string> entries);
  /// @throws RuntimeFailure (InvalidIndex) for an index above count.
  void insertEntry(std::size_t index, std::string entry);
  /// @throws RuntimeFailure (InvalidIndex) for an index that is no entry.
  void removeEntry(std::size_t index);
  /// Removes all entries.
  void clear();

 protected:
  /// An entry has come in at the index, for derived classes to move their selection.
  virtual void entryInserted(std::size_t /*index*/) {}
  /// The entry of the index has gone, for derived classes to move their selection.
  virtual void entryRemoved(std::size_t /*index*/) {}
  /// All entries have gone.
  virtual void entriesCleared() {}

 private:
  std::vector<std::string> entries_;
};

/// What typing combos and drop-down lists share: at most one selected entry.
class ComboControl : public EntryControl {
 public:
  using EntryControl::EntryControl;

  /// What stands in the box.
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
  /// Keeps the selected entry selected.
  void entryInserted(std::size_t index) override;
  /// Keeps the selected entry selected, or selects none when it is the one that went.
  void entryRemoved(std::size_t index) override;
  /// Selects none.
  void entriesCleared() override;
  /// Sets the text and tells views; raises nothing else, and leaves the selection.
  void writeText(std::string text);
  /// Sets the selection and tells nobody, not even views: a text that is written next tells them.
  void writeIndex(std::optional<std::size_t> index);

 private:
  std::string text_;
  std::optional<std::size_t> index_;
};

/// A combo box that takes any text (the server box). Writing the text never selects, even a text that equals
/// an entry.
class TypingCombo : public ComboControl {
 public:
  /// An empty box without entries. @param container outlives it. @param name unique there.
  TypingCombo(ControlContainer& container, std::string name);
  /// Code writes the text: views are told, change and click are not raised. An entry of another text is no
  /// longer selected; one of the same text stays so.
  void setText(std::string text);
  /// A person replaces the whole text, as setText does, and raises change. Nothing while it takes no input.
  void userTypes(std::string text);

  /// A person has typed. What code writes does not raise it.
  Event<> change;
};

/// A list that drops down. Writing a text selects that entry.
class DropDown : public ComboControl {
 public:
  /// A list without entries. @param container outlives it. @param name unique there.
  DropDown(ControlContainer& container, std::string name);
  /// @throws RuntimeFailure (InvalidIndex) for a text that is no entry.
  void setText(const std::string& text);
};

/// A list box with any number of selected rows; marks travel with their rows.
class ListBox : public EntryControl {
 public:
  /// A list without rows. @param container outlives it. @param name unique there.
  ListBox(ControlContainer& container, std::string name);
  /// False at and beyond count.
  [[nodiscard]] bool selected(std::size_t index) const;
  /// Whether at least one row is selected.
  [[nodiscard]] bool anySelected() const;
  /// A person selects exactly these rows (a click, or one with Shift or Ctrl). Raises click.
  void userSelects(const std::vector<std::size_t>& indexes);

  /// A person has selected rows.
  Event<> click;

 protected:
  /// Moves the marks of the rows behind it.
  void entryInserted(std::size_t index) override;
  /// Moves the marks of the rows behind it.
  void entryRemoved(std::size_t index) override;
  /// Drops all marks.
  void entriesCleared() override;

 private:
  std::vector<bool> selected_;
};

/// A check box. Writing its state raises click.
class CheckBox : public Control {
 public:
  /// Not checked. @param container outlives it. @param name unique there. @param caption may be empty.
  CheckBox(ControlContainer& container, std::string name, std::string caption);
  /// The text beside the box.
  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// Whether it is checked.
  [[nodiscard]] bool checked() const { return checked_; }
  /// Code writes the state: raises click, also when it stays the same.
  void setChecked(bool checked);
  /// Moves the focus here first; the click does not count when that shows a message box.
  void userClicks();

  /// The state was changed, by code or by a person.
  Event<> click;

 private:
  std::string caption_;
  bool checked_ = false;
};

/// A button, or a picture button (kind PictureButton, no caption shown).
class Button : public Control {
 public:
  /// @param container outlives it. @param name unique there. @param caption with its mnemonic. @param kind
  /// Button or PictureButton.
  Button(ControlContainer& container, std::string name, std::string caption,
         ControlKind kind = ControlKind::Button);
  /// The text with its "&".
  [[nodiscard]] const std::string& caption() const { return caption_; }
  /// A click, a mnemonic, or Enter or Escape on a default or cancel button. The focus moves to the button
  /// first; the click does not count when a handler showed a message box on the way.
  void userClicks();

  /// A person has clicked it.
  Event<> click;

 protected:
  bool enterPressed() override;

 private:
  friend class Form;

  void clickUntold();

  std::string caption_;
};

/// A control that is made of controls and stands on a form. Outside a form it has state and events, but no
/// focus and no view.
class HostedControl : public Control, public ControlContainer {
 public:
  /// @param container null for one that stands nowhere. @param name unique there. @param viewName name of its
  /// class, for views.
  HostedControl(ControlContainer* container, std::string name, std::string viewName);

  /// Which view shows it; the name of its class.
  [[nodiscard]] const std::string& viewName() const { return viewName_; }
  /// Raises the hide event when it changes from visible to hidden.
  void setVisible(bool visible) override;
  /// The form calls this each time its window appears, before any control gets the focus.
  void windowAppeared() { onShow(); }
  [[nodiscard]] Form* topForm() override { return Control::form(); }
  /// Raises keyPreview of the form around it first, then its own.
  void previewKey(const KeyEvent& key) override;

 protected:
  /// The window around it has appeared.
  virtual void onShow() {}
  /// It was visible and has been hidden.
  virtual void onHide() {}

 private:
  std::string viewName_;
};

}  // namespace vlclientui
#pragma GCC visibility pop
