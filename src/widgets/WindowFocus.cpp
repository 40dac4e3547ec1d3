#include "widgets/WindowFocus.h"

#include <QApplication>
#include <QEvent>
#include <QMenuBar>

namespace vlclientui::widgets {

WindowFocus::WindowFocus(Form& form, QWidget& window) : QObject(&window), form_(&form), window_(window) {
  window.installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusMoved(now); });
}

WindowFocus::Pause::~Pause() {
  focus_.paused_ = false;
  if (focus_.form_ && !focus_.holds(QApplication::focusWidget())) focus_.form_->windowLost();
}

void WindowFocus::start() {
  started_ = true;
  active_ = true;
  if (form_ && holds(QApplication::focusWidget())) form_->userEnters();
}

bool WindowFocus::eventFilter(QObject* watched, QEvent* event) {
  if (!follows() || watched != &window_) return false;
  const QEvent::Type type = event->type();
  if (type == QEvent::WindowDeactivate) deactivated();
  // Handlers of the form may destroy the window.
  if (type == QEvent::WindowActivate) activated();
  if (type == QEvent::Hide && !event->spontaneous()) left();
  return false;
}

void WindowFocus::activated() {
  if (active_) return;
  active_ = true;
  form_->userActivates();
}

void WindowFocus::deactivated() {
  const QWidget* const other = QApplication::activeWindow();
  if (!other || other == window_.window() || staysBelow(*other)) return;
  active_ = false;
  // The other window may have nothing that takes the focus. A modal window cannot be left for it.
  if (!window_.window()->isModal()) left();
}

void WindowFocus::focusMoved(const QWidget* now) {
  // Without any focus, another program is in front, or the next widget gets it at once.
  if (!follows() || !now) return;
  if (holds(now)) return form_->userEnters();
  const QWidget* const other = now->window();
  const bool sameWindow = other == window_.window();
  if (sameWindow ? qobject_cast<const QMenuBar*>(now) != nullptr : staysBelow(*other)) return;
  if (!sameWindow) active_ = false;
  left();
}

void WindowFocus::left() { form_->userLeaves(); }

bool WindowFocus::holds(const QWidget* widget) const {
  return widget && (widget == &window_ || window_.isAncestorOf(widget));
}

/// Whether the focus comes back from there without a person's doing.
bool WindowFocus::staysBelow(const QWidget& other) const {
  if (other.windowType() == Qt::Popup || other.isModal()) return true;
  for (const QWidget* owner = other.parentWidget(); owner; owner = owner->parentWidget()) {
    if (owner == &window_) return true;
  }
  return false;
}

}  // namespace vlclientui::widgets
