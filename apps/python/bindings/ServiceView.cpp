#include "ServiceView.h"

namespace vlclientui::python {

bool goesOn(const Reference& progress, double share) {
  if (!progress) return true;
  const Locked lock;
  try {
    const py::object answer = objectOf(progress)(share);
    return answer.is_none() || isTrue(answer);
  } catch (py::error_already_set& raised) {
    failAs(raised, "the progress function");
  }
}

void ServiceView::setProgress(const py::object& progress) {
  auto held = std::make_shared<Reference>(progress.is_none() ? Reference() : referenceTo(progress));
  use()->setProgress([held](double share) { return goesOn(*held, share); });
  progress_ = std::move(held);
}

std::vector<py::handle> ServiceView::heldObjects() const {
  return progress_ && *progress_ ? std::vector{objectOf(*progress_)} : std::vector<py::handle>();
}

void ServiceView::forgetObjects() {
  if (progress_) progress_->reset();
}

}  // namespace vlclientui::python
