#pragma once

#include <QPointer>
#include <QWidget>
#include <map>
#include <vector>

#include "contracts/Plexa.h"

namespace vlclientui::widgets {

/// Numbers for windows, since the rules pass windows on as 32-bit numbers. A number belongs to one window
/// for as long as that lives and is never given again; the number of a dead window names none.
class WindowHandles {
 public:
  /// 0 for no widget.
  [[nodiscard]] WindowHandle handleOf(QWidget* widget);
  /// Null for 0, for numbers never given and for dead windows.
  [[nodiscard]] QWidget* widgetOf(WindowHandle handle) const;
  /// The windows that stand directly in a window, topmost first. An engine's slot is no window of its own:
  /// what stands in it counts as standing in the window that has the slot.
  [[nodiscard]] std::vector<WindowHandle> childrenOf(WindowHandle handle);

 private:
  void forgetDead();

  std::map<WindowHandle, QPointer<QWidget>> widgets_;
  WindowHandle last_ = 0;
};

/// Name of the property that marks a widget as the slot of an engine.
inline constexpr const char* engineSlotProperty = "engineSlot";

/// Where a surface with that parent window goes: its first slot that is not hidden, its first slot when all
/// are, or the window itself when it has none.
[[nodiscard]] QWidget& surfacePlaceIn(QWidget& window);

}  // namespace vlclientui::widgets
