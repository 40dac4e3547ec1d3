#include "viewer/waiting/ProgressWindow.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

namespace vlclientui::viewer {
namespace {

/// Work that goes on until it is told to end, as an export does.
bool untilCanceled(ProgressWindow& window) {
  for (int step = 0; window.report(0.5); ++step) {
    if (step == 3000) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return false;
}

TEST(ProgressWindow, GivesWhatTheWorkReturnedAndGoes) {
  for (const bool result : {true, false}) {
    ProgressWindow window("Writing");
    EXPECT_EQ(window.run([result] { return result; }), result);
    EXPECT_FALSE(window.isVisible());
  }
}

TEST(ProgressWindow, ShowsHowFarTheWorkIs) {
  ProgressWindow window("Writing");
  int shown = 0;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, [&] {
    shown = window.findChild<QProgressBar*>("ProgressBar")->value();
    if (shown > 0) window.reject();
  });
  watch.start(10);
  window.run([&window] { return untilCanceled(window); });
  EXPECT_EQ(shown, 500);
}

TEST(ProgressWindow, StaysAfterACancelUntilTheWorkHasEnded) {
  ProgressWindow window("Writing");
  bool stayed = false;
  std::atomic<bool> mayEnd = false;
  QTimer::singleShot(50, &window, [&] {
    QTest::mouseClick(window.findChild<QPushButton*>("CancelExport"), Qt::LeftButton);
    stayed = window.isVisible() && QApplication::activeModalWidget() == &window;
    EXPECT_FALSE(window.findChild<QPushButton*>("CancelExport")->isEnabled());
    mayEnd = true;
  });
  EXPECT_FALSE(window.run([&] {
    const bool whole = untilCanceled(window);
    while (!mayEnd) std::this_thread::yield();
    return whole;
  }));
  EXPECT_TRUE(stayed);
}

TEST(ProgressWindow, EscapeAndTheCloseButtonCancelToo) {
  for (const bool byKey : {true, false}) {
    ProgressWindow window("Writing");
    QTimer::singleShot(50, &window, [&] {
      if (byKey) {
        QTest::keyClick(&window, Qt::Key_Escape);
      } else {
        window.close();
      }
      EXPECT_TRUE(window.isVisible());
    });
    EXPECT_FALSE(window.run([&window] { return untilCanceled(window); }));
  }
}

TEST(ProgressWindow, EndsTheWorkWhenTheWindowGoesBefore) {
  ProgressWindow window("Writing");
  std::atomic<int> ends = 0;
  window.onCancel([&] { ++ends; });
  // As when the program quits.
  QTimer::singleShot(50, &window, &QWidget::hide);
  // Waits for the end, as for a server, and asks nobody else.
  EXPECT_FALSE(window.run([&] {
    while (ends == 0) std::this_thread::yield();
    return false;
  }));
  EXPECT_EQ(ends, 1);
}

TEST(ProgressWindow, EnterDoesNotCancel) {
  ProgressWindow window("Writing");
  QTimer::singleShot(50, &window, [&] { QTest::keyClick(&window, Qt::Key_Return); });
  EXPECT_TRUE(window.run([&window] {
    for (int i = 0; i < 20; ++i) {
      if (!window.report(0)) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
  }));
}

}  // namespace
}  // namespace vlclientui::viewer
