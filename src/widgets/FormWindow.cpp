#include "widgets/FormWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLayout>
#include <QPushButton>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <utility>

#include "contracts/Toolkit.h"
#include "widgets/HelpKey.h"
#include "widgets/Mnemonics.h"
#include "widgets/ScrollPlace.h"
#include "widgets/Text.h"
#include "widgets/ValueLabel.h"

namespace vlclientui::widgets {

namespace {

constexpr int usualFrame = 32;  ///< of a title bar, in pixels, before the real one is known
constexpr int usualSides = 8;   ///< of the edges beside it

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

bool lies(const QWidget& widget, const QLayout* layout) {
  for (int i = 0; layout && i < layout->count(); ++i) {
    QLayoutItem& item = *layout->itemAt(i);
    if (item.widget() == &widget || lies(widget, item.layout())) return true;
  }
  return false;
}

}  // namespace

FormWindow::FormWindow(Form& form, const ViewRegistry& views, const PathTexts& paths)
    : form_(&form), paths_(paths) {
  views.build(form.formName(), *this);
  designHeight_ = minimumHeight();
  if (const std::string page = helpPageAround(this); !page.empty()) openHelpByKey(*this, page);
  binder_ = new FormBinder(form, *this, views, paths);
  focus_ = new WindowFocus(form, *this);
  setWindowTitle(toQt(paths.shown(form.caption())));
  showDefaultButton();
  addNotice();
  qApp->installEventFilter(this);
  captionConnection_ =
      form.captionChanged.connect([this] { setWindowTitle(toQt(paths_.shown(form_->caption()))); });
  noticeConnection_ = form.noticeChanged.connect([this] { showNotice(); });
  placeConnection_ = form.placeChanged.connect([this] { moveToPlace(); });
}

FormWindow::~FormWindow() {
  Form* const left = form_;
  if (!left) return;
  retire();
  left->windowGone();
}

void FormWindow::run(QWidget* owner) {
  if (owner && owner != this) setParent(owner, windowFlags());
  setWindowModality(Qt::ApplicationModal);
  QEventLoop loop;
  loop_ = &loop;
  const QPointer<FormWindow> self(this);
  show();
  activateWindow();
  // Appearing comes before any control gets the focus.
  tellAppearance();
  if (self && form_) loop.exec();
}

void FormWindow::appear() {
  moveToPlace();
  show();
  tellAppearance();
}

void FormWindow::tellAppearance() {
  if (!form_ || std::exchange(appeared_, true)) return;
  const QPointer<FormWindow> self(this);
  form_->windowAppeared(isWindow() ? Form::FirstFocus::Given : Form::FirstFocus::LeftAlone);
  if (!self || !form_) return;
  binder_->startFollowingFocus();
  focus_->start();
}

void FormWindow::standIn(QWidget* parent) {
  const WindowFocus::Pause pause(*focus_);
  setParent(parent, parent ? Qt::Widget : Qt::Dialog);
  moveToPlace();
}

/// Moves the window only where the form was given a place and no layout of the host decides.
void FormWindow::moveToPlace() {
  if (!form_ || (form_->left() == 0 && form_->top() == 0)) return;
  if (parentWidget() && lies(*this, parentWidget()->layout())) return;
  const Toolkit& toolkit = form_->toolkit();
  move(static_cast<int>(std::lround(form_->left() / toolkit.twipsPerPixelX())),
       static_cast<int>(std::lround(form_->top() / toolkit.twipsPerPixelY())));
}

void FormWindow::retire() {
  binder_->release();
  focus_->release();
  form_->captionChanged.disconnect(captionConnection_);
  form_->noticeChanged.disconnect(noticeConnection_);
  form_->placeChanged.disconnect(placeConnection_);
  form_ = nullptr;
  hide();
  if (loop_) loop_->quit();
}

void FormWindow::showDefaultButton() {
  const Button* const button = form_->defaultButton();
  if (!button) return;
  if (auto* const shown = qobject_cast<QPushButton*>(binder_->widgetOf(*button))) shown->setDefault(true);
}

/// Below all else, above the buttons' edge of the window, in the colors of the other texts.
void FormWindow::addNotice() {
  auto* const rows = qobject_cast<QBoxLayout*>(layout());
  if (!rows) return;
  notice_ = new ValueLabel(this);
  notice_->setObjectName("formNotice");
  notice_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  notice_->hide();
  rows->addWidget(notice_);
}

void FormWindow::showNotice() {
  if (!notice_ || !form_) return;
  const std::string& reason = form_->notice();
  notice_->setValue(reason.empty() ? QString() : tr("Not done: %1").arg(toQt(paths_.shown(reason))));
  notice_->setAccessibleName(notice_->value());
  notice_->setVisible(!reason.empty());
  if (reason.empty()) return;
  QAccessibleEvent told(notice_, QAccessible::Alert);
  QAccessible::updateAccessibility(&told);
}

bool FormWindow::event(QEvent* event) {
  const bool handled = QDialog::event(event);
  if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) fitHeight();
  return handled;
}

/// What a place that scrolls could do without counts too, as long as the screen has room for it.
int FormWindow::wantedHeight() const {
  const bool wraps = layout()->hasHeightForWidth();
  int height = wraps ? layout()->minimumHeightForWidth(width()) : layout()->minimumSize().height();
  // A page scrolls by itself and is no such place. Qt knows both as scroll areas only.
  for (const QScrollArea* const area : findChildren<QScrollArea*>()) {
    if (const auto* const place = dynamic_cast<const ScrollPlace*>(area)) height += place->missingHeight();
  }
  return std::max(designHeight_, height);
}

int FormWindow::heightOfScreen() const {
  const int frame = std::max(frameGeometry().height() - height(), usualFrame);
  return screen()->availableGeometry().height() - frame;
}

int FormWindow::widthOfScreen() const {
  const int frame = std::max(frameGeometry().width() - width(), usualSides);
  return std::max(minimumSizeHint().width(), screen()->availableGeometry().width() - frame);
}

/// A window's least height does not count texts of several lines, so they are added here. A page in a window
/// of the host keeps the place that it is given.
void FormWindow::fitHeight() {
  if (!layout() || !isWindow()) return;
  const int before = height();
  setMinimumHeight(std::min(wantedHeight(), heightOfScreen()));
  if (height() > before && isVisible()) stayOnScreen();
}

void FormWindow::stayOnScreen() {
  const QRect room = screen()->availableGeometry();
  const int below = frameGeometry().bottom() - room.bottom();
  if (below > 0) move(pos().x(), std::max(room.top(), pos().y() - below));
}

void FormWindow::reject() {
  if (form_ && isWindow() && !form_->userPressesEscape()) form_->userCloses();
}

bool FormWindow::eventFilter(QObject* watched, QEvent* event) {
  if (!form_ || form_->acceptsInput() || !isInput(*event)) return QDialog::eventFilter(watched, event);
  const auto* const widget = qobject_cast<const QWidget*>(watched);
  return watched == windowHandle() || (widget && (widget == this || isAncestorOf(widget)));
}

/// Enter that no widget used, for example while the window itself has the focus. Inside a window of the host,
/// Enter and Escape belong to the host.
void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (!isWindow()) return QWidget::keyPressEvent(event);
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) return QDialog::keyPressEvent(event);
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  event->setAccepted(plain && form_ && form_->userPressesEnter());
}

// What QDialog does beyond QWidget, such as centering on its owner, is for top-level windows only.

void FormWindow::setVisible(bool visible) {
  isWindow() ? QDialog::setVisible(visible) : QWidget::setVisible(visible);
}

void FormWindow::showEvent(QShowEvent* event) {
  if (isWindow() && !event->spontaneous())
    resize(std::min(width(), widthOfScreen()), std::min(height(), heightOfScreen()));
  isWindow() ? QDialog::showEvent(event) : QWidget::showEvent(event);
  settleMnemonics(*this);
  // A host that lays the window out itself shows it itself, too.
  if (!appeared_)
    QMetaObject::invokeMethod(
        this, [this] { tellAppearance(); }, Qt::QueuedConnection);
}

void FormWindow::closeEvent(QCloseEvent* event) {
  if (form_) form_->userCloses();
  event->setAccepted(form_ == nullptr);
}

}  // namespace vlclientui::widgets
