#include "widgets/FormWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLayout>
#include <QPushButton>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "widgets/Text.h"

namespace vlclientui::widgets {

namespace {

bool isInput(const QEvent& event) {
  switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::ContextMenu:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace

FormWindow::FormWindow(Form& form, const ViewRegistry& views, const PathTexts& paths) : form_(&form) {
  views.build(form.formName(), *this);
  designHeight_ = minimumHeight();
  binder_ = new FormBinder(form, *this, views, paths);
  setWindowTitle(toQt(form.caption()));
  showDefaultButton();
  qApp->installEventFilter(this);
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

void FormWindow::showDefaultButton() {
  const Button* const button = form_->defaultButton();
  if (!button) return;
  if (auto* const shown = qobject_cast<QPushButton*>(binder_->widgetOf(*button))) shown->setDefault(true);
}

bool FormWindow::event(QEvent* event) {
  const bool handled = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) fitHeight();
  return handled;
}

/// A layout leaves texts of several lines out of the least height of its window. A page in a window of the
/// host has the place that it is given.
void FormWindow::fitHeight() {
  if (!layout() || !isWindow()) return;
  const bool wraps = layout()->hasHeightForWidth();
  const int least = wraps ? layout()->minimumHeightForWidth(width()) : layout()->minimumSize().height();
  setMinimumHeight(std::max(designHeight_, least));
}

void FormWindow::reject() {
  if (form_ && !form_->userPressesEscape()) form_->userCloses();
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (!form_ || form_->acceptsInput() || !isInput(*event)) return QDialog::eventFilter(watched, event);
  const auto* const widget = qobject_cast<const QWidget*>(watched);
  return watched == windowHandle() || (widget && (widget == this || isAncestorOf(widget)));
}

/// Enter that no widget has used, as where the window itself holds the focus.
void FormWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) return QDialog::keyPressEvent(event);
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  event->setAccepted(plain && form_ && form_->userPressesEnter());
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (form_) form_->userCloses();
  event->setAccepted(form_ == nullptr);
}

}  // namespace vlclientui::widgets
