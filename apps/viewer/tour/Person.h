#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <stdexcept>

/// What a person does at a window: clicks, presses keys, looks. Uses widgets only.
namespace vlclientui::viewer::person {

/// Something that a person needs is missing or disabled.
class Astray : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The visible widget of that name and kind. @throws Astray when there is none.
template <class Kind>
[[nodiscard]] Kind& find(const QWidget& window, const QString& name) {
  for (Kind* widget : window.findChildren<Kind*>(name)) {
    if (widget->isVisible()) return *widget;
  }
  throw Astray("there is no " + name.toStdString() + " to be seen");
}

/// @throws Astray when the widget is disabled.
void click(QWidget& widget);
/// Key by key, to whatever holds the focus in the widget's window.
void press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
/// From one place to another with the left button down; places are shares of the widget's size.
void drag(QWidget& widget, QPointF from, QPointF to);
/// Opens the list and picks an entry by keys. @throws Astray when there is no such entry.
void choose(QComboBox& list, const QString& entry);
/// The front modal window if it has that title, otherwise null.
[[nodiscard]] QWidget* modalWindow(const QString& title);
/// Replaces the text of a box.
void typeInto(QWidget& box, const QString& text);

/// First column, in row order.
[[nodiscard]] QStringList rowNames(const QAbstractItemView& list);
[[nodiscard]] QString cell(const QAbstractItemView& list, int row, int column);
/// @throws Astray when there is no such row.
void clickRow(QAbstractItemView& list, int row);
void doubleClickRow(QAbstractItemView& list, int row);

}  // namespace vlclientui::viewer::person
