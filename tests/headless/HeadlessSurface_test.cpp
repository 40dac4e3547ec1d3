#include "headless/HeadlessSurface.h"

#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"
#include "engine/EngineFixture.h"

namespace vlclientui::headless {
namespace {

using Strings = std::vector<std::string>;

/// Writes down what the surface reports.
class RecordingListener : public engine::SurfaceListener {
 public:
  void rowClicked(std::size_t row) override { calls.push_back("click " + std::to_string(row)); }
  void rowActivated(std::size_t row) override { calls.push_back("activate " + std::to_string(row)); }
  void backspacePressed() override { calls.emplace_back("backspace"); }

  Strings calls;
};

std::shared_ptr<const engine::ListModel> listOf(const Strings& names) {
  return std::make_shared<engine::ListModel>(
      *engine::parseListFields(*engine::testXml(), engine::listFields),
      engine::ListRows::parse(*engine::testXml(), engine::listValues(names)));
}

class HeadlessSurfaces : public ::testing::Test {
 protected:
  std::shared_ptr<HeadlessSurfaceFactory> factory = std::make_shared<HeadlessSurfaceFactory>();
  std::shared_ptr<RecordingListener> listener = std::make_shared<RecordingListener>();
  std::unique_ptr<engine::Surface> made = factory->createSurface(listener);
  HeadlessSurface& surface = *factory->surfaces().at(0);
};

TEST_F(HeadlessSurfaces, AreKnownWhileTheyLive) {
  EXPECT_EQ(factory->surfaces().size(), 1U);
  made.reset();
  EXPECT_TRUE(factory->surfaces().empty());
}

TEST_F(HeadlessSurfaces, AreFoundByTheirParentWhileAttached) {
  made->attach(5, "CHSList");
  EXPECT_EQ(factory->surfaceIn(5), &surface);
  EXPECT_EQ(surface.parent(), 5);
  EXPECT_NE(surface.window(), 0);
  made->detach();
  EXPECT_EQ(factory->surfaceIn(5), nullptr);
  EXPECT_EQ(surface.window(), 0);
}

TEST_F(HeadlessSurfaces, TellTheToolkitTheirWindowsOnce) {
  Strings calls;
  factory->setChildWindowHooks(
      {[&](WindowHandle parent, const std::string& title) {
         calls.push_back("in " + std::to_string(parent) + " " + title);
         return WindowHandle{40};
       },
       [&](WindowHandle window) { calls.push_back("out " + std::to_string(window)); }});
  made->attach(5, "CHSList");
  EXPECT_EQ(surface.window(), 40);
  made->attach(6, "CHSList");
  made->detach();
  made->detach();
  made.reset();
  EXPECT_EQ(calls, (Strings{"in 5 CHSList", "out 40", "in 6 CHSList", "out 40"}));
}

TEST_F(HeadlessSurfaces, CannotStandInAWindowThatIsNotThere) {
  factory->setChildWindowHooks({[](WindowHandle, const std::string&) { return WindowHandle{0}; }, nullptr});
  EXPECT_THROW(made->attach(5, "CHSList"), RuntimeFailure);
  EXPECT_EQ(factory->surfaceIn(5), nullptr);
}

TEST_F(HeadlessSurfaces, ReportWhatAPersonDoes) {
  made->attach(5, "CHSList");
  made->showList(listOf({"A", "B"}));
  surface.userClicksRow("B");
  surface.userPressesEnter();
  surface.userDoubleClicksRow(std::size_t{0});
  surface.userPressesBackspace();
  EXPECT_EQ(listener->calls, (Strings{"click 1", "activate 1", "click 0", "activate 0", "backspace"}));
}

TEST_F(HeadlessSurfaces, EnterWithoutASelectedRowDoesNothing) {
  made->attach(5, "CHSList");
  made->showList(listOf({"A"}));
  surface.userPressesEnter();
  surface.userClicksRow("A");
  made->updateList(listOf({"A"}));
  surface.userPressesEnter();
  EXPECT_EQ(listener->calls, (Strings{"click 0"}));
}

TEST_F(HeadlessSurfaces, RowsThatAreNotThereCannotBeClicked) {
  made->attach(5, "CHSList");
  EXPECT_THROW(surface.userClicksRow("A"), RuntimeFailure);
  made->showList(listOf({"A"}));
  EXPECT_THROW(surface.userClicksRow("B"), RuntimeFailure);
  EXPECT_THROW(surface.userDoubleClicksRow(1), RuntimeFailure);
}

TEST_F(HeadlessSurfaces, OutsideAnyWindowNothingCanBeClicked) {
  made->showList(listOf({"A"}));
  EXPECT_THROW(surface.userClicksRow("A"), RuntimeFailure);
  EXPECT_THROW(surface.userPressesBackspace(), RuntimeFailure);
}

TEST_F(HeadlessSurfaces, AListenerThatIsGoneHearsNothing) {
  made->attach(5, "CHSList");
  made->showList(listOf({"A"}));
  listener.reset();
  surface.userDoubleClicksRow("A");
  surface.userPressesBackspace();
  SUCCEED();
}

TEST_F(HeadlessSurfaces, APageReplacesAListAndAListAPage) {
  made->showList(listOf({"A"}));
  made->showForm(std::make_shared<engine::FormModel>());
  EXPECT_EQ(surface.list(), nullptr);
  EXPECT_NE(surface.form(), nullptr);
  made->showList(listOf({"A"}));
  EXPECT_NE(surface.list(), nullptr);
  EXPECT_EQ(surface.form(), nullptr);
}

TEST_F(HeadlessSurfaces, SeparateWindowsAreWrittenDownAndRunTheScript) {
  int runs = 0;
  factory->setWindowScript([&](const HeadlessWindow& window) {
    ++runs;
    EXPECT_EQ(window.caption, "Properties");
  });
  made->runWindow("Properties", engine::WindowFrame::Resizable, std::make_shared<engine::FormModel>());
  EXPECT_EQ(runs, 1);
  ASSERT_EQ(factory->windows().size(), 1U);
  EXPECT_EQ(factory->windows()[0].frame, engine::WindowFrame::Resizable);
}

}  // namespace
}  // namespace vlclientui::headless
