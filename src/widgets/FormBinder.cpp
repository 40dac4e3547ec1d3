#include "widgets/FormBinder.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <algorithm>
#include <exception>
#include <utility>

#include "widgets/ComboBoxNames.h"
#include "widgets/ControlBindings.h"
#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

constexpr const char* hostedViewProperty = "hostedView";

/// Whether a widget belongs to this layout, not to that of a hosted control inside it.
bool standsIn(const QWidget& root, const QWidget& widget) {
  for (const QWidget* parent = widget.parentWidget(); parent && parent != &root;
       parent = parent->parentWidget()) {
    if (parent->property(hostedViewProperty).toBool()) return false;
  }
  return true;
}

std::vector<QWidget*> widgetsNamed(const QWidget& root, const std::string& name) {
  std::vector<QWidget*> found;
  for (QWidget* widget : root.findChildren<QWidget*>(toQt(name))) {
    if (standsIn(root, *widget)) found.push_back(widget);
  }
  return found;
}

bool takesTabFocus(const QWidget& widget, const QWidget& window) {
  return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isEnabled() && !widget.focusProxy() &&
         widget.isVisibleTo(&window) && window.isAncestorOf(&widget);
}

}  // namespace

FormBinder::FormBinder(Form& form, QWidget& window, const ViewRegistry& views, PathTexts paths)
    : QObject(&window), form_(&form), toolkit_(form.toolkit()), window_(window), paths_(std::move(paths)) {
  bind(form, window, views);
  for (QComboBox* const box : window.findChildren<QComboBox*>()) nameByLabel(*box);
  window.installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { focusMoved(now); });
}

FormBinder::~FormBinder() { release(); }

void FormBinder::release() {
  for (ControlBinding* binding : bindings_) binding->release();
  bindings_.clear();
  form_ = nullptr;
}

void FormBinder::bind(const ControlContainer& container, QWidget& root, const ViewRegistry& views) {
  for (Control* control : container.controls()) {
    const auto widgets = widgetsNamed(root, control->name());
    if (widgets.size() != 1 || !widgetSuits(control->kind(), *widgets.front())) continue;
    bindings_.push_back(&bindControl(*this, *control, *widgets.front()));
    if (auto* hosted = dynamic_cast<HostedControl*>(control)) bindHosted(*hosted, *widgets.front(), views);
  }
}

void FormBinder::bindHosted(HostedControl& control, QWidget& slot, const ViewRegistry& views) {
  slot.setProperty(hostedViewProperty, true);
  views.build(control.viewName(), slot);
  bind(control, slot, views);
}

QWidget* FormBinder::widgetOf(const Control& control) const {
  const auto found = std::ranges::find(bindings_, &control, &ControlBinding::control);
  return found == bindings_.end() ? nullptr : &(*found)->widget();
}

void FormBinder::runGuarded(const std::function<void()>& action) {
  Toolkit& toolkit = toolkit_;
  const QPointer<FormBinder> self(this);
  ++acts_;
  try {
    action();
  } catch (const std::exception& failure) {
    toolkit.reportFailure(failure.what());
  }
  if (self) --acts_;
}

void FormBinder::restoreFocus() {
  if (!form_) return;
  const Control* const holder = form_->focusedControl();
  QWidget* const widget = holder ? widgetOf(*holder) : nullptr;
  const Mirroring mirroring(*this);
  (widget ? *widget : window_).setFocus(Qt::OtherFocusReason);
}

void FormBinder::parkFocus(QWidget& leaving) {
  const QWidget* holder = window_.window()->focusWidget();
  if (!holder || (holder != &leaving && !leaving.isAncestorOf(holder))) return;
  parkedAt_ = &leaving;
  window_.setFocus(Qt::OtherFocusReason);
}

void FormBinder::focusMoved(QWidget* now) {
  if (!form_ || !followsFocus_ || isMirroring()) return;
  if (!now || now == &window_ || !window_.isAncestorOf(now) || belongsToControl(*now)) return;
  runGuarded([this] { form_->userFocusesElsewhere(); });
}

bool FormBinder::belongsToControl(const QWidget& widget) const {
  return std::ranges::any_of(bindings_, [&widget](const ControlBinding* binding) {
    const Control* control = binding->control();
    const bool holdsOthers = control->kind() == ControlKind::Hosted || control->kind() == ControlKind::Frame;
    return !holdsOthers && (&binding->widget() == &widget || binding->widget().isAncestorOf(&widget));
  });
}

bool FormBinder::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &window_ && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Tab || key == Qt::Key_Backtab) return moveOnFromParkedFocus(key == Qt::Key_Tab);
  }
  return QObject::eventFilter(watched, event);
}

bool FormBinder::moveOnFromParkedFocus(bool forward) {
  if (!parkedAt_ || window_.window()->focusWidget() != &window_) return false;
  QWidget* next = parkedAt_;
  do {
    next = forward ? next->nextInFocusChain() : next->previousInFocusChain();
  } while (next != parkedAt_ && !takesTabFocus(*next, *window_.window()));
  if (next == parkedAt_) return false;
  next->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

std::vector<std::string> missingWidgets(const ControlContainer& container, const QWidget& root) {
  std::vector<std::string> missing;
  for (const Control* control : container.controls()) {
    const auto widgets = widgetsNamed(root, control->name());
    if (widgets.size() != 1 || !widgetSuits(control->kind(), *widgets.front())) {
      missing.push_back(control->name());
    } else if (const auto* hosted = dynamic_cast<const HostedControl*>(control)) {
      const auto inside = missingWidgets(*hosted, *widgets.front());
      missing.insert(missing.end(), inside.begin(), inside.end());
    }
  }
  return missing;
}

}  // namespace vlclientui::widgets
