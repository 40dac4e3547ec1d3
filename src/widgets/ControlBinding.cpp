#include "widgets/ControlBinding.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QPointer>

#include "widgets/FormBinder.h"
#include "widgets/KeyCodes.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

const QColor redText(0xb0, 0x1e, 0x1e);

bool isPersonsMove(Qt::FocusReason reason) {
  return reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
         reason != Qt::MenuBarFocusReason;
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
  // What holds other controls has no focus of its own, and keys that its widgets leave over are theirs.
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
                              Aspect::Colour, Aspect::Enabled, Aspect::Visible}) {
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
    case Aspect::Colour:
      return mirrorColour();
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

void ControlBinding::mirrorColour() {
  QPalette palette = normalPalette_;
  if (control_->textColour() == TextColour::Red) {
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
      palette.setColor(role, redText);
    }
  }
  widget_.setPalette(palette);
}

void ControlBinding::act(const std::function<void()>& action, Aspect aspect) {
  if (!control_ || binder_.isMirroring()) return;
  binder_.runGuarded(action);
  follow(aspect);
}

bool ControlBinding::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &widget_ && control_) {
    if (event->type() == QEvent::FocusIn) focusArrived(static_cast<QFocusEvent*>(event)->reason());
    if (event->type() == QEvent::KeyPress) return keyPressed(*static_cast<QKeyEvent*>(event));
  }
  return QObject::eventFilter(watched, event);
}

void ControlBinding::focusArrived(Qt::FocusReason reason) {
  if (!binder_.followsFocus() || binder_.isMirroring() || !isPersonsMove(reason)) return;
  binder_.runGuarded([this] { control_->userFocuses(); });
}

bool ControlBinding::keyPressed(const QKeyEvent& event) {
  const auto key = keyEventOf(event);
  if (!key) return false;
  binder_.runGuarded([this, &key] { control_->userPresses(key->keyCode, key->shift); });
  // The handler may have closed the form or taken the widget away; then there is nobody to use the key.
  if (!control_ || !widget_.isEnabled() || !widget_.isVisible()) return true;
  const bool plainEnter = key->keyCode == keyCode::enter && key->shift == keyModifier::none;
  return plainEnter && enterPressed();
}

}  // namespace vlclientui::widgets
