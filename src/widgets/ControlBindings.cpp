#include "widgets/ControlBindings.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QWheelEvent>
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "contracts/controls/Controls.h"
#include "contracts/controls/PictureButton.h"
#include "widgets/FormBinder.h"
#include "widgets/Mnemonics.h"
#include "widgets/PageControlBindings.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

/// Brings a widget's entries to those of a control with the fewest insertions and removals, so that scroll
/// position and the other entries' marks stay.
class ShownEntries {
 public:
  template <class Insert, class Remove>
  void update(const std::vector<std::string>& wanted, Insert insert, Remove remove) {
    const auto [shownEnd, wantedEnd] = std::ranges::mismatch(shown_, wanted);
    const auto same = static_cast<std::size_t>(wantedEnd - wanted.begin());
    const std::size_t tail = sameTail(wanted, same);
    for (std::size_t row = shown_.size() - tail; row > same; --row) remove(static_cast<int>(row - 1));
    for (std::size_t row = same; row < wanted.size() - tail; ++row) {
      insert(static_cast<int>(row), wanted[row]);
    }
    shown_ = wanted;
  }

 private:
  [[nodiscard]] std::size_t sameTail(const std::vector<std::string>& wanted, std::size_t same) const {
    std::size_t tail = 0;
    while (tail + same < std::min(shown_.size(), wanted.size()) &&
           shown_[shown_.size() - 1 - tail] == wanted[wanted.size() - 1 - tail]) {
      ++tail;
    }
    return tail;
  }

  std::vector<std::string> shown_;
};

/// Converts between the shown and the typed text of a widget that may hold paths.
class FieldText {
 public:
  FieldText(const FormBinder& binder, const QWidget& widget)
      : binder_(binder), hasPaths_(widget.property(showsPathProperty).toBool()) {}

  [[nodiscard]] QString shown(const std::string& text) const {
    return toQt(hasPaths_ ? binder_.paths().shown(text) : text);
  }
  [[nodiscard]] std::string typed(const QString& text) const {
    return hasPaths_ ? binder_.paths().typed(fromQt(text)) : fromQt(text);
  }

 private:
  const FormBinder& binder_;
  bool hasPaths_;
};

/// A caption without a mnemonic gets the letter that its layout gives.
class LabelBinding : public ControlBinding {
 public:
  LabelBinding(FormBinder& binder, Label& label, QLabel& widget)
      : ControlBinding(binder, label, widget), widget_(widget) {
    widget.setTextFormat(Qt::PlainText);
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::Text) {
      widget_.setText(withMnemonic(widget_, binder().paths().shown(label().caption())));
    }
  }

 private:
  [[nodiscard]] const Label& label() const { return static_cast<const Label&>(*control()); }

  QLabel& widget_;
};

class TextBoxBinding : public ControlBinding {
 public:
  TextBoxBinding(FormBinder& binder, TextBox& textBox, QLineEdit& widget)
      : ControlBinding(binder, textBox, widget), widget_(widget), text_(binder, widget) {
    connect(&widget, &QLineEdit::textEdited, this, [this](const QString& text) {
      act([this, &text] { box().userTypes(text_.typed(text)); }, Aspect::Text);
    });
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    // Rewriting an equal text would move the cursor.
    if (aspect != Aspect::Text || text_.typed(widget_.text()) == box().text()) return;
    widget_.setText(text_.shown(box().text()));
    widget_.setCursorPosition(0);
  }

 private:
  [[nodiscard]] TextBox& box() const { return static_cast<TextBox&>(*control()); }

  QLineEdit& widget_;
  FieldText text_;
};

class ComboBinding : public ControlBinding {
 public:
  ComboBinding(FormBinder& binder, ComboControl& combo, QComboBox& widget)
      : ControlBinding(binder, combo, widget), widget_(widget), text_(binder, widget) {
    connect(&widget, qOverload<int>(&QComboBox::activated), this, [this](int index) {
      act([this, index] { boundCombo().userSelects(static_cast<std::size_t>(index)); }, Aspect::Selection);
    });
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    // The wheel scrolls the page behind the box. Picking by wheel would ask a server at every step.
    if (watched == &widget_ && event->type() == QEvent::Wheel) {
      event->ignore();
      return true;
    }
    return ControlBinding::eventFilter(watched, event);
  }

  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::Entries) mirrorEntries();
    if (aspect == Aspect::Entries || aspect == Aspect::Text || aspect == Aspect::Selection) mirrorChoice();
  }

  virtual void mirrorChoice() { setCurrentIndex(); }

  void setCurrentIndex() {
    const auto index = boundCombo().index();
    const int wanted = index ? static_cast<int>(*index) : -1;
    if (widget_.currentIndex() != wanted) widget_.setCurrentIndex(wanted);
  }
  [[nodiscard]] ComboControl& boundCombo() const { return static_cast<ComboControl&>(*control()); }
  [[nodiscard]] QComboBox& box() const { return widget_; }
  [[nodiscard]] const FieldText& fieldText() const { return text_; }

 private:
  void mirrorEntries() {
    entries_.update(
        boundCombo().entries(),
        [this](int row, const std::string& entry) { widget_.insertItem(row, text_.shown(entry)); },
        [this](int row) { widget_.removeItem(row); });
  }

  QComboBox& widget_;
  FieldText text_;
  ShownEntries entries_;
};

class TypingComboBinding : public ComboBinding {
 public:
  TypingComboBinding(FormBinder& binder, TypingCombo& combo, QComboBox& widget)
      : ComboBinding(binder, combo, widget) {
    widget.setInsertPolicy(QComboBox::NoInsert);
    widget.setCompleter(nullptr);
    QLineEdit& edit = *widget.lineEdit();
    // Otherwise the box would pick an entry of the same text when an edit ends.
    disconnect(&edit, &QLineEdit::editingFinished, &widget, nullptr);
    connect(&edit, &QLineEdit::textEdited, this, [this](const QString& text) {
      act([this, &text] { typingCombo().userTypes(fieldText().typed(text)); }, Aspect::Text);
    });
  }

 protected:
  void mirrorChoice() override {
    QLineEdit& edit = *box().lineEdit();
    const QString before = edit.text();
    const int cursor = edit.cursorPosition();
    setCurrentIndex();
    const bool same = fieldText().typed(before) == typingCombo().text();
    const QString wanted = same ? before : fieldText().shown(typingCombo().text());
    if (edit.text() == wanted) return;
    box().setEditText(wanted);
    if (same) edit.setCursorPosition(cursor);
  }

 private:
  [[nodiscard]] TypingCombo& typingCombo() const { return static_cast<TypingCombo&>(*control()); }
};

class ListBoxBinding : public ControlBinding {
 public:
  ListBoxBinding(FormBinder& binder, ListBox& box, QListWidget& widget)
      : ControlBinding(binder, box, widget), widget_(widget), text_(binder, widget) {
    widget.setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(&widget, &QListWidget::itemSelectionChanged, this,
            [this] { act([this] { boundBox().userSelects(selectedRows()); }, Aspect::Selection); });
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::Entries) mirrorEntries();
    if (aspect == Aspect::Entries || aspect == Aspect::Selection) mirrorSelection();
  }

 private:
  [[nodiscard]] ListBox& boundBox() const { return static_cast<ListBox&>(*control()); }

  [[nodiscard]] std::vector<std::size_t> selectedRows() const {
    std::vector<std::size_t> rows;
    for (const QModelIndex& index : widget_.selectionModel()->selectedRows()) {
      rows.push_back(static_cast<std::size_t>(index.row()));
    }
    std::ranges::sort(rows);
    return rows;
  }

  void mirrorEntries() {
    entries_.update(
        boundBox().entries(),
        [this](int row, const std::string& entry) { insertEntry(row, text_.shown(entry)); },
        [this](int row) { delete widget_.takeItem(row); });
  }

  void insertEntry(int row, const QString& text) {
    widget_.insertItem(row, text);
    widget_.item(row)->setToolTip(text);
  }

  void mirrorSelection() {
    for (int row = 0; row < widget_.count(); ++row) {
      QListWidgetItem& item = *widget_.item(row);
      const bool wanted = boundBox().selected(static_cast<std::size_t>(row));
      if (item.isSelected() != wanted) item.setSelected(wanted);
    }
  }

  QListWidget& widget_;
  FieldText text_;
  ShownEntries entries_;
};

/// Buttons and check boxes get the focus by Tab only: a clicked control moves the focus itself, so that
/// leaving the old control, its messages and the click run in one action.
class ClickBinding : public ControlBinding {
 public:
  ClickBinding(FormBinder& binder, Control& control, QAbstractButton& widget)
      : ControlBinding(binder, control, widget), button_(widget) {
    widget.setFocusPolicy(Qt::TabFocus);
  }

 protected:
  [[nodiscard]] QAbstractButton& button() const { return button_; }

 private:
  QAbstractButton& button_;
};

class CheckBoxBinding : public ClickBinding {
 public:
  CheckBoxBinding(FormBinder& binder, CheckBox& box, QCheckBox& widget) : ClickBinding(binder, box, widget) {
    widget.setText(toQt(box.caption()));
    connect(&widget, &QCheckBox::clicked, this,
            [this] { act([this] { boundBox().userClicks(); }, Aspect::CheckState); });
  }

 protected:
  void mirror(Aspect aspect) override {
    ControlBinding::mirror(aspect);
    if (aspect == Aspect::CheckState) button().setChecked(boundBox().checked());
  }

 private:
  [[nodiscard]] CheckBox& boundBox() const { return static_cast<CheckBox&>(*control()); }
};

class ButtonBinding : public ClickBinding {
 public:
  ButtonBinding(FormBinder& binder, Button& control, QAbstractButton& widget)
      : ClickBinding(binder, control, widget) {
    if (control.kind() == ControlKind::Button) widget.setText(toQt(control.caption()));
    if (auto* pushButton = qobject_cast<QPushButton*>(&widget)) pushButton->setAutoDefault(false);
    connect(&widget, &QAbstractButton::clicked, this, [this] {
      act([this] { static_cast<Button*>(this->control())->userClicks(); }, Aspect::Enabled);
    });
  }
};

/// The mark is the button's checked look. Only code changes it.
class PictureButtonBinding : public ButtonBinding {
 public:
  PictureButtonBinding(FormBinder& binder, PictureButton& control, QAbstractButton& widget)
      : ButtonBinding(binder, control, widget) {
    widget.setCheckable(true);
    connect(&widget, &QAbstractButton::clicked, this, [this] { followMark(); });
  }

 protected:
  void mirror(Aspect aspect) override {
    ButtonBinding::mirror(aspect);
    if (aspect == Aspect::CheckState) followMark();
  }

 private:
  void followMark() {
    if (control()) button().setChecked(static_cast<PictureButton*>(control())->marked());
  }
};

template <class Binding, class Specific, class Widget>
ControlBinding& make(FormBinder& binder, Control& control, QWidget& widget) {
  return *new Binding(binder, dynamic_cast<Specific&>(control), dynamic_cast<Widget&>(widget));
}

ControlBinding& makeBinding(FormBinder& binder, Control& control, QWidget& widget) {
  switch (control.kind()) {
    case ControlKind::TextBox:
      return make<TextBoxBinding, TextBox, QLineEdit>(binder, control, widget);
    case ControlKind::TypingCombo:
      return make<TypingComboBinding, TypingCombo, QComboBox>(binder, control, widget);
    case ControlKind::DropDown:
      return make<ComboBinding, ComboControl, QComboBox>(binder, control, widget);
    case ControlKind::ListBox:
      return make<ListBoxBinding, ListBox, QListWidget>(binder, control, widget);
    case ControlKind::CheckBox:
      return make<CheckBoxBinding, CheckBox, QCheckBox>(binder, control, widget);
    case ControlKind::PictureButton:
      if (dynamic_cast<PictureButton*>(&control)) {
        return make<PictureButtonBinding, PictureButton, QAbstractButton>(binder, control, widget);
      }
      [[fallthrough]];
    case ControlKind::Button:
      return make<ButtonBinding, Button, QAbstractButton>(binder, control, widget);
    case ControlKind::Label:
      return make<LabelBinding, Label, QLabel>(binder, control, widget);
    case ControlKind::Frame:
    case ControlKind::TabStrip:
    case ControlKind::TreeView:
    case ControlKind::ReportList:
      return makePageBinding(binder, control, widget);
    case ControlKind::Hosted:
      break;
  }
  return *new ControlBinding(binder, control, widget);
}

bool isComboBox(const QWidget& widget, bool editable) {
  const auto* box = qobject_cast<const QComboBox*>(&widget);
  return box && box->isEditable() == editable;
}

bool isPlainButton(const QWidget& widget) {
  return qobject_cast<const QAbstractButton*>(&widget) && !qobject_cast<const QCheckBox*>(&widget);
}

}  // namespace

bool widgetSuits(ControlKind kind, const QWidget& widget) {
  switch (kind) {
    case ControlKind::TextBox:
      return qobject_cast<const QLineEdit*>(&widget) != nullptr;
    case ControlKind::TypingCombo:
      return isComboBox(widget, true);
    case ControlKind::DropDown:
      return isComboBox(widget, false);
    case ControlKind::ListBox:
      return qobject_cast<const QListWidget*>(&widget) != nullptr;
    case ControlKind::CheckBox:
      return qobject_cast<const QCheckBox*>(&widget) != nullptr;
    case ControlKind::Button:
    case ControlKind::PictureButton:
      return isPlainButton(widget);
    case ControlKind::Label:
      return qobject_cast<const QLabel*>(&widget) != nullptr;
    case ControlKind::Frame:
    case ControlKind::TabStrip:
    case ControlKind::TreeView:
    case ControlKind::ReportList:
      return pageWidgetSuits(kind, widget);
    case ControlKind::Hosted:
      return true;
  }
  return false;
}

ControlBinding& bindControl(FormBinder& binder, Control& control, QWidget& widget) {
  ControlBinding& binding = makeBinding(binder, control, widget);
  binding.mirrorAll();
  return binding;
}

}  // namespace vlclientui::widgets
