// What the viewer tells of routines that ended without a word.

#include "viewer/window/SilenceLog.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenuBar>
#include <QStatusBar>
#include <QTableWidget>

#include "apps/viewer/ViewerFixture.h"

namespace vlclientui::test {
namespace {

class SilenceOfTheViewer : public ViewerFixture {
 protected:
  [[nodiscard]] QLabel& label() const { return *window_->statusBar()->findChild<QLabel*>("silenceLabel"); }
  [[nodiscard]] viewer::SilenceLog& log() const { return *window_->findChild<viewer::SilenceLog*>(); }
};

TEST_F(SilenceOfTheViewer, ShowsTheLastReasonInTheStatusBar) {
  endSilently("no room", "Page::save");
  endSilently("the folder 'C:\\mine' cannot be entered", "Page::save");
  const QString own = QString::fromStdString((home_.path() / "mine").string());
  EXPECT_EQ(label().text(), "the folder '" + own + "' cannot be entered");
  EXPECT_EQ(label().toolTip(), "Page::save");
}

TEST_F(SilenceOfTheViewer, KeepsABoundedListNewestFirst) {
  for (std::size_t i = 0; i < viewer::SilenceLog::limit + 5; ++i)
    endSilently(std::to_string(i), "Page::save");
  ASSERT_EQ(log().entries().size(), viewer::SilenceLog::limit);
  EXPECT_EQ(log().entries().front().reason, "204");
  EXPECT_EQ(log().entries().back().reason, "5");
}

TEST_F(SilenceOfTheViewer, OpensTheListFromTheHelpMenuAndCopiesIt) {
  endSilently("no room", "Page::save");
  act([this] { action("SilentEnds").trigger(); });
  see("the list", [] { return window("Messages").isActiveWindow(); });
  act([] {
    const auto& table = viewer::person::find<QTableWidget>(window("Messages"), "silenceTable");
    EXPECT_EQ(table.item(0, 1)->text(), "Page::save");
    EXPECT_EQ(table.item(0, 2)->text(), "no room");
    click(window("Messages"), "silenceCopy");
    viewer::person::press(window("Messages"), Qt::Key_Escape);
  });
  run();
  EXPECT_TRUE(QApplication::clipboard()->text().endsWith("\tPage::save\tno room"));
  EXPECT_FALSE(action("SilentEnds").associatedObjects().isEmpty());
}

}  // namespace
}  // namespace vlclientui::test
