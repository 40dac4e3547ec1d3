#include "viewer/tour/Person.h"

#include <QApplication>
#include <QMouseEvent>
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

// Folder names use every script; key codes do not.
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

void drag(QWidget& widget, QPointF from, QPointF to) {
  const auto place = [&](QPointF share) {
    return QPointF(share.x() * widget.width(), share.y() * widget.height()).toPoint();
  };
  QTest::mousePress(&widget, Qt::LeftButton, Qt::NoModifier, place(from));
  for (int step = 1; step <= 4; ++step) {
    const QPoint at = place(from + (to - from) * step / 4);
    const QPointF global = widget.mapToGlobal(QPointF(at));
    // Moves with the button held down, which the test library's own move does not.
    QMouseEvent move(QEvent::MouseMove, at, global, Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &move);
  }
  QTest::mouseRelease(&widget, Qt::LeftButton, Qt::NoModifier, place(to));
}

void choose(QComboBox& list, const QString& entry) {
  const int row = list.findText(entry);
  if (row < 0) throw Astray("there is no entry " + entry.toStdString());
  list.setFocus(Qt::TabFocusReason);
  QTest::keyClick(&list, Qt::Key_F4);
  QTest::keyClick(list.view(), Qt::Key_Home);
  for (int step = 0; step < row; ++step) QTest::keyClick(list.view(), Qt::Key_Down);
  QTest::keyClick(list.view(), Qt::Key_Return);
}

QWidget* modalWindow(const QString& title) {
  QWidget* window = QApplication::activeModalWidget();
  if (window == nullptr || !window->isVisible()) return nullptr;
  const QString shown = window->windowTitle();
  return shown == title || shown.startsWith(title + " \u2013 ") ? window : nullptr;
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
