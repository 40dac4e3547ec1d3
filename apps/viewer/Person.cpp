#include "Person.h"

#include <QApplication>
#include <QTest>

namespace vlclientui::viewer::person {
namespace {

QPoint middleOfRow(QAbstractItemView& list, int row) {
  const QModelIndex index = list.model()->index(row, 0, list.rootIndex());
  if (!index.isValid()) throw Astray("the list has no row " + std::to_string(row));
  list.scrollTo(index);
  const QRect place = list.visualRect(index);
  return {place.left() + qMin(place.width() / 2, 60), place.center().y()};
}

// Folders have names in every script; keys have not.
void typeCharacter(QWidget& widget, char32_t character) {
  if (character < 0x80) {
    QTest::keyClick(&widget, static_cast<char>(character));
  } else {
    QTest::sendKeyEvent(QTest::Click, &widget, Qt::Key_unknown, QString::fromUcs4(&character, 1),
                        Qt::NoModifier);
  }
}

}  // namespace

void click(QWidget& widget) {
  if (!widget.isEnabled()) throw Astray(widget.objectName().toStdString() + " cannot be clicked now");
  // Near its beginning: a check box is sensitive on its mark and text only, which end before the widget does.
  QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier,
                    QPoint(qMin(10, widget.width() / 2), widget.height() / 2));
}

void press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers modifiers) {
  QWidget* focused = widget.window()->focusWidget();
  QTest::keyClick(focused ? focused : &widget, key, modifiers);
}

void typeInto(QWidget& box, const QString& text) {
  click(box);
  press(box, Qt::Key_A, Qt::ControlModifier);
  QWidget* focused = box.window()->focusWidget();
  for (const char32_t character : text.toUcs4()) typeCharacter(focused ? *focused : box, character);
}

QStringList rowNames(const QAbstractItemView& list) {
  QStringList names;
  for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row) names += cell(list, row, 0);
  return names;
}

QString cell(const QAbstractItemView& list, int row, int column) {
  return list.model()->index(row, column, list.rootIndex()).data().toString();
}

void clickRow(QAbstractItemView& list, int row) {
  const QPoint place = middleOfRow(list, row);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

// A click, a double click and the release behind it, as a pointer sends them.
void doubleClickRow(QAbstractItemView& list, int row) {
  const QPoint place = middleOfRow(list, row);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

}  // namespace vlclientui::viewer::person
