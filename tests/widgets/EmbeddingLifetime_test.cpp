// A form's window in a window of the host: what goes first, and when.

#include "widgets/EmbeddingFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;

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

TEST_F(Embedding, AHostThatGoesUnderAMessageOfThePageTakesTheMessageAlong) {
  std::optional<MessageAnswer> answer;
  for (const auto& [buttons, expected] : {std::pair{MessageButtons::Ok, MessageAnswer::Ok},
                                          {MessageButtons::OkCancel, MessageAnswer::Cancel},
                                          {MessageButtons::YesNo, MessageAnswer::No},
                                          {MessageButtons::YesNoCancel, MessageAnswer::Cancel}}) {
    embed();
    page.whenPressed = [&, asked = buttons] {
      answer = toolkit->showMessage({"Text", "Title", MessageIcon::Question, asked});
    };
    QTimer::singleShot(0, [this] { host.reset(); });
    view()->findChild<QPushButton*>("press")->click();
    EXPECT_EQ(answer, expected);
    host = std::make_unique<Host>();
    host->show();
    host->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
  }
}

TEST_F(Embedding, AHostThatGoesUnderAFileDialogOfThePageCancelsIt) {
  embed();
  std::optional<std::string> file = "none asked for";
  page.whenPressed = [&] { file = toolkit->saveFile({}); };
  QTimer::singleShot(0, [this] { host.reset(); });
  view()->findChild<QPushButton*>("press")->click();
  EXPECT_EQ(file, std::nullopt);
}

TEST_F(Embedding, AHostThatGoesWhileAKeyOrTheFocusIsHandledDoesNoHarm) {
  embed();
  page.controls().first.keyDown.connect([this](const KeyEvent&) { host.reset(); });
  QTest::mouseClick(box("first"), Qt::LeftButton);
  QKeyEvent key(QEvent::KeyPress, Qt::Key_5, Qt::NoModifier, "5");
  QApplication::sendEvent(box("first"), &key);
  EXPECT_FALSE(host);
  host = std::make_unique<Host>();
  host->show();
  embed();
  page.controls().second.gotFocus.connect([this] { host.reset(); });
  host->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
  QFocusEvent focus(QEvent::FocusIn, Qt::OtherFocusReason);
  QApplication::sendEvent(box("second"), &focus);
  EXPECT_FALSE(host);
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

}  // namespace
}  // namespace vlclientui::test
