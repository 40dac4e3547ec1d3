#include "widgets/ScrollPlace.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QLayout>
#include <QScrollBar>
#include <algorithm>

namespace vlclientui::widgets {

namespace {

constexpr int leastHeight = 90;
constexpr int focusMargin = 40;  ///< room for a complaint below a field

}  // namespace

ScrollPlace::ScrollPlace(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { follow(now); });
}

/// The widgets inside go later and lose the focus then; nobody is left here to follow it.
ScrollPlace::~ScrollPlace() { disconnect(qApp, nullptr, this, nullptr); }

/// As the scroll area itself counts when it decides whether to scroll.
int ScrollPlace::contentHeight() const {
  const QWidget* const content = widget();
  if (!content) return 0;
  const int least = content->minimumSizeHint().height();
  const bool wraps = content->layout() && content->layout()->hasHeightForWidth();
  return wraps ? std::max(least, content->heightForWidth(viewport()->width())) : least;
}

QSize ScrollPlace::sizeHint() const {
  return widget() ? widget()->sizeHint().expandedTo(minimumSizeHint()) : QScrollArea::sizeHint();
}

QSize ScrollPlace::minimumSizeHint() const {
  if (!widget()) return QScrollArea::minimumSizeHint();
  const int width = widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width();
  return {width, std::min(contentHeight(), leastHeight)};
}

int ScrollPlace::missingHeight() const { return std::max(0, contentHeight() - minimumSizeHint().height()); }

bool ScrollPlace::eventFilter(QObject* watched, QEvent* event) {
  const auto* const box = qobject_cast<QComboBox*>(watched);
  if (box && event->type() == QEvent::Wheel && !box->hasFocus()) {
    event->ignore();
    return true;
  }
  const bool handled = QScrollArea::eventFilter(watched, event);
  if (watched == widget() && event->type() == QEvent::LayoutRequest) {
    leaveWheelToScrolling();
    updateGeometry();
  }
  return handled;
}

/// The wheel neither turns a combo box nor gives it the focus.
void ScrollPlace::leaveWheelToScrolling() {
  for (QComboBox* const box : widget()->findChildren<QComboBox*>()) {
    if (box->focusPolicy() == Qt::WheelFocus) box->setFocusPolicy(Qt::StrongFocus);
    box->installEventFilter(this);
  }
}

/// Under the mouse nothing moves: a button would not be there any more when it is released.
void ScrollPlace::follow(QWidget* focused) {
  if (!focused || !widget() || !widget()->isAncestorOf(focused)) return;
  const bool isField = (focused->focusPolicy() & Qt::TabFocus) != 0;
  if (!isField || QApplication::mouseButtons() != Qt::NoButton) return;
  ensureWidgetVisible(focused, 0, focusMargin);
}

}  // namespace vlclientui::widgets
