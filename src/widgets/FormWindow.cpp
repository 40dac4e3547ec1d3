#include "widgets/FormWindow.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <utility>

#include "widgets/Text.h"

namespace vlclientui::widgets {

FormWindow::FormWindow(Form& form, const ViewRegistry& views, const PathTexts& paths) : form_(&form) {
  views.build(form.formName(), *this);
  binder_ = new FormBinder(form, *this, views, paths);
  setWindowTitle(toQt(form.caption()));
  captionConnection_ = form.captionChanged.connect([this] { setWindowTitle(toQt(form_->caption())); });
}

FormWindow::~FormWindow() {
  if (form_) retire();
}

void FormWindow::run(QWidget* owner) {
  if (owner && owner != this) setParent(owner, windowFlags());
  setWindowModality(Qt::ApplicationModal);
  QEventLoop loop;
  loop_ = &loop;
  show();
  activateWindow();
  // The first display comes before any control gets the focus.
  form_->windowAppeared();
  if (form_) binder_->startFollowingFocus();
  if (form_) loop.exec();
}

void FormWindow::appear() {
  show();
  if (!form_ || std::exchange(appeared_, true)) return;
  form_->windowAppeared();
  if (form_) binder_->startFollowingFocus();
}

void FormWindow::retire() {
  binder_->release();
  form_->captionChanged.disconnect(captionConnection_);
  form_ = nullptr;
  hide();
  if (loop_) loop_->quit();
}

void FormWindow::reject() {
  if (!form_) return;
  if (form_->cancelButton()) {
    form_->userPressesEscape();
  } else {
    form_->userCloses();
  }
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (form_) form_->userCloses();
  event->setAccepted(form_ == nullptr);
}

}  // namespace vlclientui::widgets
