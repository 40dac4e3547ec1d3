// What both windows do alike.

#include "viewpoint/ViewPointSteering.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "viewpoint/SteeringTest.h"

namespace vlclientui::test {
namespace {

using BothWindows = testing::Types<ViewPoint, ViewPointDialogForm>;

class WindowNames {
 public:
  template <class Window>
  static std::string GetName(int /*index*/) {
    return std::is_same_v<Window, ViewPoint> ? "Page" : "Dialog";
  }
};

template <class Window>
class ViewPointSteeringOf : public SteeringTest<Window> {};
TYPED_TEST_SUITE(ViewPointSteeringOf, BothWindows, WindowNames);

TYPED_TEST(ViewPointSteeringOf, BoxesAreEmptyUntilTheFirstMove) {
  EXPECT_EQ(this->boxes(), "|");
  EXPECT_EQ(this->marks(), Marks{});
  EXPECT_EQ(this->published(), "|");
}

TYPED_TEST(ViewPointSteeringOf, LabelsAndToolTipsAreTheAgreedOnes) {
  EXPECT_EQ(this->shown().uiLblX.caption(), "X:");
  EXPECT_EQ(this->shown().uiLblY.caption(), "Y:");
  EXPECT_EQ(this->shown().uiTxtBoxX.toolTip(), "X Coordinate");
  EXPECT_EQ(this->shown().uiTxtBoxY.toolTip(), "Y Coordinate");
}

struct FirstStep {
  const char* button;
  const char* boxes;
  const char* secondBoxes;
};

TYPED_TEST(ViewPointSteeringOf, EachButtonStepsItsWayFromTheCenterAndThenOn) {
  for (const FirstStep& step :
       {FirstStep{"MoveUp", "150|22", "150|24"}, FirstStep{"MoveDown", "150|18", "150|16"},
        FirstStep{"MoveLeft", "145|20", "140|20"}, FirstStep{"MoveRight", "155|20", "160|20"},
        FirstStep{"MoveNE", "155|22", "160|24"}, FirstStep{"MoveNW", "145|22", "140|24"},
        FirstStep{"MoveSE", "155|18", "160|16"}, FirstStep{"MoveSW", "145|18", "140|16"}}) {
    this->click(step.button);
    EXPECT_EQ(this->boxes(), step.boxes) << step.button;
    this->click(step.button);
    EXPECT_EQ(this->boxes(), step.secondBoxes) << step.button;
  }
}

TYPED_TEST(ViewPointSteeringOf, AnotherDirectionStartsAnewFromTheCenter) {
  this->click("MoveNE");
  EXPECT_EQ(this->boxes(), "155|22");
  this->click("MoveNE");
  EXPECT_EQ(this->boxes(), "160|24");
  this->click("MoveDown");
  EXPECT_EQ(this->boxes(), "150|18");
}

TYPED_TEST(ViewPointSteeringOf, EachMovePublishesBothBoxes) {
  this->click("MoveNE");
  EXPECT_EQ(this->published(), "155|22");
  this->click("MoveNE");
  EXPECT_EQ(this->published(), "160|24");
}

TYPED_TEST(ViewPointSteeringOf, OnlyTheButtonUsedLastIsMarked) {
  this->click("MoveUp");
  EXPECT_EQ(this->marks(), Marks{"MoveUp"});
  this->click("MoveSW");
  EXPECT_EQ(this->marks(), Marks{"MoveSW"});
  this->click("Center");
  EXPECT_EQ(this->marks(), Marks{"Center"});
}

TYPED_TEST(ViewPointSteeringOf, CenterWritesTheCenterAndPublishesItByTheBoxes) {
  this->click("Center");
  EXPECT_EQ(this->boxes(), "150|20");
  EXPECT_EQ(this->published(), "150|20");
}

TYPED_TEST(ViewPointSteeringOf, CenterTwiceWritesTheSameAndKeepsTheMark) {
  this->click("Center");
  this->click("Center");
  EXPECT_EQ(this->boxes(), "150|20");
  EXPECT_EQ(this->marks(), Marks{"Center"});
}

TYPED_TEST(ViewPointSteeringOf, AMoveAfterCenterStartsFromTheCenter) {
  this->click("MoveUp");
  this->click("Center");
  this->click("MoveUp");
  EXPECT_EQ(this->boxes(), "150|22");
}

TYPED_TEST(ViewPointSteeringOf, CenterReadsTheExtentAnewButNotTheStep) {
  this->click("MoveUp");
  this->service->metadata = basicMetadata({"0", "0", "10", "10"});
  this->service->properties = spacingProperties("100", "100");
  this->click("Center");
  EXPECT_EQ(this->boxes(), "5|5");
  this->click("MoveUp");
  EXPECT_EQ(this->boxes(), "5|7");
}

TYPED_TEST(ViewPointSteeringOf, CenterWithoutDataWritesTheCenterThatItHas) {
  this->click("MoveUp");
  this->window.myImageServiceObject = nullptr;
  this->click("Center");
  EXPECT_EQ(this->boxes(), "150|20");
  EXPECT_EQ(this->marks(), Marks{"Center"});
}

TYPED_TEST(ViewPointSteeringOf, TheSameButtonGoesOnFromWhatWasTyped) {
  this->click("MoveRight");
  this->typeX("1000");
  this->typeY("as it stands");
  this->click("MoveRight");
  EXPECT_EQ(this->boxes(), "1005|as it stands");
}

TYPED_TEST(ViewPointSteeringOf, AnotherButtonForgetsWhatWasTyped) {
  this->click("MoveRight");
  this->typeX("1000");
  this->click("MoveLeft");
  EXPECT_EQ(this->boxes(), "145|20");
}

TYPED_TEST(ViewPointSteeringOf, AnythingTypedIsPublishedAsItStands) {
  this->typeX("north of here");
  EXPECT_EQ(this->published(), "north of here|");
  this->typeY(" ");
  EXPECT_EQ(this->published(), "north of here| ");
}

TYPED_TEST(ViewPointSteeringOf, PendingEventsRunBeforeAChangePublishes) {
  static_cast<void>(this->shown());
  // Events that run inside write no box again.
  this->toolkit->setPendingEvents([this, once = true]() mutable {
    if (std::exchange(once, false)) this->shown().uiTxtBoxY.setText("7");
  });
  this->typeX("5");
  EXPECT_EQ(this->published(), "5|7");
}

TYPED_TEST(ViewPointSteeringOf, AClickInsideAnotherLeavesOneMarkThatOfTheLater) {
  for (const char* const later : {"MoveNE", "Center"}) {
    for (const char* const earlier : {"MoveUp", "MoveSW", "Center"}) {
      for (int change = 1; change <= 2; ++change) {
        this->click("MoveLeft");
        this->toolkit->setPendingEvents([this, later, left = change]() mutable {
          if (--left == 0) this->click(later);
        });
        this->click(earlier);
        this->toolkit->setPendingEvents(nullptr);
        EXPECT_EQ(this->marks(), Marks{later}) << earlier << ", change " << change;
        const std::string expected = std::string(later) == "Center" ? "150|20" : "155|22";
        EXPECT_EQ(this->boxes(), expected) << earlier << ", change " << change;
        EXPECT_EQ(this->published(), expected) << earlier << ", change " << change;
        this->click(later);
        EXPECT_EQ(this->boxes(), std::string(later) == "Center" ? "150|20" : "160|24") << "it was used last";
      }
    }
  }
}

TYPED_TEST(ViewPointSteeringOf, AClickInsideACallOfTheCenterButtonLeavesOneMarkThatOfTheLater) {
  this->click("MoveLeft");
  this->service->duringCall = [this, once = true]() mutable {
    if (std::exchange(once, false)) this->click("MoveNE");
  };
  this->click("Center");
  EXPECT_EQ(this->marks(), Marks{"MoveNE"});
  EXPECT_EQ(this->boxes(), "155|22");
}

TYPED_TEST(ViewPointSteeringOf, TheSameButtonClickedInsideItsOwnClickGoesOnFromTheLater) {
  this->click("MoveLeft");
  this->toolkit->setPendingEvents([this, once = true]() mutable {
    if (std::exchange(once, false)) this->click("MoveNE");
  });
  this->click("MoveNE");
  EXPECT_EQ(this->marks(), Marks{"MoveNE"});
  EXPECT_EQ(this->boxes(), "155|22");
}

TYPED_TEST(ViewPointSteeringOf, AMoveHasNoBounds) {
  for (int i = 0; i < 100; ++i) this->click("MoveLeft");
  EXPECT_EQ(this->boxes(), "-350|20");
}

TYPED_TEST(ViewPointSteeringOf, StepsAreNotRoundedAndShowUpToFifteenDigits) {
  this->service->metadata = basicMetadata({"0", "0", "1", "1"});
  this->service->properties = spacingProperties("0.333333333333333333", "1e-20");
  this->click("MoveNE");
  EXPECT_EQ(this->boxes(), "0.833333333333333|0.5");
}

TYPED_TEST(ViewPointSteeringOf, LargeNumbersShowAsTheirTextSays) {
  this->service->metadata = basicMetadata({"1e15", "1234567.5", "3e15", "1234568.5"});
  this->click("Center");
  EXPECT_EQ(this->boxes(), "2E+15|1234568");
}

TYPED_TEST(ViewPointSteeringOf, CommaLocaleShowsCommas) {
  this->useComma();
  this->service->metadata = basicMetadata({"0.5", "0.25", "1.5", "0.75"});
  this->service->properties = spacingProperties("0.25", "0.125");
  this->click("MoveNE");
  EXPECT_EQ(this->boxes(), "1,25|0,625");
  this->click("MoveNE");
  EXPECT_EQ(this->boxes(), "1,5|0,75");
}

TYPED_TEST(ViewPointSteeringOf, ARefreshForgetsWhatWasPublishedAndKeepsTheBoxes) {
  this->click("MoveUp");
  this->window.RefReshViewpoints();
  EXPECT_EQ(this->published(), "|");
  EXPECT_EQ(this->boxes(), "150|22");
  EXPECT_EQ(this->marks(), Marks{"MoveUp"});
}

TYPED_TEST(ViewPointSteeringOf, ARefreshReadsExtentAndStepAnew) {
  this->click("MoveUp");
  this->service->metadata = basicMetadata({"0", "0", "10", "20"});
  this->service->properties = spacingProperties("1", "3");
  this->window.RefReshViewpoints();
  this->click("MoveDown");
  EXPECT_EQ(this->boxes(), "5|7");
}

TYPED_TEST(ViewPointSteeringOf, ARefreshForgetsWhatWasPublishedAlsoWithoutAnyData) {
  threadState().gViewPointX = "1";
  threadState().gViewPointY = "2";
  this->window.myImageServiceObject = nullptr;
  this->window.RefReshViewpoints();
  EXPECT_EQ(this->published(), "|");
}

TYPED_TEST(ViewPointSteeringOf, LoadingForgetsWhatWasPublished) {
  threadState().gViewPointX = "1";
  this->window.load();
  EXPECT_EQ(this->published(), "|");
}

TYPED_TEST(ViewPointSteeringOf, GettingTheFocusForgetsWhatWasPublishedUntilTheNextChange) {
  this->window.load();
  this->window.userEnters();
  this->click("MoveUp");
  this->window.userLeaves();
  this->window.userEnters();
  EXPECT_EQ(this->published(), "|");
  EXPECT_EQ(this->boxes(), "150|22");
  this->typeX("9");
  EXPECT_EQ(this->published(), "9|22");
}

TYPED_TEST(ViewPointSteeringOf, ARefreshReplacesPointsInTheBoxesWhereTheLocaleHasAComma) {
  this->useComma();
  static_cast<void>(this->shown());
  this->typeX("1.5");
  this->typeY("2.5.5");
  this->window.RefReshViewpoints();
  EXPECT_EQ(this->boxes(), "1,5|2,5,5");
}

TYPED_TEST(ViewPointSteeringOf, ARefreshWritesNoBoxThatHasNothingToReplace) {
  this->useComma();
  this->click("MoveUp");
  int writes = 0;
  this->shown().uiTxtBoxX.change.connect([&] { ++writes; });
  this->shown().uiTxtBoxY.change.connect([&] { ++writes; });
  this->window.RefReshViewpoints();
  EXPECT_EQ(writes, 0);
  EXPECT_EQ(this->published(), "|");
}

TYPED_TEST(ViewPointSteeringOf, ARefreshLeavesTheBoxesAloneWhereTheLocaleHasAPoint) {
  this->typeX("1.5");
  this->window.RefReshViewpoints();
  EXPECT_EQ(this->boxes(), "1.5|");
}

TYPED_TEST(ViewPointSteeringOf, TheServiceIsAskedForBasicMetadata) {
  this->window.load();
  EXPECT_THAT(this->service->calls, testing::ElementsAre("GetImageMetadata 'Basic'", "ServiceProperties"));
  EXPECT_EQ(threadState().gImageMetadataXml, this->service->metadata);
}

TYPED_TEST(ViewPointSteeringOf, ServicePropertiesOfTheThreadStayAsTheyAre) {
  threadState().gServicePropertiesXml = "<Other/>";
  this->window.load();
  EXPECT_EQ(threadState().gServicePropertiesXml, "<Other/>");
}

TYPED_TEST(ViewPointSteeringOf, WithoutAServiceTheDocumentsGivenAreRead) {
  this->window.myImageServiceObject = nullptr;
  this->window.myImageMetaDataXml = basicMetadata({"0", "0", "2", "4"});
  threadState().gServicePropertiesXml = spacingProperties("0.5", "0.25");
  this->click("MoveSE");
  EXPECT_EQ(this->boxes(), "1.5|1.75");
  EXPECT_EQ(threadState().gImageMetadataXml, this->window.myImageMetaDataXml);
}

TYPED_TEST(ViewPointSteeringOf, WithAServiceTheDocumentGivenIsNotRead) {
  this->window.myImageMetaDataXml = basicMetadata({"0", "0", "2", "4"});
  this->click("Center");
  EXPECT_EQ(this->boxes(), "150|20");
}

TYPED_TEST(ViewPointSteeringOf, WithoutMetadataTheFirstMoveShowsZeros) {
  this->window.myImageServiceObject = nullptr;
  this->window.myImageMetaDataXml = "   ";
  threadState().gImageMetadataXml = "as before";
  this->click("MoveUp");
  EXPECT_EQ(this->boxes(), "0|0");
  EXPECT_EQ(threadState().gImageMetadataXml, "as before");
}

TYPED_TEST(ViewPointSteeringOf, TheLastMoveOutlivesTheWindowAndTheBoxesDoNot) {
  this->click("MoveRight");
  this->window.userCloses();
  EXPECT_EQ(this->boxes(), "|");
  EXPECT_EQ(this->marks(), Marks{});
  this->typeX("1");
  // The move goes on from the boxes, as the last one of the former window was the same.
  this->click("MoveRight");
  EXPECT_EQ(this->boxes(), "6|");
}

TYPED_TEST(ViewPointSteeringOf, AnotherObjectHasMadeNoMoveYet) {
  this->click("MoveRight");
  TypeParam another(*this->toolkit);
  another.myImageServiceObject = this->service;
  EXPECT_EQ(another.controls().uiTxtBoxX.text(), "");
  another.controls().MoveRight.userClicks();
  EXPECT_EQ(another.controls().uiTxtBoxX.text(), "155");
}

TYPED_TEST(ViewPointSteeringOf, CtrlF1InEitherBoxOpensTheHelp) {
  for (TextBox* const box : {&this->shown().uiTxtBoxX, &this->shown().uiTxtBoxY}) {
    this->system->launched.clear();
    box->userFocuses();
    box->userPresses(keyCode::f1, keyModifier::control);
    EXPECT_THAT(this->system->launched, testing::ElementsAre("hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/"
                                                             "Using_the_viewpoint_functionality.htm"));
  }
}

TYPED_TEST(ViewPointSteeringOf, CtrlF1OnAButtonOpensTheHelpOnce) {
  this->shown().MoveUp.userFocuses();
  this->shown().MoveUp.userPresses(keyCode::f1, keyModifier::control);
  EXPECT_EQ(this->system->launched.size(), 1U);
}

TYPED_TEST(ViewPointSteeringOf, OtherKeysOpenNoHelp) {
  this->shown().uiTxtBoxX.userFocuses();
  this->shown().uiTxtBoxX.userPresses(keyCode::f1);
  this->shown().uiTxtBoxX.userPresses(keyCode::f1, keyModifier::control | keyModifier::shift);
  EXPECT_TRUE(this->system->launched.empty());
}

TYPED_TEST(ViewPointSteeringOf, WithoutAFocusedControlThereIsNoHelp) {
  this->shown().uiTxtBoxX.userPresses(keyCode::f1, keyModifier::control);
  EXPECT_TRUE(this->system->launched.empty());
}

}  // namespace
}  // namespace vlclientui::test
