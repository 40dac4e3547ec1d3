// A form's window in a window of the host, without a window system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/controls/Controls.h"
#include "headless/HeadlessToolkit.h"

namespace vlclientui::headless {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A page for tests with one box and one hosted control. It tells what comes to it.
class Page : public Form {
 public:
  struct Controls {
    explicit Controls(Page& form) : box(form, "box"), hosted(&form, "hosted", "Hosted") {}
    TextBox box;
    HostedControl hosted;
  };

  explicit Page(Toolkit& toolkit) : Form(toolkit, "Page") {}
  Controls& controls() {
    load();
    return *controls_;
  }
  std::vector<std::string> takeLog() { return std::exchange(log, {}); }

  std::vector<std::string> log;

 protected:
  std::shared_ptr<void> buildControls() override {
    controls_ = std::make_shared<Controls>(*this);
    return controls_;
  }
  void dropControls() override { controls_.reset(); }
  void onActivate() override { log.emplace_back("activate"); }
  void onEnter() override { log.emplace_back("enter"); }
  void onLeave() override { log.emplace_back("leave"); }
  void onUnload() override { log.emplace_back("unload"); }

 private:
  std::shared_ptr<Controls> controls_;
};

class HeadlessEmbedding : public testing::Test {
 protected:
  [[nodiscard]] WindowHandle handle() const { return toolkit.windowOf(page); }
  WindowHandle embed() {
    page.moveTo(29.8, 134.1);
    const WindowHandle old = toolkit.setParent(handle(), host);
    toolkit.showWindow(handle(), showModeShow);
    return old;
  }

  mutable HeadlessToolkit toolkit;
  Page page{toolkit};
  WindowHandle host = toolkit.addHostWindow("Host", {100, 200, 500, 600});
};

TEST_F(HeadlessEmbedding, PutsTheWindowIntoTheHosts) {
  EXPECT_EQ(embed(), 0);
  EXPECT_EQ(toolkit.parentOf(handle()), host);
  EXPECT_TRUE(toolkit.isShown(handle()));
  EXPECT_THAT(toolkit.childWindows(host), ElementsAre(handle()));
}

TEST_F(HeadlessEmbedding, PlacesTheWindowFromTheCornerOfTheHosts) {
  embed();
  EXPECT_EQ(toolkit.windowRect(handle()), (WindowRect{102, 209, 102, 209}));
  page.moveTo(150, 300);
  EXPECT_EQ(toolkit.windowRect(handle()), (WindowRect{110, 220, 110, 220}));
}

TEST_F(HeadlessEmbedding, ActivatesThePageOnceAndGivesItNoFocus) {
  embed();
  toolkit.showWindow(handle(), showModeShow);
  EXPECT_THAT(page.takeLog(), ElementsAre("activate"));
  EXPECT_EQ(page.focusedControl(), nullptr);
}

TEST_F(HeadlessEmbedding, GivesAWindowOfItsOwnTheFocus) {
  page.load();
  toolkit.showWindow(handle(), showModeShow);
  EXPECT_THAT(page.takeLog(), ElementsAre("activate", "enter"));
  EXPECT_TRUE(page.controls().box.hasFocus());
}

TEST_F(HeadlessEmbedding, PutBackIsHiddenAndToldNothing) {
  const WindowHandle old = embed();
  page.controls().box.userFocuses();
  page.takeLog();
  EXPECT_EQ(toolkit.setParent(handle(), old), host);
  EXPECT_FALSE(toolkit.isShown(handle()));
  EXPECT_THAT(page.takeLog(), IsEmpty());
  EXPECT_EQ(page.focusedControl(), nullptr);
}

TEST_F(HeadlessEmbedding, KeepsTheStyleApartFromTheParent) {
  page.load();
  toolkit.setStyle(handle(), 7 | windowStyle::child);
  embed();
  EXPECT_EQ(toolkit.styleOf(handle()), 7 | windowStyle::child);
  toolkit.setParent(handle(), 0);
  toolkit.setStyle(handle(), 7);
  EXPECT_EQ(toolkit.styleOf(handle()), 7);
}

TEST_F(HeadlessEmbedding, RefusesWindowsThatAreNoneOrStandInThePage) {
  embed();
  EXPECT_EQ(toolkit.setParent(handle(), 4711), 0);
  EXPECT_EQ(toolkit.setParent(4711, host), 0);
  EXPECT_EQ(toolkit.setParent(handle(), handle()), 0);
  EXPECT_EQ(toolkit.setParent(handle(), toolkit.windowOf(page.controls().hosted)), 0);
  EXPECT_EQ(toolkit.parentOf(handle()), host);
}

TEST_F(HeadlessEmbedding, SurvivesAHostThatGoesFirst) {
  embed();
  page.controls().box.setText("kept");
  page.controls().box.userFocuses();
  page.takeLog();
  const WindowHandle gone = handle();
  toolkit.removeWindow(host);
  EXPECT_FALSE(toolkit.hasWindow(gone));
  EXPECT_TRUE(page.loaded());
  EXPECT_THAT(page.takeLog(), IsEmpty());
  EXPECT_EQ(toolkit.setParent(gone, 0), 0);
  toolkit.setStyle(gone, 1);
  toolkit.showWindow(gone, showModeShow);
  EXPECT_EQ(toolkit.windowRect(gone), std::nullopt);
  page.moveTo(1, 1);
  EXPECT_EQ(page.controls().box.text(), "kept");
  page.unload();
  EXPECT_FALSE(page.loaded());
}

TEST_F(HeadlessEmbedding, MakesANewWindowForAFormThatHasLostItsOwn) {
  embed();
  const WindowHandle gone = handle();
  toolkit.removeWindow(host);
  host = toolkit.addHostWindow("Another host");
  page.takeLog();
  embed();
  EXPECT_NE(handle(), gone);
  EXPECT_EQ(toolkit.parentOf(handle()), host);
  EXPECT_NE(toolkit.windowOf(page.controls().hosted), 0);
  EXPECT_THAT(page.takeLog(), ElementsAre("activate"));
}

TEST_F(HeadlessEmbedding, MakesTheWindowsInANewWindowToo) {
  embed();
  toolkit.removeWindow(host);
  const WindowHandle hosted = toolkit.windowOf(page.controls().hosted);
  EXPECT_NE(hosted, 0);
  EXPECT_EQ(toolkit.parentOf(hosted), handle());
}

}  // namespace
}  // namespace vlclientui::headless
