#include "widgets/QtSurface.h"

#include <QVBoxLayout>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "widgets/HelpKey.h"
#include "widgets/PageView.h"
#include "widgets/PageWindow.h"
#include "widgets/RowListView.h"
#include "widgets/Text.h"
#include "widgets/TreeView.h"

namespace vlclientui::widgets {

namespace {

using engine::SurfaceListener;

/// Keeps the listener from being called during a scope.
class Quiet {
 public:
  explicit Quiet(const std::shared_ptr<bool>& quiet) : quiet_(quiet), before_(std::exchange(*quiet, true)) {}
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;
  ~Quiet() { *quiet_ = before_; }

 private:
  std::shared_ptr<bool> quiet_;
  bool before_;
};

}  // namespace

QtSurface::QtSurface(std::shared_ptr<QtToolkit> toolkit, std::weak_ptr<engine::SurfaceListener> listener)
    : toolkit_(std::move(toolkit)), listener_(std::move(listener)) {}

/// Calls the listener, if it still lives. Does not refer to the surface, which the call may destroy.
QtSurface::Send QtSurface::sender() const {
  const std::weak_ptr<QtToolkit> weakToolkit = toolkit_;
  return [weakToolkit, listener = listener_, quiet = quiet_](
             QWidget* window, const std::function<void(SurfaceListener&)>& news) {
    const auto toolkit = weakToolkit.lock();
    const auto locked = listener.lock();
    if (toolkit && locked && !*quiet) toolkit->runAct(window, [&] { news(*locked); });
  };
}

PageListener QtSurface::pageListener() const {
  const auto send = [tell = sender(), place = QPointer<QWidget>(frame_)](
                        const std::function<void(SurfaceListener&)>& news) { tell(place.data(), news); };
  PageListener listener;
  listener.edited = [send](const std::string& path, const std::string& text) {
    send([&](SurfaceListener& l) { l.fieldEdited(path, text); });
  };
  listener.left = [send](const std::string& path) { send([&](SurfaceListener& l) { l.fieldLeft(path); }); };
  listener.pressed = [send](const std::string& path) {
    send([&](SurfaceListener& l) { l.buttonPressed(path); });
  };
  listener.help = [send](const std::string& path) {
    bool helped = false;
    send([&](SurfaceListener& l) { helped = l.helpAsked(path); });
    return helped;
  };
  return listener;
}

QtSurface::~QtSurface() {
  detach();
  // An event of the frame may still be running.
  if (frame_) frame_->deleteLater();
}

QWidget& QtSurface::frame() {
  if (!frame_) {
    frame_ = new QWidget;
    auto* layout = new QVBoxLayout(frame_);
    layout->setContentsMargins(0, 0, 0, 0);
  }
  return *frame_;
}

void QtSurface::attach(WindowHandle parent, const std::string& title) {
  const Quiet quiet(quiet_);
  QWidget* window = toolkit_->windows().widgetOf(parent);
  if (!window) throw RuntimeFailure("There is no window " + std::to_string(parent));
  QWidget& place = surfacePlaceIn(*window);
  frame().setParent(&place);
  frame().setWindowTitle(toQt(title));
  if (place.layout()) place.layout()->addWidget(&frame());
  applyPlace();
  applyTabOrder();
  frame().setVisible(visible_);
}

void QtSurface::detach() {
  const Quiet quiet(quiet_);
  if (!frame_ || !frame_->parentWidget()) return;
  moveFocusOut();
  frame_->hide();
  frame_->setParent(nullptr);
}

/// Otherwise Qt would pass the focus to some control, as if a person had moved it.
void QtSurface::moveFocusOut() {
  QWidget* window = frame_->window();
  const QWidget* holder = window->focusWidget();
  if (holder && frame_->isAncestorOf(holder)) window->setFocus(Qt::OtherFocusReason);
}

void QtSurface::setGeometry(const engine::PixelRectangle& place) {
  place_ = place;
  applyPlace();
}

void QtSurface::applyPlace() {
  if (!frame_ || !frame_->parentWidget() || frame_->parentWidget()->layout()) return;
  frame_->setGeometry(place_.left, place_.top, place_.width, place_.height);
}

void QtSurface::setVisible(bool visible) {
  const Quiet quiet(quiet_);
  visible_ = visible;
  if (frame_ && frame_->parentWidget()) frame_->setVisible(visible);
}

void QtSurface::setPageScrollBar(bool shown) {
  pageScrollBar_ = shown;
  applyScrollBar();
}

void QtSurface::applyScrollBar() {
  if (page_)
    page_->setVerticalScrollBarPolicy(pageScrollBar_ ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

/// An event of the former content may still be running.
void QtSurface::show(QWidget* content) {
  if (content_) {
    content_->hide();
    content_->deleteLater();
  }
  list_ = nullptr;
  page_ = nullptr;
  content_ = content;
  frame().layout()->addWidget(content);
}

/// Gives the content its place in the tab order: right behind the place that it stands in. In a window of its
/// own it comes last, as everything new does.
void QtSurface::applyTabOrder() {
  QWidget* place = frame().parentWidget();
  if (!place || !content_ || place->isWindow()) return;
  // setTabOrder ignores a widget that takes no focus; and behind a tree it would be behind the tree's
  // viewport, which may stand anywhere.
  const Qt::FocusPolicy policy = place->focusPolicy();
  place->setFocusPolicy(Qt::TabFocus);
  QWidget::setTabOrder(place, content_);
  place->setFocusPolicy(policy);
}

void QtSurface::showList(std::shared_ptr<const engine::ListModel> list) {
  const Quiet quiet(quiet_);
  const auto send = [tell = sender(), place = QPointer<QWidget>(&frame())](
                        const std::function<void(SurfaceListener&)>& news) { tell(place.data(), news); };
  auto* view = new RowListView(
      std::move(list), {[send](std::size_t row) { send([row](SurfaceListener& l) { l.rowClicked(row); }); },
                        [send](std::size_t row) { send([row](SurfaceListener& l) { l.rowActivated(row); }); },
                        [send] { send([](SurfaceListener& l) { l.backspacePressed(); }); }});
  show(view);
  list_ = view;
  applyTabOrder();
}

void QtSurface::updateList(std::shared_ptr<const engine::ListModel> list) {
  const Quiet quiet(quiet_);
  if (list_) {
    list_->setList(std::move(list));
  } else {
    showList(std::move(list));
  }
}

void QtSurface::showForm(std::shared_ptr<const engine::FormModel> form) {
  const Quiet quiet(quiet_);
  frame();
  auto* view = new PageView(*form, pageListener());
  show(view);
  page_ = view;
  applyScrollBar();
  applyTabOrder();
}

void QtSurface::updateForm(std::shared_ptr<const engine::FormModel> form) {
  const Quiet quiet(quiet_);
  if (!page_) return showForm(std::move(form));
  if (page_->setPage(*form) == PageView::Change::Layout && page_ == content_) applyTabOrder();
}

void QtSurface::showTree(std::shared_ptr<engine::TreeModel> tree) {
  const Quiet quiet(quiet_);
  show(new TreeView(std::move(tree)));
  applyTabOrder();
}

void QtSurface::runWindow(const std::string& caption, engine::WindowFrame frame,
                          std::shared_ptr<const engine::FormModel> form) {
  const QPointer<PageWindow> window =
      new PageWindow(caption, frame, *form, pageListener(), QtToolkit::activeWindow());
  page_ = &window->page();
  if (const std::string help = helpPageAround(window->parentWidget()); !help.empty()) {
    openHelpByKey(*window, help);
  }
  window->exec();
  delete window.data();
}

QtSurfaceFactory::QtSurfaceFactory(std::shared_ptr<QtToolkit> toolkit) : toolkit_(std::move(toolkit)) {}

std::unique_ptr<engine::Surface> QtSurfaceFactory::createSurface(
    std::weak_ptr<engine::SurfaceListener> listener) {
  return std::make_unique<QtSurface>(toolkit_, std::move(listener));
}

}  // namespace vlclientui::widgets
