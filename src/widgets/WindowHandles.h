#pragma once

#include <QPointer>
#include <QWidget>
#include <map>
#include <vector>

#include "contracts/Plexa.h"

namespace vlclientui::widgets {

/// Numbers for windows, since windows cross the library's boundary as 32-bit numbers. A number belongs to one
/// window for its lifetime and is never reused.
class WindowHandles {
 public:
  /// 0 for no widget.
  [[nodiscard]] WindowHandle handleOf(QWidget* widget);
  /// Null for 0, for numbers never given and for dead windows.
  [[nodiscard]] QWidget* widgetOf(WindowHandle handle) const;
  /// A window's direct child windows, topmost first. An engine's slot is not a window: what is inside it
  /// counts as a child of the window with the slot.
  [[nodiscard]] std::vector<WindowHandle> childrenOf(WindowHandle handle);

 private:
  void forgetDead();

  std::map<WindowHandle, QPointer<QWidget>> widgets_;
  WindowHandle last_ = 0;
};

/// Name of the property that marks a widget as the slot of an engine.
inline constexpr const char* engineSlotProperty = "engineSlot";

/// Where a surface with that parent window goes: its first visible slot, its first slot when all are hidden,
/// or the window itself when it has none.
[[nodiscard]] QWidget& surfacePlaceIn(QWidget& window);

}  // namespace vlclientui::widgets
