// The viewer by the keyboard alone.
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <QToolBar>

#include "apps/viewer/EveryWindowFixture.h"
#include "viewer/window/Appearance.h"
#include "widgets/Mnemonics.h"

namespace vlclientui::test {
namespace {

using viewer::person::press;

/// The texts of an entry of the menus and of those on the way to it: some menus are made anew when they open.
using MenuWay = QStringList;

void listWays(const QList<QAction*>& entries, const MenuWay& before, std::vector<MenuWay>& ways) {
  for (QAction* const entry : entries) {
    if (entry->isSeparator() || !entry->isEnabled()) continue;
    const MenuWay way = before + MenuWay{entry->text()};
    if (entry->menu() == nullptr) {
      ways.push_back(way);
      continue;
    }
    emit entry->menu()->aboutToShow();
    listWays(entry->menu()->actions(), way, ways);
  }
}

class ByKeyboard : public EveryWindowFixture {
 protected:
  [[nodiscard]] std::vector<MenuWay> ways() const {
    std::vector<MenuWay> all;
    listWays(window_->menuBar()->actions(), {}, all);
    return all;
  }
  [[nodiscard]] static QMenu& popup() {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) throw viewer::person::Astray("no menu is open");
    return *menu;
  }
  static QAction* goTo(const QString& entry) {
    const auto isThere = [&entry] {
      const QAction* const active = popup().activeAction();
      return active != nullptr && active->text() == entry;
    };
    for (int step = 0; step < 60 && !isThere(); ++step) QTest::keyClick(&popup(), Qt::Key_Down);
    if (!isThere()) throw viewer::person::Astray("no key leads to " + entry.toStdString());
    return popup().activeAction();
  }
  /// A window counts as active while a popup or a window over it has the keys, and a menu that has just shut
  /// may get them once more.
  void comeToFront() {
    QCoreApplication::processEvents();
    const auto isInFront = [this] {
      const bool hasKeys = QGuiApplication::focusWindow() == window_->windowHandle();
      if (!hasKeys) window_->activateWindow();
      return hasKeys && QApplication::activeWindow() == window_.get();
    };
    if (!QTest::qWaitFor(isInFront)) throw viewer::person::Astray("the window is not in front");
  }
  /// Opens the menus by Alt, a letter and the arrows, and presses Enter on the entry. @returns whether that
  /// chose it.
  bool follow(const MenuWay& way) {
    comeToFront();
    window_->findChild<QListView*>("ServiceList")->setFocus();
    const int letter = widgets::letterOf(way.front()).toUpper().unicode();
    QTest::keyClick(window_.get(), static_cast<Qt::Key>(letter), Qt::AltModifier);
    for (const QString& step : way.mid(1, way.size() - 2)) {
      goTo(step);
      QTest::keyClick(&popup(), Qt::Key_Right);
    }
    bool isChosen = false;
    QObject context;
    QObject::connect(goTo(way.back()), &QAction::triggered, &context, [&isChosen] { isChosen = true; });
    QTest::keyClick(&popup(), Qt::Key_Return);
    return isChosen;
  }
  /// Leaves whatever window opens.
  void escapeFromWindows() {
    QObject::connect(&escaping_, &QTimer::timeout, [] {
      if (QWidget* const open = QApplication::activeModalWidget()) QTest::keyClick(open, Qt::Key_Escape);
    });
    escaping_.start(30);
  }
  /// With all that an action needs.
  void makeEverythingPossible() {
    pickOverlaps();
    map().setDrawing(true);
    viewer::person::drag(map(), {0.25, 0.25}, {0.75, 0.5});
    QCoreApplication::processEvents();
  }

  QTimer escaping_;
};

/// A menu by its title.
class ByKeyboardIn : public ByKeyboard, public testing::WithParamInterface<const char*> {
 protected:
  ~ByKeyboardIn() override { viewer::useAppearance(viewer::Appearance::Desktop); }

  /// The help opens a browser, and the end is the end.
  [[nodiscard]] static bool isToChoose(const MenuWay& way) {
    const bool isHelp = way.front() == "&Help" && !way.back().startsWith("&About");
    return way.front() == GetParam() && way.back() != "&Quit" && !isHelp;
  }
};

TEST_P(ByKeyboardIn, EveryEntryOfTheMenuCanBeChosen) {
  makeEverythingPossible();
  escapeFromWindows();
  int chosen = 0;
  for (const MenuWay& way : ways()) {
    if (!isToChoose(way)) continue;
    SCOPED_TRACE(way.join(" > ").toStdString());
    ASSERT_NO_THROW(EXPECT_TRUE(follow(way)));
    ++chosen;
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activeModalWidget() == nullptr; }, 20'000));
    // The last one of its menu.
    if (window_->services().rowCount() == 0) break;
    map().setDrawing(false);
    QTest::qWait(150);  // panes fill themselves
  }
  EXPECT_GE(chosen, std::string(GetParam()) == "&Help" ? 1 : 5);
}

INSTANTIATE_TEST_SUITE_P(Menus, ByKeyboardIn, testing::Values("&File", "&Services", "&View", "&Help"));

TEST_F(ByKeyboard, EveryActionOfTheWindowStandsInAMenu) {
  pickOverlaps();
  QSet<QString> inMenus;
  for (const MenuWay& way : ways()) inMenus.insert(way.back());
  for (const auto* const bar : window_->findChildren<QToolBar*>())
    for (const QAction* each : bar->actions())
      EXPECT_TRUE(each->isSeparator() || !each->isEnabled() || inMenus.contains(each->text()))
          << each->text().toStdString();
  for (const QAction* each : window_->findChild<QListView*>("ServiceList")->actions()) {
    if (each->isSeparator() || each->menu() != nullptr || !each->isEnabled()) continue;
    EXPECT_TRUE(inMenus.contains(each->text())) << each->text().toStdString();
  }
}

TEST_F(ByKeyboard, TheLastEntryEndsTheProgram) {
  pickOverlaps();
  EXPECT_EQ(action("Quit").shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
  EXPECT_TRUE(follow({"&File", "&Quit"}));
  EXPECT_FALSE(window_->isVisible());
}

TEST_F(ByKeyboard, TabGoesThroughTheMainWindowFromLeftToRight) {
  pickOverlaps();
  QWidget* const list = window_->findChild<QListView*>("ServiceList");
  list->setFocus(Qt::TabFocusReason);
  QStringList order;
  for (int step = 0; step < 12 && !order.contains(QApplication::focusWidget()->objectName()); ++step) {
    order += QApplication::focusWidget()->objectName();
    press(*QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(order.front(), "ServiceList");
  EXPECT_TRUE(map().hasFocus() || order.contains(map().objectName())) << order.join(", ").toStdString();
}

/// Widgets that Tab leads to, in its order, beginning with the present one.
std::vector<QWidget*> tabOrderOf(const QWidget& window) {
  std::vector<QWidget*> order;
  const QWidget* const first = window.focusWidget() != nullptr ? window.focusWidget() : &window;
  const QWidget* at = first;
  do {
    at = at->nextInFocusChain();
    auto* const widget = const_cast<QWidget*>(at);
    const bool isReached =
        (widget->focusPolicy() & Qt::TabFocus) && widget->isVisible() && widget->isEnabled();
    if (isReached && widget->window() == &window) order.push_back(widget);
  } while (at != first);
  return order;
}

TEST_F(ByKeyboard, TabReachesEverythingThatCanBeUsedInEveryWindow) {
  visitEveryWindow([](QWidget& window, const QString& name) {
    const std::vector<QWidget*> order = tabOrderOf(window);
    for (QWidget* const widget : shownIn(window)) {
      const bool isUsed = qobject_cast<QAbstractButton*>(widget) || qobject_cast<QLineEdit*>(widget) ||
                          qobject_cast<QComboBox*>(widget) || qobject_cast<QAbstractItemView*>(widget);
      if (!isUsed || !widget->isEnabled() || widget->focusPolicy() == Qt::NoFocus) continue;
      if (widget->focusProxy() != nullptr || qobject_cast<QComboBox*>(widget->parentWidget())) continue;
      EXPECT_TRUE(std::ranges::find(order, widget) != order.end())
          << name.toStdString() << ": " << widget->metaObject()->className() << " "
          << widget->objectName().toStdString();
    }
  });
}

/// Whether the way from one place to the next leads against the reading: to the left in a row, or up where it
/// does not lead to a column further right.
bool leadsBack(const QRect& from, const QRect& to) {
  const int common = std::min(from.bottom(), to.bottom()) - std::max(from.top(), to.top()) + 1;
  const bool isInOneRow = 2 * common > std::min(from.height(), to.height());
  if (isInOneRow) return to.right() <= from.left();
  return to.center().y() < from.center().y() && to.left() <= from.right();
}

/// The widgets of a window in the order in which Tab leads to them, each with its place.
std::vector<std::pair<QWidget*, QRect>> tabWayIn(QWidget& window) {
  std::vector<std::pair<QWidget*, QRect>> way;
  for (QWidget* at = window.nextInFocusChain(); at != &window; at = at->nextInFocusChain()) {
    const bool isReached = (at->focusPolicy() & Qt::TabFocus) && at->isVisible() && at->isEnabled();
    if (!isReached || at->window() != &window || at->focusProxy() != nullptr) continue;
    // Not what is scrolled away, or lies in panes behind others.
    const QRect seen = at->visibleRegion().boundingRect();
    if (!seen.isEmpty()) way.emplace_back(at, seen.translated(at->mapTo(&window, QPoint())));
  }
  return way;
}

std::string nameOf(const QWidget& widget) {
  return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
}

// Once around, it leads back once: from the end to the beginning.
TEST_F(ByKeyboard, TabLeadsThroughEveryWindowAsItIsRead) {
  std::size_t steps = 0;
  visitEveryWindow([&steps](QWidget& window, const QString& name) {
    const auto way = tabWayIn(window);
    std::vector<std::string> back;
    for (std::size_t i = 0; i < way.size(); ++i, ++steps) {
      const auto& [next, place] = way[(i + 1) % way.size()];
      if (leadsBack(way[i].second, place)) back.push_back(nameOf(*way[i].first) + " before " + nameOf(*next));
    }
    EXPECT_LE(back.size(), 1U) << name.toStdString() << ": " << testing::PrintToString(back);
  });
  EXPECT_GT(steps, 200U);
}

}  // namespace
}  // namespace vlclientui::test
