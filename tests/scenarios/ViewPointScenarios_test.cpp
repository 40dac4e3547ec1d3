// What a person does to steer a viewpoint and what comes of it. Built once per window system.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "scenarios/ViewPointPerson.h"
#include "support/ViewPointFixture.h"
#include "viewpoint/ViewPoint.h"
#include "viewpoint/ViewPointDialogForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The extent is 100 to 200 by 10 to 30, a step 5 and 2.
class ViewPointScenarios : public ViewPointFixture {
 protected:
  ViewPointScenarios() {
    page.myImageServiceObject = service;
    dialog.myImageServiceObject = service;
  }
  /// Both boxes, with a bar between.
  [[nodiscard]] std::string boxes() const {
    return person->text("uiTxtBoxX") + "|" + person->text("uiTxtBoxY");
  }

  std::unique_ptr<ViewPointPerson> person = makeViewPointPerson();
  std::shared_ptr<Toolkit> shown = person->equip(system);
  ViewPoint page{*shown};
  ViewPointDialogForm dialog{*shown};
};

TEST_F(ViewPointScenarios, BothWindowsOpenWithEmptyBoxesAndNoMark) {
  for (ViewPointSteering* const window :
       {static_cast<ViewPointSteering*>(&page), static_cast<ViewPointSteering*>(&dialog)}) {
    person->open(*window);
    EXPECT_EQ(boxes(), "|");
    EXPECT_THAT(person->marked(), IsEmpty());
    EXPECT_EQ(person->caption(), window == &page ? "View Point" : "ViewPoint");
  }
}

TEST_F(ViewPointScenarios, HoldingToADirectionWalksAndANewOneStartsFromTheCenter) {
  person->open(page);
  person->click("MoveNE");
  EXPECT_EQ(boxes(), "155|22");
  person->click("MoveNE");
  EXPECT_EQ(boxes(), "160|24");
  person->click("MoveDown");
  EXPECT_EQ(boxes(), "150|18");
  EXPECT_EQ(published(), "150|18");
  EXPECT_THAT(person->marked(), ElementsAre("MoveDown"));
}

TEST_F(ViewPointScenarios, TheMiddleButtonGoesToTheCenter) {
  person->open(page);
  person->click("MoveSW");
  person->click("Center");
  person->click("Center");
  EXPECT_EQ(boxes(), "150|20");
  EXPECT_EQ(published(), "150|20");
  EXPECT_THAT(person->marked(), ElementsAre("Center"));
}

TEST_F(ViewPointScenarios, AClickInsideAnotherLeavesOneMarkThatOfTheLater) {
  for (ViewPointSteering* const window :
       {static_cast<ViewPointSteering*>(&page), static_cast<ViewPointSteering*>(&dialog)}) {
    person->open(*window);
    person->clickWhileEventsRun("MoveNE");
    person->click("MoveSW");
    EXPECT_THAT(person->marked(), ElementsAre("MoveNE"));
    EXPECT_EQ(boxes(), "155|22");
    EXPECT_EQ(published(), "155|22");
    person->click("MoveNE");
    EXPECT_EQ(boxes(), "160|24");
    person->closeByFrame();
  }
}

TEST_F(ViewPointScenarios, AStepGoesOnFromWhatWasTyped) {
  person->open(page);
  person->click("MoveRight");
  person->type("uiTxtBoxX", "1000");
  EXPECT_EQ(published(), "1000|20");
  person->click("MoveRight");
  EXPECT_EQ(boxes(), "1005|20");
}

TEST_F(ViewPointScenarios, ThePagePublishesPointsInACommaLocaleAndTheDialogOnlyAtOk) {
  useComma();
  service->metadata = basicMetadata({"0.5", "0.5", "1.5", "1.5"});
  service->properties = spacingProperties("0.25", "0.25");
  person->open(page);
  person->click("MoveRight");
  EXPECT_EQ(boxes(), "1,25|1");
  EXPECT_EQ(published(), "1.25|1");
  person->closeByFrame();
  person->open(dialog);
  person->click("MoveRight");
  EXPECT_EQ(published(), "1,25|1");
  person->click("uibtnok");
  EXPECT_FALSE(person->windowIsOpen());
  EXPECT_EQ(published(), "1.25|1");
}

TEST_F(ViewPointScenarios, TheDialogClosedByItsFrameKeepsTheSeparatorOfTheLocale) {
  useComma();
  service->metadata = basicMetadata({"0.5", "0.5", "1", "1"});
  person->open(dialog);
  person->click("MoveUp");
  person->closeByFrame();
  EXPECT_FALSE(person->windowIsOpen());
  EXPECT_EQ(published(), "0,75|2,75");
}

TEST_F(ViewPointScenarios, EnterInABoxOfTheDialogIsOk) {
  person->open(dialog);
  person->click("Center");
  person->type("uiTxtBoxY", "7.5");
  person->pressEnter();
  EXPECT_FALSE(person->windowIsOpen());
  EXPECT_EQ(published(), "150|7.5");
}

TEST_F(ViewPointScenarios, ComingBackForgetsWhatWasPublishedUntilThePageIsLeft) {
  person->open(page);
  person->type("uiTxtBoxX", "12");
  person->goElsewhere();
  EXPECT_EQ(published(), "12|");
  person->comeBack();
  EXPECT_EQ(published(), "|");
  EXPECT_EQ(boxes(), "12|");
  person->goElsewhere();
  EXPECT_EQ(published(), "12|");
}

TEST_F(ViewPointScenarios, ATypedTextThatIsNoNumberIsPublishedAndStopsTheNextStep) {
  person->open(page);
  person->click("MoveUp");
  person->type("uiTxtBoxY", "north");
  EXPECT_EQ(published(), "150|north");
  person->click("MoveUp");
  EXPECT_EQ(boxes(), "150|north");
  EXPECT_THAT(person->marked(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
