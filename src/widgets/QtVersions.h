#pragma once

#include <QFormLayout>
#include <QKeySequence>
#include <QMouseEvent>
#include <QString>
#include <QWidget>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::widgets {

// What Qt 5 and Qt 6 spell differently; the rest of this folder knows one Qt.

/// How Qt counts the characters of a text and the entries of a list.
using QtSize = decltype(QString().size());

/// Where the pointer was, seen from the widget that the event is for.
[[nodiscard]] inline QPoint pointOf(const QMouseEvent& event) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
  return event.position().toPoint();
#else
  return event.pos();
#endif
}

/// The key sequence of a key held together with modifiers.
[[nodiscard]] inline QKeySequence keysOf(Qt::KeyboardModifiers modifiers, Qt::Key key) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
  return {QKeyCombination(modifiers, key)};
#else
  return {static_cast<int>(modifiers) | static_cast<int>(key)};
#endif
}

/// Shows or hides the row of a field, its label too. A hidden row takes no room.
inline void showRow(QFormLayout& layout, QWidget& field, bool shown) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 4, 0)
  layout.setRowVisible(&field, shown);
#else
  field.setVisible(shown);
  if (QWidget* const label = layout.labelForField(&field)) label->setVisible(shown);
#endif
}

}  // namespace vlclientui::widgets
#pragma GCC visibility pop
