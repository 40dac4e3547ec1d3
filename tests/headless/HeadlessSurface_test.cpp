#include "headless/HeadlessSurface.h"

#include <functional>

#include <gmock/gmock.h>

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
  void fieldEdited(const std::string& path, const std::string& text) override {
    calls.push_back("edit " + path + " " + text);
  }
  void fieldLeft(const std::string& path) override { calls.push_back("leave " + path); }
  void buttonPressed(const std::string& path) override { calls.push_back("press " + path); }
  bool helpAsked(const std::string& path) override {
    calls.push_back("help " + path);
    return true;
  }

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

std::shared_ptr<const engine::FormModel> samplePage() {
  return std::make_shared<engine::FormModel>(
      engine::buildForm(*engine::testXml(),
                        {"<V><A/><B/><C C_LIST_='1=One;2=Two'/><D D_KIND_='yesno'/><E E_KIND_='button'/>"
                         "<F F_READONLY_='True'/></V>",
                         "", "<V><A>a</A><B>b</B><C>3</C><D>True</D><E/><F>f</F></V>", "//"},
                        engine::PageMode::Editable));
}

TEST_F(HeadlessSurfaces, ReportWhatAPersonDoesInFields) {
  made->attach(5, "Page");
  made->showForm(samplePage());
  surface.userTypes("A", "x");
  surface.userTypes("V/B", "y");
  surface.userPressesF1();
  surface.userPressesButton("E");
  surface.userPressesF1();
  surface.userLeavesField();
  surface.userPressesF1();
  EXPECT_EQ(listener->calls, (Strings{"edit V/A x", "leave V/A", "edit V/B y", "help V/B", "leave V/B",
                                      "press V/E", "help V/E", "help "}));
}

TEST_F(HeadlessSurfaces, AChoiceIsPickedByItsTextByItsCodeOrAsTheDataHadIt) {
  made->attach(5, "Page");
  made->showForm(samplePage());
  surface.userTypes("C", "Two");
  surface.userTypes("C", "1");
  surface.userTypes("C", "3");
  surface.userTypes("D", "false");
  EXPECT_EQ(listener->calls, (Strings{"edit V/C Two", "edit V/C One", "edit V/C 3", "edit V/D No"}));
}

std::string refusalOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const RuntimeFailure& failure) {
    return failure.description();
  }
  return "";
}

TEST_F(HeadlessSurfaces, WhatAPersonCannotDoIsRefusedInWords) {
  made->attach(5, "Page");
  made->showForm(samplePage());
  EXPECT_EQ(refusalOf([&] { surface.userTypes("C", "Six"); }),
            "'C' has no choice 'Six'; it has 'One', 'Two', '3'");
  EXPECT_EQ(refusalOf([&] { surface.userTypes("D", "maybe"); }),
            "'D' has no choice 'maybe'; it has 'Yes', 'No'");
  EXPECT_EQ(refusalOf([&] { surface.userTypes("F", "x"); }), "'F' is read-only");
  EXPECT_EQ(refusalOf([&] { surface.userTypes("G", "x"); }), "The page has no field 'G'");
  EXPECT_EQ(refusalOf([&] { surface.userTypes("E", "x"); }), "'E' is a button");
  EXPECT_EQ(refusalOf([&] { surface.userPressesButton("A"); }), "'A' is no button");
  auto page = *samplePage();
  page.findField("A")->visible = false;
  page.findField("B")->enabled = false;
  made->updateForm(std::make_shared<engine::FormModel>(page));
  EXPECT_EQ(refusalOf([&] { surface.userTypes("A", "x"); }), "The page does not show 'A' now");
  EXPECT_EQ(refusalOf([&] { surface.userTypes("B", "x"); }), "'B' is disabled");
  EXPECT_THAT(listener->calls, testing::IsEmpty());
}

TEST_F(HeadlessSurfaces, AFieldThatIsDisabledLosesTheFocus) {
  made->attach(5, "Page");
  made->showForm(samplePage());
  surface.userTypes("A", "x");
  auto page = *samplePage();
  page.findField("A")->enabled = false;
  made->updateForm(std::make_shared<engine::FormModel>(page));
  EXPECT_EQ(surface.focusedField(), "");
}

TEST_F(HeadlessSurfaces, OutsideAnyWindowNoFieldCanBeReached) {
  made->showForm(samplePage());
  EXPECT_THROW(surface.userTypes("A", "x"), RuntimeFailure);
  EXPECT_THROW(surface.userLeavesField(), RuntimeFailure);
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
