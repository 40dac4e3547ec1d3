#include "contracts/controls/Control.h"

#include <utility>

#include "contracts/Toolkit.h"
#include "contracts/controls/ControlContainer.h"
#include "contracts/controls/Form.h"

namespace vlclientui {

namespace {
constexpr std::int32_t tabKey = 9;
constexpr std::int32_t knownModifiers = keyModifier::shift | keyModifier::control | keyModifier::alt;
}  // namespace

Control::Control(ControlContainer* container, std::string name, ControlKind kind)
    : container_(container), name_(std::move(name)), kind_(kind) {
  if (container) container->controls_.push_back(this);
}

Control::~Control() {
  if (!container_) return;
  if (Form* top = form()) top->forget(*this);
  std::erase(container_->controls_, this);
}

Form* Control::form() const { return container_ ? container_->topForm() : nullptr; }

void Control::setEnabled(bool enabled) {
  write([this, enabled] {
    enabled_ = enabled;
    if (!enabled) dropFocus();
    changed.raise(Aspect::Enabled);
  });
}

void Control::setVisible(bool visible) {
  write([this, visible] {
    visible_ = visible;
    if (!visible) dropFocus();
    changed.raise(Aspect::Visible);
  });
}

void Control::setToolTip(std::string toolTip) {
  toolTip_ = std::move(toolTip);
  changed.raise(Aspect::ToolTip);
}

void Control::setTextColor(TextColor color) {
  textColor_ = color;
  changed.raise(Aspect::Color);
}

void Control::setComplaint(std::string complaint) {
  if (complaint == complaint_) return;
  complaint_ = std::move(complaint);
  changed.raise(Aspect::Complaint);
}

bool Control::hasFocus() const {
  const Form* top = form();
  return top && top->focusedControl() == this;
}

bool Control::canTakeFocus() const {
  return acceptsInput() && kind_ != ControlKind::Label && kind_ != ControlKind::Frame &&
         kind_ != ControlKind::Hosted;
}

bool Control::acceptsInput() const {
  if (!enabled_ || !visible_) return false;
  const Form* top = form();
  if (top && !top->acceptsInput()) return false;
  const auto* host = dynamic_cast<const Control*>(container_);
  return !host || host->acceptsInput();
}

void Control::userFocuses() {
  if (!canTakeFocus()) return;
  if (!hasFocus()) tell(Operation::Kind::Enter, {});
  run([this] {
    if (Form* top = form()) top->moveFocus(this);
  });
}

bool Control::isButton() const { return kind_ == ControlKind::Button || kind_ == ControlKind::PictureButton; }

bool Control::userPresses(std::int32_t key, std::int32_t shift) {
  if (key == tabKey || !acceptsInput()) return false;
  const KeyEvent event{key, shift & knownModifiers};
  const bool isEnter = event.keyCode == keyCode::enter && event.shift == keyModifier::none;
  // A button tells of its click.
  if (isEnter && !isButton()) tell(Operation::Kind::Return, {});
  bool usedUp = false;
  run([this, &usedUp, event] {
    Form* const top = form();
    if (container_) container_->previewKey(event);
    if (form() == top) keyDown.raise(event);
    if (top && form() == top) usedUp = keyLeftOver(event);
  });
  return usedUp;
}

bool Control::keyLeftOver(const KeyEvent& key) {
  if (key.shift != keyModifier::none) return false;
  if (key.keyCode == keyCode::enter) return enterPressed();
  return key.keyCode == keyCode::escape && form()->userPressesEscape();
}

bool Control::enterPressed() { return form()->clicksDefaultButton(); }

bool Control::takesFocusForClick() {
  Form* const top = form();
  if (!top) return true;
  const auto messagesBefore = top->toolkit().messageCount();
  top->moveFocus(this);
  return top->toolkit().messageCount() == messagesBefore && form() == top && acceptsInput();
}

void Control::tell(Operation::Kind kind, const std::string& value) const {
  const Form* const top = form();
  tellOperation({kind, top ? top->formName() : std::string(), name_, value});
}

void Control::act(const std::function<void()>& action) {
  if (Form* top = form()) top->setNotice("");
  run(action);
}

void Control::run(const std::function<void()>& action) {
  if (Form* top = form()) {
    top->dispatch(action);
  } else {
    action();
  }
}

void Control::write(const std::function<void()>& writing) {
  if (Form* top = form()) {
    top->holdControlsWhile(writing);
  } else {
    writing();
  }
}

void Control::dropFocus() {
  Form* top = form();
  if (top && top->focusLiesIn(*this)) top->moveFocus(nullptr);
}

ControlContainer::~ControlContainer() { releaseControls(); }

void ControlContainer::releaseControls() {
  for (Control* control : controls_) control->container_ = nullptr;
  controls_.clear();
}

Control* ControlContainer::findControl(std::string_view name) const {
  for (Control* control : controls_) {
    if (control->name() == name) return control;
  }
  return nullptr;
}

void ControlContainer::previewKey(const KeyEvent& key) { keyPreview.raise(key); }

}  // namespace vlclientui
