// What holds of every window on the smallest screen that the programs are made for.

#include <QDockWidget>
#include <QFont>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>
#include <QToolButton>

#include "apps/viewer/EveryWindowFixture.h"
#include "widgets/ScrollPlace.h"

namespace vlclientui::test {
namespace {

using widgets::ScrollPlace;

// A frame and a title take their part of the screen.
QSize room() { return QGuiApplication::primaryScreen()->availableSize() - QSize(8, 32); }

std::string describe(const QWidget& widget) {
  return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
}

/// The nearest widget around this one that scrolls; null for none.
const QAbstractScrollArea* scrollerOf(const QWidget& widget, const QWidget& window) {
  for (const QWidget* above = widget.parentWidget(); above != nullptr && above != &window;
       above = above->parentWidget()) {
    if (const auto* const scroller = qobject_cast<const QAbstractScrollArea*>(above)) return scroller;
  }
  return nullptr;
}

bool isTextCutOff(const QWidget& widget) {
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
    if (label->width() < label->minimumSizeHint().width()) return true;
    return label->wordWrap() && label->height() < label->heightForWidth(label->width());
  }
  const auto* const button = qobject_cast<const QPushButton*>(&widget);
  if (button == nullptr) return false;
  const int text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width();
  return button->width() < text + 8 || button->height() < button->minimumSizeHint().height();
}

/// A main window parks panes that stand behind another one, and the tabs of closed ones, beyond its edge.
bool isParked(const QWidget& widget, const QWidget& window) {
  if (qobject_cast<const QTabBar*>(&widget) && widget.parentWidget() == &window) return true;
  for (const QWidget* part = &widget; part != nullptr && part != &window; part = part->parentWidget()) {
    if (qobject_cast<const QDockWidget*>(part) && !window.rect().intersects(part->geometry())) return true;
  }
  return false;
}

/// What a place scrolls away is not cut off, as long as all of the place's content can be scrolled to.
bool isCutOff(const QWidget& widget, const QWidget& window) {
  if (isParked(widget, window)) return false;
  const QWidget* around = &window;
  if (const auto* const scroller = scrollerOf(widget, window)) {
    const auto* const place = dynamic_cast<const ScrollPlace*>(scroller);
    if (place == nullptr || place->widget() == &widget || !place->widget()->isAncestorOf(&widget))
      return false;
    around = place->widget();
  }
  const QRect place(widget.mapTo(around, QPoint()), widget.size());
  return !around->rect().contains(place) || isTextCutOff(widget);
}

void layOut() {
  // After a change of size layouts run one after the other, from the outside in.
  for (int level = 0; level < 5; ++level) QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

/// Whether each widget in a place that scrolls is seen as a whole once the keyboard has led to it.
void expectFocusToScroll(QWidget& window, const std::string& name) {
  QWidget* const before = window.focusWidget();
  for (auto* const place : window.findChildren<QScrollArea*>()) {
    EXPECT_EQ(place->horizontalScrollBar()->maximum(), 0) << name << ": " << describe(*place);
    for (auto* const widget : place->widget()->findChildren<QWidget*>()) {
      if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible() || !widget->isEnabled()) continue;
      // What scrolls by itself brings its own current row or line into view.
      if (scrollerOf(*widget, window) != place || qobject_cast<QAbstractScrollArea*>(widget)) continue;
      widget->setFocus(Qt::TabFocusReason);
      const QRect seen(widget->mapTo(place->viewport(), QPoint()), widget->size());
      EXPECT_TRUE(place->viewport()->rect().contains(seen))
          << name << ": " << describe(*widget) << " " << seen.left() << " to " << seen.right() << ", "
          << seen.top() << " to " << seen.bottom() << " in " << place->viewport()->width() << " x "
          << place->viewport()->height() << " at " << place->verticalScrollBar()->value() << " of "
          << place->verticalScrollBar()->maximum();
    }
  }
  if (before != nullptr) before->setFocus();
}

// Named after the screen: OnAScreenOf1024By700.
class ScreenTest : public EveryWindowFixture {};

TEST_F(ScreenTest, EveryWindowShowsEverything) {
  ASSERT_EQ(QGuiApplication::primaryScreen()->availableSize(), QSize(VL_SMALL_WIDTH, VL_SMALL_HEIGHT));
  int scrolled = 0;
  visitEveryWindow([&scrolled](QWidget& window, const QString& name) {
    if (window.isWindow() && name.startsWith("viewer")) window.resize(room());
    layOut();
    EXPECT_LE(window.width(), room().width()) << name.toStdString();
    EXPECT_LE(window.height(), room().height()) << name.toStdString();
    const auto* const moreTools = window.findChild<QToolButton*>("qt_toolbar_ext_button");
    EXPECT_FALSE(moreTools != nullptr && moreTools->isVisible()) << name.toStdString();
    for (const QWidget* const widget : shownIn(window)) {
      EXPECT_FALSE(isCutOff(*widget, window)) << name.toStdString() << ": " << describe(*widget);
    }
    for (const auto* const place : window.findChildren<QScrollArea*>())
      scrolled += place->verticalScrollBar()->maximum() > 0 ? 1 : 0;
  });
  EXPECT_GT(scrolled, 0);
}

TEST_F(ScreenTest, EveryWindowScrollsToWhatTheKeyboardLeadsTo) {
  visitEveryWindow([](QWidget& window, const QString& name) {
    if (window.isWindow() && name.startsWith("viewer")) window.resize(room());
    layOut();
    expectFocusToScroll(window, name.toStdString());
  });
}

}  // namespace
}  // namespace vlclientui::test

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" VL_SMALL_SCREEN);
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
