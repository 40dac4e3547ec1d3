#include "viewer/docks/TabWay.h"

#include <QWidget>
#include <map>

namespace vlclientui::viewer {
namespace {

std::vector<QWidget*> reachedIn(const QWidget& part) {
  std::vector<QWidget*> reached;
  QWidget* const window = part.window();
  for (QWidget* at = window->nextInFocusChain(); at != window; at = at->nextInFocusChain()) {
    const bool isWithin = at == &part || part.isAncestorOf(at);
    if (isWithin && (at->focusPolicy() & Qt::TabFocus) && at->focusProxy() == nullptr) reached.push_back(at);
  }
  return reached;
}

}  // namespace

void leadTabThrough(const std::vector<QWidget*>& parts) {
  std::map<QWidget*, QWidget*> last;  // by window
  for (const QWidget* const part : parts) {
    for (QWidget* const widget : reachedIn(*part)) {
      QWidget*& before = last[widget->window()];
      if (before != nullptr) QWidget::setTabOrder(before, widget);
      before = widget;
    }
  }
}

}  // namespace vlclientui::viewer
