#include "widgets/ComboBoxNames.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QLabel>
#include <QLineEdit>
#include <QVariant>

namespace vlclientui::widgets {

namespace {

constexpr const char* namedByLabelProperty = "namedByLabel";

class LabeledComboBox : public QAccessibleWidget {
 public:
  explicit LabeledComboBox(QComboBox& box) : QAccessibleWidget(&box, QAccessible::ComboBox), box_(box) {}

  [[nodiscard]] int childCount() const override { return box_.isEditable() ? 2 : 1; }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    if (index == 0) return QAccessible::queryAccessibleInterface(box_.view());
    return index == 1 && box_.isEditable() ? QAccessible::queryAccessibleInterface(box_.lineEdit()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    if (child->object() == box_.view()) return 0;
    return box_.isEditable() && child->object() == box_.lineEdit() ? 1 : -1;
  }

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return box_.currentText();
    if (kind == QAccessible::Name) return name();
    // Readers that know no value of a box read its description behind the name.
    if (kind == QAccessible::Description) return box_.currentText();
    return QAccessibleWidget::text(kind);
  }

  [[nodiscard]] QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.expanded = box_.view()->isVisible();
    state.editable = box_.isEditable();
    return state;
  }

  [[nodiscard]] QStringList actionNames() const override { return {showMenuAction(), pressAction()}; }
  void doAction(const QString& action) override {
    if (action != showMenuAction() && action != pressAction()) return;
    box_.view()->isVisible() ? box_.hidePopup() : box_.showPopup();
  }

 private:
  [[nodiscard]] QString name() const {
    const QString label = labelTextOf(box_);
    return label.isEmpty() ? box_.accessibleName() : label;
  }

  QComboBox& box_;
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object) {
  auto* const box = className == QLatin1String("QComboBox") ? qobject_cast<QComboBox*>(object) : nullptr;
  return box && box->property(namedByLabelProperty).toBool() ? new LabeledComboBox(*box) : nullptr;
}

}  // namespace

QString labelTextOf(const QWidget& widget) {
  const QWidget* const window = widget.window();
  for (const QLabel* label : window->findChildren<QLabel*>()) {
    if (label->buddy() != &widget) continue;
    QString text = label->text().trimmed();
    // A doubled mark is one to be read.
    text.replace(QLatin1String("&&"), QString(QChar::Null)).remove(QLatin1Char('&'));
    text.replace(QChar::Null, QLatin1Char('&'));
    return text.endsWith(QLatin1Char(':')) ? text.chopped(1) : text;
  }
  return {};
}

void nameByLabel(QComboBox& box) {
  // Once per program; the factory is asked anew for each box.
  static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
  Q_UNUSED(installed);
  box.setProperty(namedByLabelProperty, true);
  if (box.isEditable()) box.lineEdit()->setAccessibleName(box.accessibleName());
  // The toolkit may have made its own while it built the box.
  auto* const present = QAccessible::queryAccessibleInterface(&box);
  if (present && !dynamic_cast<LabeledComboBox*>(present)) {
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(present));
  }
}

}  // namespace vlclientui::widgets
