#include "Windows.h"

#include <algorithm>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Controls.h"

namespace vlclientui::python {
namespace {

void collect(const ControlContainer& container, std::vector<Control*>& found) {
  for (Control* const control : container.controls()) {
    found.push_back(control);
    if (const auto* const hosted = dynamic_cast<const HostedControl*>(control)) collect(*hosted, found);
  }
}

std::vector<Control*> allControls(const Form& form) {
  std::vector<Control*> found;
  collect(form, found);
  return found;
}

/// Windows inside a form that pages can stand in.
class Places {
 public:
  Places(const Form& form, Toolkit& toolkit) : form_(form), toolkit_(toolkit) {}

  /// Whether a person sees what stands there.
  [[nodiscard]] bool show(WindowHandle place) const {
    if (place == toolkit_.windowOf(form_)) return metadataSideShows();
    const auto controls = allControls(form_);
    return std::ranges::any_of(controls, [&](const Control* control) {
      if (toolkit_.windowOf(*control) != place) return false;
      return control->visible() && (isSide(*control) || metadataSideShows());
    });
  }

 private:
  static bool isSide(const Control& control) {
    return control.name() == "ServicePropFrame0" || control.name() == "ServicePropFrame1";
  }
  /// The one-window dialog has two sides; views put all but the properties page on the second one.
  [[nodiscard]] bool metadataSideShows() const {
    const Control* const side = form_.findControl("ServicePropFrame1");
    return side == nullptr || side->visible();
  }

  const Form& form_;
  Toolkit& toolkit_;
};

}  // namespace

Window::Window(SessionPtr session, Form& form)
    : session_(std::move(session)), form_(form.weak_from_this()), windowNumber_(form.windowNumber()) {}

bool Window::isOpen() const {
  const auto form = form_.lock();
  return form && form->loaded() && form->windowNumber() == windowNumber_;
}

std::shared_ptr<Form> Window::form() const {
  session_->use();
  auto form = form_.lock();
  if (!form || !form->loaded() || form->windowNumber() != windowNumber_) {
    throw RuntimeFailure("The window has closed", FailureKind::MissingObject);
  }
  return form;
}

ControlView Window::control(const std::string& name) const {
  ControlView view(*this, name);
  static_cast<void>(view.control());
  return view;
}

std::vector<ControlView> Window::controls() const {
  std::vector<ControlView> views;
  for (const Control* const control : allControls(*form())) views.emplace_back(*this, control->name());
  return views;
}

std::vector<Page> Window::pages() const {
  const auto form = this->form();
  const Places places(*form, *session_->host().platform->toolkit);
  std::vector<Page> pages;
  for (headless::HeadlessSurface* const surface : session_->surfaces().surfaces()) {
    const bool shows = surface->window() != 0 && surface->visible() && places.show(surface->parent());
    if (shows) pages.emplace_back(session_, *surface, form);
  }
  return pages;
}

std::shared_ptr<Control> ControlView::control() const {
  auto form = window_.form();
  const auto controls = allControls(*form);
  const auto found = std::ranges::find(controls, name_, &Control::name);
  if (found == controls.end()) {
    throw RuntimeFailure(form->formName() + " has no control " + name_, FailureKind::InvalidIndex);
  }
  return {std::move(form), *found};
}

void ControlView::failKind(const char* can) const {
  throw RuntimeFailure("The control " + name_ + " cannot " + can, FailureKind::TypeMismatch);
}

bool Page::isOpen() const {
  const auto& living = session_->surfaces().surfaces();
  return std::ranges::count(living, surface_) != 0;
}

headless::HeadlessSurface& Page::turnedTo() const {
  static_cast<void>(surface());
  if (const auto form = form_.lock()) form->userFocusesElsewhere();
  return surface();
}

headless::HeadlessSurface& Page::surface() const {
  session_->use();
  if (!isOpen()) throw RuntimeFailure("The page has gone", FailureKind::MissingObject);
  return *surface_;
}

}  // namespace vlclientui::python
