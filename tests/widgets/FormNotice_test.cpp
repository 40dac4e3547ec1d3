// The line at the foot of a window that tells why a click did nothing.

#include <QAccessible>

#include <gtest/gtest.h>

#include "widgets/ExportWindow.h"
#include "widgets/ValueLabel.h"

namespace vlclientui::test {
namespace {

class NoticeOfTheExportWindow : public ExportWindow {
 protected:
  [[nodiscard]] widgets::ValueLabel& line() {
    return dynamic_cast<widgets::ValueLabel&>(widget("formNotice"));
  }
  void acceptInVain() { QTest::mouseClick(&widget("Command1"), Qt::LeftButton); }
};

TEST_F(NoticeOfTheExportWindow, ShowsWhyOkDidNothingUntilTheNextEdit) {
  service->onCall = [](const std::string& call) {
    if (call == "ExportProperties") throw RuntimeFailure("the folder 'C:\\mine' cannot be entered");
  };
  show([&] {
    EXPECT_FALSE(line().isVisible());
    acceptInVain();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(line().isVisible());
    const QString own = QString::fromStdString((system->home() / "mine").string());
    EXPECT_EQ(line().value(), "Not done: the folder '" + own + "' cannot be entered");
    typeInto("uiTxtLeft", "1");
    EXPECT_FALSE(line().isVisible());
  });
  EXPECT_TRUE(messages.empty());
}

TEST_F(NoticeOfTheExportWindow, ShowsWhereTheRequestCannotBeWritten) {
  service->info = serviceInfo({.bands = ""});
  show([&] {
    acceptInVain();
    EXPECT_EQ(line().value(), "Not done: Object not set: //NBands");
  });
}

TEST_F(NoticeOfTheExportWindow, WrapsANameThatIsWiderThanTheWindow) {
  service->onCall = [](const std::string& call) {
    if (call == "ExportProperties") throw RuntimeFailure("'" + std::string(200, 'n') + "' is too long");
  };
  show([&] {
    acceptInVain();
    const int lineHeight = line().fontMetrics().height();
    EXPECT_LE(line().minimumSizeHint().width(), line().width());
    EXPECT_GT(line().heightForWidth(line().width()), 2 * lineHeight);
    EXPECT_FALSE(line().value().contains(QChar(0x200B)));
  });
}

TEST_F(NoticeOfTheExportWindow, IsNamedByItsWordsForScreenReaders) {
  service->onCall = [](const std::string& call) {
    if (call == "ExportProperties") throw RuntimeFailure("no room");
  };
  show([&] {
    acceptInVain();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&line())->text(QAccessible::Name), "Not done: no room");
  });
}

TEST_F(NoticeOfTheExportWindow, HasTheColorsOfTheOtherTexts) {
  show([&] {
    QPalette dark;
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    window->setPalette(dark);
    EXPECT_EQ(line().palette().color(QPalette::WindowText), QColor(Qt::white));
    EXPECT_TRUE(line().styleSheet().isEmpty());
  });
}

}  // namespace
}  // namespace vlclientui::test
