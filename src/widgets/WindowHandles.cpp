#include "widgets/WindowHandles.h"

#include <QVariant>
#include <algorithm>
#include <ranges>

namespace vlclientui::widgets {

namespace {

bool isSlot(const QWidget& widget) { return widget.property(engineSlotProperty).toBool(); }

void collectWindows(const QWidget& parent, std::vector<QWidget*>& windows) {
  for (QObject* child : parent.children() | std::views::reverse) {
    auto* widget = qobject_cast<QWidget*>(child);
    if (!widget || widget->isWindow()) continue;
    if (isSlot(*widget)) {
      collectWindows(*widget, windows);
    } else {
      windows.push_back(widget);
    }
  }
}

}  // namespace

WindowHandle WindowHandles::handleOf(QWidget* widget) {
  if (!widget) return 0;
  for (const auto& [handle, known] : widgets_) {
    if (known == widget) return handle;
  }
  forgetDead();
  widgets_.emplace(++last_, widget);
  return last_;
}

QWidget* WindowHandles::widgetOf(WindowHandle handle) const {
  const auto found = widgets_.find(handle);
  return found == widgets_.end() ? nullptr : found->second.data();
}

std::vector<WindowHandle> WindowHandles::childrenOf(WindowHandle handle) {
  std::vector<QWidget*> windows;
  if (const QWidget* parent = widgetOf(handle)) collectWindows(*parent, windows);
  std::vector<WindowHandle> handles;
  for (QWidget* window : windows) handles.push_back(handleOf(window));
  return handles;
}

void WindowHandles::forgetDead() {
  std::erase_if(widgets_, [](const auto& entry) { return entry.second.isNull(); });
}

QWidget& surfacePlaceIn(QWidget& window) {
  if (isSlot(window)) return window;
  const auto children = window.findChildren<QWidget*>();
  const auto shown = std::ranges::find_if(
      children, [&window](const QWidget* child) { return isSlot(*child) && child->isVisibleTo(&window); });
  if (shown != children.end()) return **shown;
  const auto slot = std::ranges::find_if(children, [](const QWidget* child) { return isSlot(*child); });
  return slot == children.end() ? window : **slot;
}

}  // namespace vlclientui::widgets
