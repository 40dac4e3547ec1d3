#include "widgets/KeyCodes.h"

#include <array>
#include <cstdint>
#include <utility>

namespace vlclientui::widgets {

namespace {

constexpr std::int32_t unknownKey = 255;
constexpr std::int32_t firstKeypadDigit = 96;

constexpr std::array<std::pair<int, std::int32_t>, 23> namedKeys{{
    {Qt::Key_Backspace, keyCode::backspace},
    {Qt::Key_Return, keyCode::enter},
    {Qt::Key_Enter, keyCode::enter},
    {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},
    {Qt::Key_Alt, 18},
    {Qt::Key_Pause, 19},
    {Qt::Key_CapsLock, 20},
    {Qt::Key_Escape, keyCode::escape},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
    {Qt::Key_End, 35},
    {Qt::Key_Home, 36},
    {Qt::Key_Left, 37},
    {Qt::Key_Up, 38},
    {Qt::Key_Right, 39},
    {Qt::Key_Down, 40},
    {Qt::Key_Print, 44},
    {Qt::Key_Insert, 45},
    {Qt::Key_Delete, 46},
    {Qt::Key_Menu, 93},
    {Qt::Key_NumLock, 144},
    {Qt::Key_ScrollLock, 145},
}};

std::int32_t codeOf(const QKeyEvent& event) {
  const int key = event.key();
  for (const auto& [qtKey, code] : namedKeys) {
    if (qtKey == key) return code;
  }
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return keyCode::f1 + key - Qt::Key_F1;
  const bool digit = key >= Qt::Key_0 && key <= Qt::Key_9;
  if (digit && event.modifiers().testFlag(Qt::KeypadModifier)) return firstKeypadDigit + key - Qt::Key_0;
  const bool letter = key >= Qt::Key_A && key <= Qt::Key_Z;
  return digit || letter || key == Qt::Key_Space ? key : unknownKey;
}

std::int32_t shiftOf(Qt::KeyboardModifiers modifiers) {
  return (modifiers.testFlag(Qt::ShiftModifier) ? keyModifier::shift : keyModifier::none) +
         (modifiers.testFlag(Qt::ControlModifier) ? keyModifier::control : keyModifier::none) +
         (modifiers.testFlag(Qt::AltModifier) ? keyModifier::alt : keyModifier::none);
}

}  // namespace

std::optional<KeyEvent> keyEventOf(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) return std::nullopt;
  return KeyEvent{codeOf(event), shiftOf(event.modifiers())};
}

}  // namespace vlclientui::widgets
