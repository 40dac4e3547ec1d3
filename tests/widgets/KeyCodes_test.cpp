#include "widgets/KeyCodes.h"

#include <gtest/gtest.h>

namespace vlclientui::widgets {
namespace {

std::int32_t codeOf(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  return keyEventOf(QKeyEvent(QEvent::KeyPress, key, modifiers)).value().keyCode;
}

std::int32_t shiftOf(Qt::KeyboardModifiers modifiers) {
  return keyEventOf(QKeyEvent(QEvent::KeyPress, Qt::Key_A, modifiers)).value().shift;
}

TEST(KeyCodes, NamedKeysHaveTheirNumbers) {
  EXPECT_EQ(codeOf(Qt::Key_Return), keyCode::enter);
  EXPECT_EQ(codeOf(Qt::Key_Enter), keyCode::enter);
  EXPECT_EQ(codeOf(Qt::Key_Backspace), keyCode::backspace);
  EXPECT_EQ(codeOf(Qt::Key_Escape), keyCode::escape);
  EXPECT_EQ(codeOf(Qt::Key_F1), keyCode::f1);
  EXPECT_EQ(codeOf(Qt::Key_F12), 123);
  EXPECT_EQ(codeOf(Qt::Key_Delete), 46);
  EXPECT_EQ(codeOf(Qt::Key_Down), 40);
}

TEST(KeyCodes, LettersAndDigitsAreTheirUpperCaseCharacters) {
  EXPECT_EQ(codeOf(Qt::Key_S), 'S');
  EXPECT_EQ(codeOf(Qt::Key_7), '7');
  EXPECT_EQ(codeOf(Qt::Key_7, Qt::KeypadModifier), 103);
  EXPECT_EQ(codeOf(Qt::Key_Space), 32);
}

TEST(KeyCodes, ShiftControlAndAltCountAndNoOther) {
  EXPECT_EQ(shiftOf(Qt::ShiftModifier), 1);
  EXPECT_EQ(shiftOf(Qt::ControlModifier), 2);
  EXPECT_EQ(shiftOf(Qt::AltModifier), 4);
  EXPECT_EQ(shiftOf(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier), 7);
  EXPECT_EQ(shiftOf(Qt::MetaModifier | Qt::KeypadModifier), 0);
}

TEST(KeyCodes, TabRaisesNothing) {
  EXPECT_FALSE(keyEventOf(QKeyEvent(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier)));
  EXPECT_FALSE(keyEventOf(QKeyEvent(QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier)));
}

TEST(KeyCodes, KeysWithoutANumberAreStillKeys) { EXPECT_EQ(codeOf(Qt::Key_Odiaeresis), 255); }

}  // namespace
}  // namespace vlclientui::widgets
