#include "viewer/waiting/DoneBeside.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <future>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "viewer/waiting/WaitWindow.h"
#include "viewer/waiting/Workers.h"

namespace vlclientui::viewer {
namespace {

/// Clicks Cancel of the window that tells of the wait, once it is there.
class ImpatientPerson {
 public:
  ImpatientPerson() {
    QObject::connect(&look_, &QTimer::timeout, [this] {
      auto* const window = qobject_cast<WaitWindow*>(QApplication::activeModalWidget());
      if (window == nullptr) return;
      look_.stop();
      QTest::mouseClick(window->findChild<QPushButton*>("CancelWait"), Qt::LeftButton);
    });
    look_.start(10);
  }
  [[nodiscard]] bool hasClicked() const { return !look_.isActive(); }

 private:
  QTimer look_;
};

TEST(DoneBeside, WorkRunsOnAThreadOfItsOwnAndIsWaitedFor) {
  auto worker = std::make_shared<std::thread::id>();
  EXPECT_TRUE(doBesideWindows("work", [worker] { *worker = std::this_thread::get_id(); }));
  EXPECT_NE(*worker, std::thread::id());
  EXPECT_NE(*worker, std::this_thread::get_id());
}

TEST(DoneBeside, WhatTheWorkThrowsIsThrown) {
  EXPECT_THROW(static_cast<void>(doBesideWindows("work", [] { throw RuntimeFailure("no"); })),
               RuntimeFailure);
}

TEST(DoneBeside, WorkThatLastsIsGivenUpInAWindow) {
  const ImpatientPerson person;
  auto end = std::make_shared<std::promise<void>>();
  auto ended = std::make_shared<std::promise<void>>();
  EXPECT_FALSE(doBesideWindows("work", [end, ended] {
    end->get_future().wait();
    ended->set_value();
  }));
  EXPECT_TRUE(person.hasClicked());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  // What is deaf runs on alone.
  end->set_value();
  ended->get_future().wait();
}

TEST(DoneBeside, GivenUpWorkIsSeenUntilItHasLetGoWhatItUsed) {
  const ImpatientPerson person;
  auto end = std::make_shared<std::promise<void>>();
  auto used = std::make_shared<int>(1);
  const std::weak_ptr<int> isUsed = used;
  EXPECT_FALSE(doBesideWindows("work", [end, used = std::move(used)] { end->get_future().wait(); }));
  EXPECT_FALSE(workersEnd(std::chrono::milliseconds(20)));
  EXPECT_FALSE(isUsed.expired());
  end->set_value();
  EXPECT_TRUE(workersEnd(std::chrono::seconds(30)));
  EXPECT_TRUE(isUsed.expired());
}

TEST(DoneBeside, WorkThatEndsUnderTheWindowIsWhole) {
  auto isSeen = std::make_shared<std::promise<void>>();
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, [&] {
    if (QApplication::activeModalWidget() == nullptr) return;
    look.stop();
    isSeen->set_value();
  });
  look.start(10);
  EXPECT_TRUE(doBesideWindows("work", [isSeen] { isSeen->get_future().wait(); }));
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
}  // namespace vlclientui::viewer
