#include "widgets/ControlBinding.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <utility>

#include "frame/HelpLaunches.h"
#include "widgets/FormBinder.h"
#include "widgets/KeyCodes.h"
#include "widgets/ReadableColors.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

bool belongsToPopup(Qt::FocusReason reason) {
  return reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
}

}  // namespace

ControlBinding::ControlBinding(FormBinder& binder, Control& control, QWidget& widget)
    : QObject(&binder),
      binder_(binder),
      control_(&control),
      widget_(widget),
      normalPalette_(widget.palette()) {
  const QPointer<ControlBinding> self(this);
  connection_ = control.changed.connect([self](Aspect aspect) {
    if (self) self->follow(aspect);
  });
  // A container takes no focus itself; keys that its widgets ignore are theirs, not its own.
  const bool holdsOthers = control.kind() == ControlKind::Hosted || control.kind() == ControlKind::Frame;
  if (!holdsOthers) widget.installEventFilter(this);
}

ControlBinding::~ControlBinding() { release(); }

void ControlBinding::release() {
  if (control_) control_->changed.disconnect(connection_);
  control_ = nullptr;
}

void ControlBinding::mirrorAll() {
  for (const Aspect aspect : {Aspect::Entries, Aspect::Text, Aspect::Selection, Aspect::CheckState,
                              Aspect::Color, Aspect::Complaint, Aspect::Enabled, Aspect::Visible}) {
    follow(aspect);
  }
  if (!control_->toolTip().empty()) follow(Aspect::ToolTip);
}

void ControlBinding::follow(Aspect aspect) {
  if (!control_) return;
  const FormBinder::Mirroring mirroring(binder_);
  mirror(aspect);
}

void ControlBinding::mirror(Aspect aspect) {
  switch (aspect) {
    case Aspect::Enabled:
      return mirrorEnabled();
    case Aspect::Visible:
      return mirrorVisible();
    case Aspect::ToolTip:
      return widget_.setToolTip(toQt(binder_.paths().shown(control_->toolTip())));
    case Aspect::Color:
      return mirrorColor();
    case Aspect::Complaint:
      return mirrorComplaint();
    case Aspect::Focus:
      return widget_.setFocus(Qt::OtherFocusReason);
    default:
      return;
  }
}

void ControlBinding::mirrorEnabled() {
  if (!control_->enabled()) binder_.parkFocus(widget_);
  widget_.setEnabled(control_->enabled());
}

void ControlBinding::mirrorVisible() {
  if (!control_->visible()) binder_.parkFocus(widget_);
  widget_.setVisible(control_->visible());
}

void ControlBinding::mirrorColor() {
  QPalette palette = normalPalette_;
  if (control_->textColor() == TextColor::Red) {
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> roles[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button}};
    for (const auto& [text, background] : roles) {
      palette.setColor(text, complaintColor(widget_.palette().color(background)));
    }
  }
  if (widget_.palette() != palette) widget_.setPalette(palette);
}

/// A layout that shows complaints has a label for them beside the widget, named after it.
void ControlBinding::mirrorComplaint() {
  auto* const label = widget_.parentWidget()->findChild<QLabel*>(widget_.objectName() + complaintSuffix);
  if (!label) return;
  label->setText(toQt(binder_.paths().shown(control_->complaint())));
  label->setVisible(!control_->complaint().empty());
}

void ControlBinding::act(const std::function<void()>& action, Aspect aspect) {
  if (!control_ || binder_.isMirroring()) return;
  // The host may delete the window while a message of the action is open; then this object is gone too.
  const QPointer<ControlBinding> self(this);
  binder_.runGuarded(action);
  if (self) follow(aspect);
}

bool ControlBinding::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &widget_ && control_) {
    const QPointer<ControlBinding> self(this);
    if (event->type() == QEvent::FocusIn) focusArrived(static_cast<QFocusEvent*>(event)->reason());
    // The widget is gone too; do not touch the event any more.
    if (!self) return true;
    if (event->type() == QEvent::PaletteChange) mirrorColor();
    if (event->type() == QEvent::KeyPress) return keyPressed(*static_cast<QKeyEvent*>(event));
  }
  return QObject::eventFilter(watched, event);
}

void ControlBinding::focusArrived(Qt::FocusReason reason) {
  if (!binder_.followsFocus() || binder_.isMirroring() || belongsToPopup(reason)) return;
  // The window comes back from under a message whose action still runs; that action decides about the focus.
  if (reason == Qt::ActiveWindowFocusReason && binder_.isActing()) return;
  const QPointer<ControlBinding> self(this);
  binder_.runGuarded([this] { control_->userFocuses(); });
  if (self && control_ && !control_->hasFocus()) binder_.restoreFocus();
}

bool ControlBinding::keyPressed(const QKeyEvent& event) {
  const auto key = keyEventOf(event);
  if (!key) return false;
  bool usedUp = false;
  const QPointer<ControlBinding> self(this);
  const std::size_t launches = helpLaunches();
  binder_.runGuarded([&] { usedUp = control_->userPresses(key->keyCode, key->shift); });
  // Windows further out would open a page of their own.
  if (helpLaunches() != launches) return true;
  // The handler may have closed the form or taken the widget away; then there is nobody to use the key.
  return usedUp || !self || !control_ || !widget_.isEnabled() || !widget_.isVisible();
}

}  // namespace vlclientui::widgets
