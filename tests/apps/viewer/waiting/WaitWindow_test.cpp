#include "viewer/waiting/WaitWindow.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace vlclientui::viewer {
namespace {

using std::chrono::milliseconds;

WaitWindow* shownWindow() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* found = qobject_cast<WaitWindow*>(window);
    if (found != nullptr && found->isVisible()) return found;
  }
  return nullptr;
}

/// Asks until the wait is given up, as a call does that gets no answer.
bool waitInVain(const client::WaitQuestion& question) {
  const QDeadlineTimer limit(milliseconds(20'000));
  while (!limit.hasExpired()) {
    if (!question({"maps.example:8080", 0, milliseconds(500)})) return true;
  }
  return false;
}

TEST(WaitWindow, SaysWhomItWaitsForAndHowMuchHasCome) {
  WaitWindow window;
  EXPECT_TRUE(window.goOn({"maps.example", 0, milliseconds(500)}));
  EXPECT_TRUE(window.isVisible());
  const auto* text = window.findChild<QLabel*>("WaitText");
  EXPECT_EQ(text->text(), QString::fromUtf8("Waiting for maps.example\u2026"));
  EXPECT_TRUE(window.goOn({"maps.example", 2048, milliseconds(550)}));
  EXPECT_TRUE(text->text().contains("so far")) << text->text().toStdString();
}

TEST(WaitWindow, IsGivenUpByItsButtonAndByEscape) {
  for (const bool byKey : {false, true}) {
    const client::WaitQuestion question = showWaits()();
    QTimer::singleShot(50, [&] {
      WaitWindow* window = shownWindow();
      ASSERT_NE(window, nullptr);
      if (byKey)
        QTest::keyClick(window, Qt::Key_Escape);
      else
        QTest::mouseClick(window->findChild<QPushButton*>("CancelWait"), Qt::LeftButton);
    });
    EXPECT_TRUE(waitInVain(question));
  }
}

TEST(WaitWindow, GoesWithItsCall) {
  client::WaitQuestion question = showWaits()();
  EXPECT_TRUE(question({"maps.example", 0, milliseconds(500)}));
  EXPECT_NE(shownWindow(), nullptr);
  question = {};
  EXPECT_EQ(shownWindow(), nullptr);
}

TEST(WaitWindow, LetsNoOtherWindowTakeInput) {
  QLineEdit other;
  other.show();
  other.activateWindow();
  client::WaitQuestion question = showWaits()();
  EXPECT_TRUE(question({"maps.example", 0, milliseconds(500)}));
  EXPECT_EQ(QApplication::activeModalWidget(), shownWindow());
  QTest::keyClick(other.windowHandle(), Qt::Key_A);
  EXPECT_EQ(other.text(), "");
}

TEST(WaitWindow, IsGivenUpWhereTheWindowBelowItGoes) {
  auto below = std::make_unique<QWidget>();
  below->show();
  below->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(below.get()));
  const client::WaitQuestion question = showWaits()();
  QTimer::singleShot(50, [&] { below.reset(); });
  EXPECT_TRUE(waitInVain(question));
}

}  // namespace
}  // namespace vlclientui::viewer
