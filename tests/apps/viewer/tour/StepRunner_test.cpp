#include "viewer/tour/StepRunner.h"

#include <QApplication>
#include <QDialog>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

namespace vlclientui::viewer {
namespace {

TEST(StepRunner, WaitsForAnActionThatLetsEventsRun) {
  StepRunner steps;
  QStringList told;
  steps.act("slow", [&told] {
    QTest::qWait(150);
    told += "slow";
  });
  steps.act("next", [&told] { told += "next"; });
  EXPECT_EQ(steps.run(), 0);
  EXPECT_EQ(told, (QStringList{"slow", "next"}));
}

TEST(StepRunner, GoesOnInTheWindowThatAnActionOpens) {
  StepRunner steps;
  QStringList told;
  steps.act("open", [&told] {
    QDialog().exec();
    told += "shut";
  });
  steps.see("the window", [] { return QApplication::activeModalWidget() != nullptr; });
  steps.act("shut", [&told] {
    told += "within";
    QApplication::activeModalWidget()->close();
  });
  EXPECT_EQ(steps.run(), 0);
  EXPECT_EQ(told, (QStringList{"within", "shut"}));
}

}  // namespace
}  // namespace vlclientui::viewer
