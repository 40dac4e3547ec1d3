// A form's window in a window of the host.

#include "widgets/EmbeddingFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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
