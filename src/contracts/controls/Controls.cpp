#include "contracts/controls/Controls.h"

#include <algorithm>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/EntryNames.h"
#include "contracts/controls/Form.h"

namespace vlclientui {

namespace {
[[noreturn]] void failIndex(const Control& control) {
  throw RuntimeFailure("No such entry in " + control.name(), FailureKind::InvalidIndex);
}

/// The chosen ones, with line ends between.
std::string joined(const std::vector<std::string>& entries, const std::vector<std::size_t>& indexes) {
  std::string all;
  for (const std::size_t index : indexes) {
    if (index < entries.size()) all += (all.empty() ? "" : "\n") + entryName(entries, index);
  }
  return all;
}
}  // namespace

Label::Label(ControlContainer& container, std::string name, std::string caption)
    : Control(&container, std::move(name), ControlKind::Label), caption_(std::move(caption)) {}

void Label::setCaption(std::string caption) {
  caption_ = std::move(caption);
  changed.raise(Aspect::Text);
}

TextBox::TextBox(ControlContainer& container, std::string name)
    : Control(&container, std::move(name), ControlKind::TextBox) {}

void TextBox::setText(std::string text) {
  write([this, &text] {
    text_ = std::move(text);
    changed.raise(Aspect::Text);
    change.raise();
  });
}

void TextBox::userTypes(std::string text) {
  if (!acceptsInput()) return;
  tell(Operation::Kind::Set, text);
  act([this, &text] { setText(std::move(text)); });
}

std::string EntryControl::entry(std::size_t index) const {
  if (index > entries_.size()) failIndex(*this);
  return index == entries_.size() ? std::string() : entries_[index];
}

void EntryControl::insertEntry(std::size_t index, std::string entry) {
  if (index > entries_.size()) failIndex(*this);
  entries_.insert(entries_.begin() + static_cast<std::ptrdiff_t>(index), std::move(entry));
  entryInserted(index);
  changed.raise(Aspect::Entries);
}

void EntryControl::addEntries(std::vector<std::string> entries) {
  for (std::string& entry : entries) {
    entries_.push_back(std::move(entry));
    entryInserted(entries_.size() - 1);
  }
  changed.raise(Aspect::Entries);
}

void EntryControl::removeEntry(std::size_t index) {
  if (index >= entries_.size()) failIndex(*this);
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
  entryRemoved(index);
  changed.raise(Aspect::Entries);
}

void EntryControl::clear() {
  entries_.clear();
  entriesCleared();
  changed.raise(Aspect::Entries);
}

void ComboControl::setIndex(std::size_t index) {
  if (index >= count()) failIndex(*this);
  write([this, index] {
    setCurrentSelection(index);
    click.raise();
  });
}

void ComboControl::setCurrentSelection(std::size_t index) {
  if (index < count()) {
    text_ = entry(index);
    index_ = index;
  } else {
    text_.clear();
    index_.reset();
  }
  changed.raise(Aspect::Selection);
}

void ComboControl::userSelects(std::size_t index) {
  if (!acceptsInput()) return;
  if (index < count()) tell(Operation::Kind::Choose, entryName(entries(), index));
  act([this, index] { setIndex(index); });
}

void ComboControl::entryInserted(std::size_t index) {
  if (index_ && index <= *index_) ++*index_;
}

void ComboControl::entryRemoved(std::size_t index) {
  if (!index_) return;
  if (*index_ == index) {
    index_.reset();
    text_.clear();
  } else if (index < *index_) {
    --*index_;
  }
}

void ComboControl::entriesCleared() {
  index_.reset();
  text_.clear();
}

void ComboControl::writeText(std::string text) {
  text_ = std::move(text);
  changed.raise(Aspect::Text);
}

void ComboControl::writeIndex(std::optional<std::size_t> index) { index_ = index; }

TypingCombo::TypingCombo(ControlContainer& container, std::string name)
    : ComboControl(&container, std::move(name), ControlKind::TypingCombo) {}

void TypingCombo::setText(std::string text) {
  if (index() && entry(*index()) != text) writeIndex(std::nullopt);
  writeText(std::move(text));
}

void TypingCombo::userTypes(std::string text) {
  if (!acceptsInput()) return;
  tell(Operation::Kind::Set, text);
  act([this, &text] {
    setText(std::move(text));
    change.raise();
  });
}

DropDown::DropDown(ControlContainer& container, std::string name)
    : ComboControl(&container, std::move(name), ControlKind::DropDown) {}

void DropDown::setText(const std::string& text) {
  const auto found = std::ranges::find(entries(), text);
  if (found == entries().end()) failIndex(*this);
  setIndex(static_cast<std::size_t>(found - entries().begin()));
}

ListBox::ListBox(ControlContainer& container, std::string name)
    : EntryControl(&container, std::move(name), ControlKind::ListBox) {}

bool ListBox::selected(std::size_t index) const { return index < selected_.size() && selected_[index]; }

bool ListBox::anySelected() const { return std::ranges::find(selected_, true) != selected_.end(); }

void ListBox::userSelects(const std::vector<std::size_t>& indexes) {
  if (!acceptsInput()) return;
  tell(Operation::Kind::Choose, joined(entries(), indexes));
  act([this, &indexes] {
    selected_.assign(count(), false);
    for (const std::size_t index : indexes) {
      if (index < count()) selected_[index] = true;
    }
    changed.raise(Aspect::Selection);
    click.raise();
  });
}

void ListBox::entryInserted(std::size_t index) {
  selected_.insert(selected_.begin() + static_cast<std::ptrdiff_t>(index), false);
}

void ListBox::entryRemoved(std::size_t index) {
  selected_.erase(selected_.begin() + static_cast<std::ptrdiff_t>(index));
}

void ListBox::entriesCleared() { selected_.clear(); }

CheckBox::CheckBox(ControlContainer& container, std::string name, std::string caption)
    : Control(&container, std::move(name), ControlKind::CheckBox), caption_(std::move(caption)) {}

void CheckBox::setChecked(bool checked) {
  write([this, checked] {
    checked_ = checked;
    changed.raise(Aspect::CheckState);
    click.raise();
  });
}

void CheckBox::userClicks() {
  if (!acceptsInput()) return;
  tell(Operation::Kind::Set, checked_ ? "off" : "on");
  act([this] {
    if (takesFocusForClick()) setChecked(!checked_);
  });
}

Button::Button(ControlContainer& container, std::string name, std::string caption, ControlKind kind)
    : Control(&container, std::move(name), kind), caption_(std::move(caption)) {}

void Button::userClicks() {
  if (!acceptsInput()) return;
  tell(Operation::Kind::Press, {});
  clickUntold();
}

void Button::clickUntold() {
  act([this] {
    if (!takesFocusForClick()) return;
    Form* const top = form();
    top ? top->runClick([this] { click.raise(); }) : click.raise();
  });
}

bool Button::enterPressed() {
  userClicks();
  return true;
}

HostedControl::HostedControl(ControlContainer* container, std::string name, std::string viewName)
    : Control(container, std::move(name), ControlKind::Hosted), viewName_(std::move(viewName)) {}

void HostedControl::setVisible(bool visible) {
  write([this, visible] {
    const bool hides = Control::visible() && !visible;
    Control::setVisible(visible);
    if (hides) onHide();
  });
}

void HostedControl::previewKey(const KeyEvent& key) {
  const Form* const top = topForm();
  if (container()) container()->previewKey(key);
  // A handler of an outer container may have unloaded the form.
  if (topForm() == top) ControlContainer::previewKey(key);
}

}  // namespace vlclientui
