#include "contracts/controls/Visit.h"

#include <utility>

#include "contracts/controls/Form.h"

namespace vlclientui {

namespace {

/// The innermost visit of this thread.
const Visit*& innermost() {
  thread_local const Visit* visit = nullptr;
  return visit;
}

}  // namespace

Visit::Visit() : outer_(std::exchange(innermost(), this)) {}

Visit::Visit(Form& form)
    : keptAlive_(form.weak_from_this().lock()),
      form_(&form),
      window_(form.windowNumber()),
      outer_(std::exchange(innermost(), this)) {
  form.beginEvent();
}

Visit::~Visit() {
  innermost() = outer_;
  if (form_) form_->endEvent();
}

bool Visit::stands() const { return !form_ || form_->windowNumber() == window_; }

void Visit::lookAgain() {
  const Visit* const visit = innermost();
  if (visit && !visit->stands()) throw WindowGone{};
}

void Visit::lookAgainIn(const Form& form) {
  const Visit* const visit = innermost();
  if (visit && visit->form_ == &form) lookAgain();
}

}  // namespace vlclientui
