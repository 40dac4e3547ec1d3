// A walk through all windows as a screen reader makes it.
#include <QAccessible>
#include <map>

#include "apps/viewer/EveryWindowFixture.h"

namespace vlclientui::test {
namespace {

bool isUsed(QAccessible::Role role) {
  switch (role) {
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
    case QAccessible::ButtonDropDown:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::ComboBox:
    case QAccessible::EditableText:
    case QAccessible::SpinBox:
    case QAccessible::Slider:
    case QAccessible::List:
    case QAccessible::Table:
    case QAccessible::Tree:
    case QAccessible::PageTab:
    case QAccessible::MenuItem:
    case QAccessible::ProgressBar:
      return true;
    default:
      return false;
  }
}

/// Goes from window to part, as the interface tells them.
class Walk {
 public:
  explicit Walk(std::string window) : window_(std::move(window)) {}

  void look(QAccessibleInterface* part, int depth = 0) {
    if (part == nullptr || !part->isValid() || part->state().invisible || depth > 30) return;
    const QAccessible::Role role = part->role();
    if (part->object() != nullptr && part->object()->isWidgetType()) {
      EXPECT_NE(role, QAccessible::NoRole) << described(*part);
      const auto& widget = *static_cast<QWidget*>(part->object());
      const bool takesKeys = widget.focusPolicy() & Qt::TabFocus;
      if (widget.isWindow() || ((takesKeys || isUsed(role)) && !isFrame(widget))) expectName(*part);
    }
    // Rows of lists are as many as there are.
    if (role == QAccessible::List || role == QAccessible::Table || role == QAccessible::Tree) return;
    for (int i = 0; i < part->childCount(); ++i) look(part->child(i), depth + 1);
  }
  [[nodiscard]] int named() const { return named_; }

 private:
  /// Such as the bar of a main window for panes that lie over each other: its tabs have names.
  static bool isFrame(const QWidget& widget) {
    return qobject_cast<const QTabBar*>(&widget) != nullptr ||
           std::string(widget.metaObject()->className()) == "QWidget";
  }
  void expectName(QAccessibleInterface& part) {
    ++named_;
    EXPECT_FALSE(part.text(QAccessible::Name).isEmpty()) << described(part);
  }
  [[nodiscard]] std::string described(QAccessibleInterface& part) const {
    const QObject& object = *part.object();
    return window_ + ": " + object.metaObject()->className() + " " + object.objectName().toStdString() +
           " in " + (object.parent() == nullptr ? "" : object.parent()->objectName().toStdString());
  }

  std::string window_;
  int named_ = 0;
};

class Accessibility : public EveryWindowFixture {};

TEST_F(Accessibility, EveryPartOfEveryWindowHasARoleAndAName) {
  int named = 0;
  visitEveryWindow([&named](QWidget& window, const QString& name) {
    Walk walk(name.toStdString());
    walk.look(QAccessible::queryAccessibleInterface(&window));
    named += walk.named();
  });
  EXPECT_GT(named, 200);
}

}  // namespace
}  // namespace vlclientui::test
