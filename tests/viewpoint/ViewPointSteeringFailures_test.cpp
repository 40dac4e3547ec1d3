// Documents that lack something, extents without a center, and what fails on the way.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "viewpoint/SteeringTest.h"

namespace vlclientui::test {
namespace {

class ViewPointSteeringFailures : public SteeringTest<ViewPoint> {};

TEST_F(ViewPointSteeringFailures, AnExtentAboutZeroHasNoCenterAndNoStep) {
  service->metadata = basicMetadata({"-100", "10", "100", "30"});
  click("MoveNE");
  EXPECT_EQ(boxes(), "0|0");
  EXPECT_EQ(published(), "0|0");
  EXPECT_THAT(service->calls, testing::Each("GetImageMetadata 'Basic'")) << "the step is not read";
  click("Center");
  EXPECT_EQ(boxes(), "0|0");
  EXPECT_EQ(marks(), Marks{});
}

TEST_F(ViewPointSteeringFailures, AnExtentAboutZeroKeepsTheFormerCenterAndStep) {
  click("MoveNE");
  service->metadata = basicMetadata({"-100", "10", "100", "30"});
  service->properties = spacingProperties("50", "20");
  window.RefReshViewpoints();
  click("MoveSW");
  EXPECT_EQ(boxes(), "145|18");
}

TEST_F(ViewPointSteeringFailures, AnExtentAboutZeroInYHasACenterInXOnly) {
  service->metadata = basicMetadata({"100", "-10", "200", "10"});
  click("MoveUp");
  EXPECT_EQ(boxes(), "150|0");
}

TEST_F(ViewPointSteeringFailures, CenterOnAnExtentAboutZeroClearsTheMarksAndWritesNothing) {
  click("MoveUp");
  service->metadata = basicMetadata({"100", "-10", "200", "10"});
  click("Center");
  EXPECT_EQ(boxes(), "150|22");
  EXPECT_EQ(marks(), Marks{});
  // The name of the last move stands, so that the move goes on from the boxes.
  click("MoveUp");
  EXPECT_EQ(boxes(), "150|24");
}

TEST_F(ViewPointSteeringFailures, AMissingUpperEdgeInYLeavesTheRightEdgeUnread) {
  service->metadata = basicMetadata({"100", "10", "200", ""});
  click("Center");
  EXPECT_EQ(boxes(), "50|5");
  click("MoveNE");
  EXPECT_EQ(boxes(), "55|7");
}

TEST_F(ViewPointSteeringFailures, AMissingRightEdgeEndsTheLoad) {
  service->metadata = basicMetadata({"100", "10", "", "30"});
  click("MoveNE");
  EXPECT_EQ(boxes(), "0|0");
  EXPECT_THAT(service->calls, testing::Each("GetImageMetadata 'Basic'"));
}

TEST_F(ViewPointSteeringFailures, AMissingRightEdgeEndsCenter) {
  click("MoveUp");
  service->metadata = basicMetadata({"100", "10", "", "30"});
  click("Center");
  EXPECT_EQ(boxes(), "150|22");
  EXPECT_EQ(marks(), Marks{});
}

TEST_F(ViewPointSteeringFailures, MissingLeftAndLowerEdgesCountAsTheyStood) {
  service->metadata = basicMetadata({"", "", "200", "30"});
  click("Center");
  EXPECT_EQ(boxes(), "100|15");
}

TEST_F(ViewPointSteeringFailures, AMissingStepIsSkipped) {
  service->properties = spacingProperties("", "2");
  click("MoveNE");
  EXPECT_EQ(boxes(), "150|22");
}

TEST_F(ViewPointSteeringFailures, AnEdgeThatIsNoNumberEndsTheLoad) {
  service->metadata = basicMetadata({"west", "10", "200", "30"});
  click("MoveNE");
  EXPECT_EQ(boxes(), "0|0");
}

TEST_F(ViewPointSteeringFailures, AStepThatIsNoNumberLeavesTheOtherUnread) {
  service->properties = spacingProperties("wide", "2");
  click("MoveNE");
  EXPECT_EQ(boxes(), "150|20");
}

TEST_F(ViewPointSteeringFailures, MetadataThatDoesNotParseHasNoNodes) {
  service->metadata = "<Vorlane>";
  click("MoveUp");
  EXPECT_EQ(boxes(), "0|0");
}

TEST_F(ViewPointSteeringFailures, PropertiesThatDoNotParseLeaveTheStep) {
  click("MoveUp");
  service->properties = "no document";
  window.RefReshViewpoints();
  click("MoveDown");
  EXPECT_EQ(boxes(), "150|18");
}

TEST_F(ViewPointSteeringFailures, AServiceThatFailsIsNoFailureOfTheWindow) {
  service->fails = true;
  click("MoveUp");
  EXPECT_EQ(boxes(), "0|0");
  click("Center");
  EXPECT_EQ(boxes(), "0|0");
  EXPECT_TRUE(toolkit->failures().empty());
  EXPECT_TRUE(toolkit->messages().empty());
}

TEST_F(ViewPointSteeringFailures, AnObjectThatIsNoServiceIsNoFailureOfTheWindow) {
  window.myImageServiceObject = std::make_shared<FakeStranger>();
  click("MoveUp");
  EXPECT_EQ(boxes(), "0|0");
  EXPECT_TRUE(toolkit->failures().empty());
}

TEST_F(ViewPointSteeringFailures, ATextThatIsNoNumberEndsTheMoveWithTheMarksCleared) {
  click("MoveUp");
  typeY("north");
  click("MoveUp");
  EXPECT_EQ(boxes(), "150|north");
  EXPECT_EQ(marks(), Marks{});
  typeY("1");
  // The name of the last move was kept.
  click("MoveUp");
  EXPECT_EQ(boxes(), "150|3");
}

TEST_F(ViewPointSteeringFailures, ADiagonalMoveEndsAtTheFirstTextThatIsNoNumber) {
  click("MoveNE");
  typeY("");
  click("MoveNE");
  EXPECT_EQ(boxes(), "160|") << "x went on before y was read";
  EXPECT_EQ(published(), "160|");
}

TEST_F(ViewPointSteeringFailures, ANumberBeyondAllNumbersEndsTheMove) {
  service->metadata = basicMetadata({"1e308", "10", "1.1e308", "30"});
  click("MoveUp");
  EXPECT_EQ(boxes(), "0|0");
}

TEST_F(ViewPointSteeringFailures, ASystemThatFailsIsNoFailureOfTheWindow) {
  static_cast<void>(shown());
  system->everythingFails = true;
  window.RefReshViewpoints();
  click("MoveUp");
  typeX("5");
  EXPECT_EQ(published(), "5|");
  shown().uiTxtBoxX.userPresses(keyCode::f1, keyModifier::control);
  EXPECT_TRUE(toolkit->failures().empty());
}

TEST_F(ViewPointSteeringFailures, WithoutTheSeparatorOfTheLocalePointsFallOut) {
  system->locale.decimalSeparator = "";
  service->metadata = basicMetadata({"0.5", "10", "1.5", "30"});
  click("Center");
  EXPECT_EQ(boxes(), "10|20");
}

TEST_F(ViewPointSteeringFailures, AWindowClosedByPendingEventsStaysClosed) {
  shown().uiTxtBoxX.userFocuses();
  toolkit->setPendingEvents([this] { window.userCloses(); });
  shown().uiTxtBoxX.userTypes("5");
  EXPECT_FALSE(window.loaded());
  EXPECT_EQ(published(), "5|");
}

TEST_F(ViewPointSteeringFailures, AWindowClosedByPendingEventsOfAMoveEndsTheMove) {
  shown().uiTxtBoxX.userFocuses();
  toolkit->setPendingEvents([this] { window.userCloses(); });
  click("MoveNE");
  EXPECT_FALSE(window.loaded());
  EXPECT_EQ(published(), "155|") << "as the boxes stood when the window was closed";
}

TEST_F(ViewPointSteeringFailures, AWindowClosedWhileTheServiceAnswersStaysClosed) {
  shown().uiTxtBoxX.userFocuses();
  service->duringCall = [this] { window.userCloses(); };
  click("Center");
  EXPECT_FALSE(window.loaded());
  EXPECT_EQ(published(), "|");
}

TEST_F(ViewPointSteeringFailures, AWindowClosedByPendingEventsOfARefreshStaysClosed) {
  useComma();
  click("MoveUp");
  toolkit->setPendingEvents([this] { window.userCloses(); });
  window.RefReshViewpoints();
  EXPECT_FALSE(window.loaded());
}

TEST_F(ViewPointSteeringFailures, AWindowClosedByPendingEventsOfItsLoadStaysClosed) {
  useComma();
  toolkit->setPendingEvents([this] { window.userCloses(); });
  window.RefReshViewpoints();
  EXPECT_FALSE(window.loaded());
  EXPECT_THROW(static_cast<void>(window.controls()), RuntimeFailure);
}

TEST_F(ViewPointSteeringFailures, AWindowMayBeReleasedByPendingEvents) {
  auto released = std::make_shared<ViewPoint>(*toolkit);
  released->myImageServiceObject = service;
  TextBox& box = released->controls().uiTxtBoxX;
  toolkit->setPendingEvents([&] { released.reset(); });
  box.userTypes("5");
  EXPECT_EQ(released, nullptr);
  EXPECT_EQ(published(), "5|");
}

TEST_F(ViewPointSteeringFailures, AWindowMayBeReleasedByPendingEventsOfARefresh) {
  auto released = std::make_shared<ViewPoint>(*toolkit);
  released->myImageServiceObject = service;
  toolkit->setPendingEvents([&] { released.reset(); });
  released->RefReshViewpoints();
  EXPECT_EQ(released, nullptr);
}

}  // namespace
}  // namespace vlclientui::test
