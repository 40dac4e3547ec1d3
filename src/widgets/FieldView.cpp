#include "widgets/FieldView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <utility>

#include "widgets/ComboBoxNames.h"
#include "widgets/ReadableColors.h"
#include "widgets/Text.h"
#include "widgets/ValueLabel.h"

namespace vlclientui::widgets {

namespace {

using engine::FieldKind;
using engine::FormField;

constexpr int numberLength = 16;  ///< characters that a number's box shows
constexpr int textLines = 4;      ///< lines that a box of several lines shows
constexpr int complaintSpacing = 2;

void describe(QWidget& control, const FormField& field) {
  control.setObjectName(toQt(field.name));
  control.setAccessibleName(toQt(field.label));
}

QLabel* makeComplaint(QWidget* parent) {
  auto* complaint = new QLabel(parent);
  complaint->setTextFormat(Qt::PlainText);
  complaint->setWordWrap(true);
  colorAsComplaint(*complaint);
  complaint->hide();
  return complaint;
}

/// A read-only text.
class ReadOnlyView final : public FieldView {
 public:
  ReadOnlyView(const FormField& field, QWidget* parent) : FieldView(field), value_(new ValueLabel(parent)) {
    describe(*value_, field);
  }

  [[nodiscard]] QWidget* widget() const override { return value_; }
  [[nodiscard]] QWidget* control() const override { return value_; }

  void update(const FormField& field) override { value_->setValue(shownValue(field)); }

 private:
  static QString shownValue(const FormField& field) {
    const QString value = toQt(field.value);
    if (value.trimmed().isEmpty()) return QStringLiteral("\u2013");
    return field.unit.empty() ? value : value + QLatin1Char(' ') + toQt(field.unit);
  }

  ValueLabel* value_;
};

/// A control with the field's unit behind it and the complaint below.
class EditorView : public FieldView {
 public:
  [[nodiscard]] QWidget* widget() const override { return frame_; }
  [[nodiscard]] QWidget* control() const override { return control_; }

  void update(const FormField& field) final {
    quietly([&] { showValue(field); });
    const QString complaint = toQt(field.complaint);
    if (complaint == complaint_->text()) return;
    complaint_->setText(complaint);
    complaint_->setVisible(!complaint.isEmpty());
    control_->setAccessibleDescription(complaint.isEmpty() ? toQt(field.help) : complaint);
  }

 protected:
  EditorView(const FormField& field, QWidget* control, PageListener listener, QWidget* parent)
      : FieldView(field),
        listener_(std::move(listener)),
        frame_(new QWidget(parent)),
        control_(control),
        complaint_(makeComplaint(frame_)) {
    describe(*control_, field);
    control_->setAccessibleDescription(toQt(field.help));
    complaint_->setObjectName(toQt(field.name) + QStringLiteral("_complaint"));
    auto* line = new QHBoxLayout;
    line->addWidget(control_);
    if (!field.unit.empty()) line->addWidget(new QLabel(toQt(field.unit)));
    if (hasOwnWidth(field)) line->addStretch();
    auto* layout = new QVBoxLayout(frame_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(complaintSpacing);
    layout->addLayout(line);
    layout->addWidget(complaint_);
  }

  virtual void showValue(const FormField& field) = 0;

  void edited(const QString& text) const {
    tell([&] {
      if (listener_.edited) listener_.edited(path(), fromQt(text));
    });
  }
  void left() const {
    tell([&] {
      if (listener_.left) listener_.left(path());
    });
  }
  void pressed() const {
    tell([&] {
      if (listener_.pressed) listener_.pressed(path());
    });
  }

 private:
  static bool hasOwnWidth(const FormField& field) {
    return field.kind == FieldKind::Number || field.kind == FieldKind::Whole ||
           field.kind == FieldKind::YesNo || field.kind == FieldKind::Button;
  }

  PageListener listener_;
  QWidget* frame_;
  QWidget* control_;
  QLabel* complaint_;
};

/// White space at the ends makes no difference, so that a person can type a blank between two words.
bool showsAlready(const QString& shown, const std::string& value) {
  return shown.trimmed() == toQt(value).trimmed();
}

class LineView final : public EditorView {
 public:
  LineView(const FormField& field, const PageListener& listener, QWidget* parent)
      : EditorView(field, new QLineEdit(parent), listener, parent) {
    if (field.kind != FieldKind::Text) {
      line().setFixedWidth(line().fontMetrics().averageCharWidth() * numberLength);
    }
    connect(&line(), &QLineEdit::textChanged, this, [this](const QString& text) { edited(text); });
    connect(&line(), &QLineEdit::editingFinished, this, [this] { left(); });
  }

 private:
  [[nodiscard]] QLineEdit& line() const { return *static_cast<QLineEdit*>(control()); }

  void showValue(const FormField& field) override {
    if (!showsAlready(line().text(), field.value)) line().setText(toQt(field.value));
  }
};

class TextView final : public EditorView {
 public:
  TextView(const FormField& field, const PageListener& listener, QWidget* parent)
      : EditorView(field, new QPlainTextEdit(parent), listener, parent) {
    text().setTabChangesFocus(true);
    const int margins = 2 * static_cast<int>(text().document()->documentMargin()) + 2 * text().frameWidth();
    text().setFixedHeight(text().fontMetrics().lineSpacing() * textLines + margins);
    text().installEventFilter(this);
    connect(&text(), &QPlainTextEdit::textChanged, this, [this] { edited(text().toPlainText()); });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::FocusOut) {
      const auto reason = static_cast<QFocusEvent*>(event)->reason();
      if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason) left();
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  [[nodiscard]] QPlainTextEdit& text() const { return *static_cast<QPlainTextEdit*>(control()); }

  void showValue(const FormField& field) override {
    if (!showsAlready(text().toPlainText(), field.value)) text().setPlainText(toQt(field.value));
  }
};

class ChoiceView final : public EditorView {
 public:
  ChoiceView(const FormField& field, const PageListener& listener, QWidget* parent)
      : EditorView(field, new QComboBox(parent), listener, parent) {
    nameByLabel(box());
    box().setFocusPolicy(Qt::StrongFocus);
    box().setSizeAdjustPolicy(QComboBox::AdjustToContents);
    box().installEventFilter(this);
    connect(&box(), qOverload<int>(&QComboBox::activated), this,
            [this](int index) { edited(box().itemText(index)); });
  }

  /// A wheel that scrolls the page must not change a box that the pointer passes.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel || box().hasFocus()) return QObject::eventFilter(watched, event);
    event->ignore();
    return true;
  }

 private:
  [[nodiscard]] QComboBox& box() const { return *static_cast<QComboBox*>(control()); }

  void showValue(const FormField& field) override {
    QStringList entries;
    for (const auto& value : field.allowedValues) entries << toQt(value);
    if (!field.unlistedValue.empty()) entries << toQt(field.unlistedValue);
    QStringList shown;
    for (int index = 0; index < box().count(); ++index) shown << box().itemText(index);
    if (entries != shown) {
      box().clear();
      box().addItems(entries);
    }
    box().setCurrentIndex(static_cast<int>(entries.indexOf(toQt(field.value))));
  }
};

class YesNoView final : public EditorView {
 public:
  YesNoView(const FormField& field, const PageListener& listener, QWidget* parent)
      : EditorView(field, new QCheckBox(markedText(field.label, field.labelKey), parent), listener, parent) {
    connect(&box(), &QCheckBox::clicked, this,
            [this](bool checked) { edited(checked ? QStringLiteral("Yes") : QStringLiteral("No")); });
  }

  [[nodiscard]] bool labelsItself() const override { return true; }

 private:
  [[nodiscard]] QCheckBox& box() const { return *static_cast<QCheckBox*>(control()); }

  /// Data other than Yes and No show as neither; the first click makes it Yes.
  void showValue(const FormField& field) override {
    const bool neither = field.value != "Yes" && field.value != "No";
    box().setTristate(neither);
    box().setCheckState(neither ? Qt::PartiallyChecked : field.value == "Yes" ? Qt::Checked : Qt::Unchecked);
  }
};

class ButtonView final : public EditorView {
 public:
  ButtonView(const FormField& field, const PageListener& listener, QWidget* parent)
      : EditorView(field, new QPushButton(markedText(field.label, field.labelKey), parent), listener,
                   parent) {
    auto* button = static_cast<QPushButton*>(control());
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    connect(button, &QPushButton::clicked, this, [this] { pressed(); });
  }

  [[nodiscard]] bool labelsItself() const override { return true; }

 private:
  void showValue(const FormField& /*field*/) override {}
};

FieldView* makeEditor(const FormField& field, const PageListener& listener, QWidget* parent) {
  switch (field.kind) {
    case FieldKind::MultiLine:
      return new TextView(field, listener, parent);
    case FieldKind::Choice:
      return new ChoiceView(field, listener, parent);
    case FieldKind::YesNo:
      return new YesNoView(field, listener, parent);
    case FieldKind::Button:
      return new ButtonView(field, listener, parent);
    default:
      return new LineView(field, listener, parent);
  }
}

}  // namespace

void FieldView::quietly(const std::function<void()>& change) {
  const bool before = std::exchange(updating_, true);
  change();
  updating_ = before;
}

FieldView* makeFieldView(const FormField& field, const PageListener& listener, QWidget* parent) {
  FieldView* view = field.readOnly ? static_cast<FieldView*>(new ReadOnlyView(field, parent))
                                   : makeEditor(field, listener, parent);
  view->setParent(parent);
  view->update(field);
  return view;
}

QString markedText(const std::string& text, std::optional<std::size_t> keyOffset) {
  const auto whole = [](const std::string& part) { return toQt(part).replace(QLatin1Char('&'), "&&"); };
  if (!keyOffset) return whole(text);
  return whole(text.substr(0, *keyOffset)) + QLatin1Char('&') + whole(text.substr(*keyOffset));
}

}  // namespace vlclientui::widgets
