// A form's window in a window of the host.

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/Toolkit.h"
#include "contracts/controls/Controls.h"
#include "contracts/controls/Form.h"
#include "support/TestSystem.h"
#include "widgets/QtToolkit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

/// A page for tests: two boxes and a button. It tells what comes to it.
class Page : public Form {
 public:
  struct Controls {
    explicit Controls(Page& form)
        : first(form, "first"), second(form, "second"), press(form, "press", "&P") {}
    TextBox first;
    TextBox second;
    Button press;
  };

  explicit Page(Toolkit& toolkit) : Form(toolkit, "Page") { setCaption("Page"); }

  Controls& controls() {
    load();
    return *controls_;
  }

  Log log;
  std::function<void()> whenPressed = [] {};
  std::function<void()> whenLeft = [] {};

 protected:
  std::shared_ptr<void> buildControls() override {
    controls_ = std::make_shared<Controls>(*this);
    for (TextBox* const box : {&controls_->first, &controls_->second}) {
      box->gotFocus.connect([this, box] { log.push_back(box->name() + " got"); });
      box->lostFocus.connect([this, box] { log.push_back(box->name() + " lost " + box->text()); });
    }
    controls_->press.click.connect([this] { whenPressed(); });
    return controls_;
  }
  void dropControls() override { controls_.reset(); }
  void onActivate() override { log.emplace_back("activate"); }
  void onEnter() override { log.emplace_back("enter"); }
  void onLeave() override {
    log.emplace_back("leave");
    whenLeft();
  }
  void onUnload() override { log.emplace_back("unload"); }

 private:
  std::shared_ptr<Controls> controls_;
};

void buildPage(QWidget& root) {
  root.resize(200, 120);
  auto* const layout = new QVBoxLayout(&root);
  for (const char* const name : {"first", "second"}) {
    auto* const box = new QLineEdit;
    box->setObjectName(QLatin1String(name));
    layout->addWidget(box);
  }
  auto* const button = new QPushButton;
  button->setObjectName(QStringLiteral("press"));
  layout->addWidget(button);
}

widgets::ViewRegistry pageViews() {
  widgets::ViewRegistry views;
  views.add("Page", buildPage);
  return views;
}

/// A host with a box above and a box below a place for a page.
struct Host : QWidget {
  Host() {
    resize(400, 400);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(&above);
    layout->addWidget(&place, 1);
    layout->addWidget(&below);
  }
  QLineEdit above;
  QWidget place;
  QLineEdit below;
};

class Embedding : public testing::Test {
 protected:
  Embedding() {
    host->show();
    host->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
    host->above.setFocus();
  }

  [[nodiscard]] WindowHandle handle() { return toolkit->windowOf(page); }
  [[nodiscard]] QWidget* view() { return toolkit->windows().widgetOf(handle()); }
  [[nodiscard]] QLineEdit* box(const char* name) {
    return view()->findChild<QLineEdit*>(QLatin1String(name));
  }

  /// As a dialog object embeds a page.
  WindowHandle embed() {
    page.moveTo(29.8, 134.1);
    const WindowHandle window = handle();
    toolkit->setStyle(window, toolkit->styleOf(window) | windowStyle::child);
    const WindowHandle old = toolkit->setParent(window, toolkit->windows().handleOf(&host->place));
    toolkit->showWindow(window, showModeShow);
    return old;
  }
  void layOut() {
    auto* const layout = new QVBoxLayout(&host->place);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view());
    QApplication::processEvents();
  }
  Log takeLog() { return std::exchange(page.log, {}); }

  std::shared_ptr<TestSystem> system = std::make_shared<TestSystem>();
  std::shared_ptr<widgets::QtToolkit> toolkit =
      std::make_shared<widgets::QtToolkit>(system, widgets::pathTextsOf(system), pageViews());
  Page page{*toolkit};
  std::unique_ptr<Host> host = std::make_unique<Host>();
};

TEST_F(Embedding, APageStandsInTheWidgetOfTheHost) {
  EXPECT_EQ(embed(), 0);
  EXPECT_EQ(view()->parentWidget(), &host->place);
  EXPECT_FALSE(view()->isWindow());
  EXPECT_TRUE(view()->isVisible());
  EXPECT_EQ(toolkit->styleOf(handle()), windowStyle::child);
}

TEST_F(Embedding, APageStandsWhereItIsToldTo) {
  embed();
  EXPECT_EQ(view()->pos(), QPoint(2, 9));
  page.moveTo(300, 450);
  EXPECT_EQ(view()->pos(), QPoint(20, 30));
  const QPoint corner = host->place.mapToGlobal(QPoint(20, 30));
  EXPECT_EQ(toolkit->windowRect(handle()), (WindowRect{corner.x(), corner.y(), corner.x() + view()->width(),
                                                       corner.y() + view()->height()}));
}

TEST_F(Embedding, ThePlaceHoldsThoughThePageWasMovedBeforeItWasEmbedded) {
  page.moveTo(150, 150);
  toolkit->setParent(handle(), toolkit->windows().handleOf(&host->place));
  toolkit->showWindow(handle(), showModeShow);
  QApplication::processEvents();
  EXPECT_EQ(view()->pos(), QPoint(10, 10));
}

TEST_F(Embedding, ALayoutOfTheHostOverrulesTheToldPlace) {
  embed();
  layOut();
  EXPECT_EQ(view()->geometry(), host->place.rect());
  page.moveTo(300, 450);
  EXPECT_EQ(view()->geometry(), host->place.rect());
  host->resize(500, 600);
  QApplication::processEvents();
  EXPECT_EQ(view()->geometry(), host->place.rect());
}

TEST_F(Embedding, AHostMayTakeThePageByItsNumberAndShowItItself) {
  page.load();
  layOut();
  view()->show();
  QApplication::processEvents();
  EXPECT_EQ(view()->geometry(), host->place.rect());
  EXPECT_THAT(takeLog(), ElementsAre("activate"));
  QTest::mouseClick(box("first"), Qt::LeftButton);
  EXPECT_THAT(takeLog(), ElementsAre("enter", "first got"));
}

TEST_F(Embedding, AppearingTakesNoFocusFromTheHost) {
  embed();
  QApplication::processEvents();
  EXPECT_TRUE(host->above.hasFocus());
  EXPECT_THAT(takeLog(), ElementsAre("activate"));
}

TEST_F(Embedding, AppearingIsToldOnce) {
  embed();
  toolkit->showWindow(handle(), showModeShow);
  embed();
  EXPECT_THAT(takeLog(), ElementsAre("activate"));
}

TEST_F(Embedding, PuttingThePageBackMakesItAHiddenWindowAgain) {
  const WindowHandle old = embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  takeLog();
  const WindowHandle place = toolkit->windows().handleOf(&host->place);
  EXPECT_EQ(toolkit->setParent(handle(), old), place);
  toolkit->setStyle(handle(), 0);
  QApplication::processEvents();
  EXPECT_TRUE(view()->isWindow());
  EXPECT_FALSE(view()->isVisible());
  EXPECT_EQ(view()->parentWidget(), nullptr);
  EXPECT_EQ(toolkit->styleOf(handle()), 0);
  EXPECT_THAT(takeLog(), IsEmpty()) << "neither left nor unloaded";
  EXPECT_EQ(page.focusedControl(), nullptr);
}

TEST_F(Embedding, APagePutBackCanBeEmbeddedAgain) {
  toolkit->setParent(handle(), embed());
  takeLog();
  embed();
  EXPECT_TRUE(view()->isVisible());
  QTest::mouseClick(box("second"), Qt::LeftButton);
  EXPECT_THAT(takeLog(), ElementsAre("enter", "second got"));
}

TEST_F(Embedding, WindowsThatAreNoneChangeNothing) {
  embed();
  EXPECT_EQ(toolkit->setParent(handle(), 4711), 0);
  EXPECT_EQ(view()->parentWidget(), &host->place);
  EXPECT_EQ(toolkit->setParent(4711, handle()), 0);
  EXPECT_EQ(toolkit->setParent(handle(), handle()), 0);
  EXPECT_EQ(toolkit->setParent(handle(), toolkit->windows().handleOf(box("first"))), 0);
  EXPECT_EQ(view()->parentWidget(), &host->place);
}

TEST_F(Embedding, TabLeadsThroughTheHostAndThePage) {
  embed();
  Log visited;
  for (int i = 0; i < 6; ++i) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    const QWidget* const now = QApplication::focusWidget();
    visited.push_back(now == &host->above   ? "above"
                      : now == &host->below ? "below"
                                            : now->objectName().toStdString());
  }
  EXPECT_THAT(visited, ElementsAre("below", "first", "second", "press", "above", "below"));
}

TEST_F(Embedding, TheHostMaySetTheTabOrder) {
  embed();
  QWidget::setTabOrder(&host->above, box("first"));
  QWidget::setTabOrder(box("first"), box("second"));
  QTest::keyClick(&host->above, Qt::Key_Tab);
  EXPECT_TRUE(box("first")->hasFocus());
  QTest::keyClick(box("first"), Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(host->above.hasFocus());
}

TEST_F(Embedding, TheFocusEntersAndLeavesOnce) {
  embed();
  takeLog();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QTest::keyClicks(box("first"), "12");
  QTest::mouseClick(box("second"), Qt::LeftButton);
  QTest::keyClicks(box("second"), "34");
  QTest::mouseClick(&host->below, Qt::LeftButton);
  QTest::mouseClick(&host->above, Qt::LeftButton);
  EXPECT_THAT(takeLog(),
              ElementsAre("enter", "first got", "first lost 12", "second got", "second lost 34", "leave"));
}

TEST_F(Embedding, TheFocusThatComesBackEntersAgain) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QTest::mouseClick(&host->below, Qt::LeftButton);
  takeLog();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  EXPECT_THAT(takeLog(), ElementsAre("enter", "first got"));
}

TEST_F(Embedding, AClickOnAButtonOfThePageEntersIt) {
  embed();
  takeLog();
  page.whenPressed = [this] { page.log.emplace_back("pressed"); };
  QTest::mouseClick(view()->findChild<QWidget*>("press"), Qt::LeftButton);
  EXPECT_THAT(takeLog(), ElementsAre("enter", "pressed"));
}

TEST_F(Embedding, AMessageOfThePageTakesNoFocusFromIt) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  takeLog();
  page.whenPressed = [this] { toolkit->showMessage({"Text", "Title"}); };
  QTimer::singleShot(0, [] {
    auto* const message = QApplication::activeModalWidget();
    ASSERT_TRUE(message);
    EXPECT_TRUE(QTest::qWaitForWindowActive(message));
    message->close();
  });
  QTest::mouseClick(view()->findChild<QWidget*>("press"), Qt::LeftButton);
  host->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
  EXPECT_THAT(takeLog(), ElementsAre("first lost "));
}

TEST_F(Embedding, AMenuTakesNoFocusFromThePage) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  takeLog();
  QMenu menu(box("first"));
  menu.addAction("Act");
  menu.popup(box("first")->mapToGlobal(QPoint(1, 1)));
  QApplication::processEvents();
  menu.close();
  QApplication::processEvents();
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Embedding, ADialogOfThePageTakesNoFocusFromIt) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  takeLog();
  QDialog dialog(view());
  QLineEdit inside(&dialog);
  dialog.show();
  dialog.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  inside.setFocus();
  dialog.close();
  host->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(host.get()));
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Embedding, AnotherWindowOfTheProgramTakesTheFocusAndGivesItBack) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  takeLog();
  QWidget other;
  QLineEdit inside(&other);
  other.show();
  other.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
  inside.setFocus();
  EXPECT_THAT(takeLog(), ElementsAre("first lost ", "leave"));
  host->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(host.get()));
  EXPECT_THAT(takeLog(), ElementsAre("activate", "enter", "first got"));
}

TEST_F(Embedding, AHiddenPageHasLostTheFocus) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QTest::keyClicks(box("first"), "7");
  takeLog();
  host->place.hide();
  EXPECT_THAT(takeLog(), ElementsAre("first lost 7", "leave"));
}

TEST_F(Embedding, EnterAndEscapeAreTheHosts) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QTest::keyClick(box("first"), Qt::Key_Escape);
  QTest::keyClick(box("first"), Qt::Key_Return);
  EXPECT_TRUE(view()->isVisible());
  EXPECT_TRUE(page.loaded());
}

TEST_F(Embedding, EscapeInAPageReachesADialogOfTheHost) {
  QDialog dialog;
  dialog.resize(300, 300);
  dialog.show();
  dialog.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
  toolkit->setParent(handle(), 0);
  page.load();
  toolkit->setParent(handle(), toolkit->windows().handleOf(&dialog));
  toolkit->showWindow(handle(), showModeShow);
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QTest::keyClick(box("first"), Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_TRUE(page.loaded());
  toolkit->setParent(handle(), 0);
}

TEST_F(Embedding, AHostThatGoesTakesTheWindowAndLeavesTheForm) {
  embed();
  page.controls().first.setText("kept");
  const QPointer<QWidget> window(view());
  const WindowHandle old = handle();
  host.reset();
  EXPECT_FALSE(window);
  EXPECT_TRUE(page.loaded());
  EXPECT_EQ(page.controls().first.text(), "kept");
  EXPECT_EQ(toolkit->setParent(old, 0), 0);
  toolkit->setStyle(old, 1);
  toolkit->showWindow(old, showModeShow);
  EXPECT_EQ(toolkit->windowRect(old), std::nullopt);
  page.moveTo(15, 15);
  page.userLeaves();
  page.unload();
  EXPECT_FALSE(page.loaded());
}

TEST_F(Embedding, AHostThatGoesWithTheFocusInThePageDoesNoHarm) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QTest::keyClicks(box("first"), "5");
  host.reset();
  QApplication::processEvents();
  EXPECT_EQ(page.focusedControl(), nullptr);
  EXPECT_EQ(page.controls().first.text(), "5");
}

TEST_F(Embedding, AFormWhoseWindowHasGoneGetsANewOne) {
  embed();
  page.controls().second.setText("kept");
  host.reset();
  host = std::make_unique<Host>();
  host->show();
  takeLog();
  embed();
  EXPECT_TRUE(view()->isVisible());
  EXPECT_EQ(view()->parentWidget(), &host->place);
  EXPECT_EQ(box("second")->text(), "kept");
  EXPECT_THAT(takeLog(), ElementsAre("activate"));
  box("first")->setFocus();
  QTest::keyClicks(box("first"), "x");
  EXPECT_EQ(page.controls().first.text(), "x");
}

TEST_F(Embedding, AHostMayMarkItsWindowForDeletionWhileThePageTellsOfTheLostFocus) {
  embed();
  QTest::mouseClick(box("first"), Qt::LeftButton);
  page.whenLeft = [this] {
    host.release()->deleteLater();
    toolkit->letPendingEventsRun();
  };
  host->below.setFocus();
  EXPECT_FALSE(host);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_TRUE(page.loaded());
  EXPECT_TRUE(view()->isWindow());
}

TEST_F(Embedding, AReleasedFormTakesItsWindowOutOfTheHost) {
  auto released = std::make_shared<Page>(*toolkit);
  released->load();
  const QPointer<QWidget> window(toolkit->windows().widgetOf(toolkit->windowOf(*released)));
  toolkit->setParent(toolkit->windowOf(*released), toolkit->windows().handleOf(&host->place));
  toolkit->showWindow(toolkit->windowOf(*released), showModeShow);
  released.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(window);
  EXPECT_TRUE(host->place.findChildren<QWidget*>().empty());
}

TEST_F(Embedding, AFormMayBeReleasedInAnEventOfItsOwn) {
  auto released = std::make_shared<Page>(*toolkit);
  released->load();
  toolkit->setParent(toolkit->windowOf(*released), toolkit->windows().handleOf(&host->place));
  toolkit->showWindow(toolkit->windowOf(*released), showModeShow);
  auto* const button = host->place.findChild<QPushButton*>("press");
  released->whenPressed = [&] { released.reset(); };
  QTest::mouseClick(button, Qt::LeftButton);
  QApplication::processEvents();
  EXPECT_FALSE(released);
}

TEST_F(Embedding, AModalWindowIsActivatedAndEntered) {
  QTimer::singleShot(0, [this] {
    EXPECT_TRUE(QTest::qWaitForWindowActive(toolkit->viewOf(page)));
    EXPECT_THAT(takeLog(), ElementsAre("activate", "enter", "first got"));
    page.userCloses();
  });
  page.showModal();
  EXPECT_THAT(takeLog(), ElementsAre("unload"));
}

}  // namespace
}  // namespace vlclientui::test
