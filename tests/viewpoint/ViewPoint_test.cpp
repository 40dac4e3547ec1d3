#include "viewpoint/ViewPoint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "viewpoint/SteeringTest.h"

namespace vlclientui::test {
namespace {

class ViewPointPage : public SteeringTest<ViewPoint> {
 protected:
  void useSmallExtent() {
    service->metadata = basicMetadata({"0.5", "0.5", "1.5", "1.5"});
    service->properties = spacingProperties("0.25", "0.25");
  }
};

TEST_F(ViewPointPage, HasItsOwnCaptionAndName) {
  EXPECT_EQ(window.caption(), "View Point");
  EXPECT_EQ(window.formName(), "ViewPoint");
}

TEST_F(ViewPointPage, HasNoOkButton) {
  EXPECT_EQ(shown().uibtnok, std::nullopt);
  EXPECT_EQ(window.findControl("uibtnok"), nullptr);
}

TEST_F(ViewPointPage, PublishesWithAPointWhateverTheLocale) {
  useComma();
  useSmallExtent();
  click("MoveRight");
  EXPECT_EQ(shown().uiTxtBoxX.text(), "1,25");
  EXPECT_EQ(published(), "1.25|1");
}

TEST_F(ViewPointPage, PublishesTypedCommasAsPointsToo) {
  useComma();
  static_cast<void>(shown());
  typeX("a,b,c");
  EXPECT_EQ(published(), "a.b.c|");
}

TEST_F(ViewPointPage, PublishesACommaAsItStandsWhereTheLocaleHasAPoint) {
  typeX("1,5");
  EXPECT_EQ(published(), "1,5|");
}

TEST_F(ViewPointPage, PublishesWhenItLosesTheFocus) {
  useComma();
  useSmallExtent();
  window.load();
  window.userEnters();
  click("MoveRight");
  window.RefReshViewpoints();
  ASSERT_EQ(published(), "|");
  window.userLeaves();
  EXPECT_EQ(published(), "1.25|1");
}

TEST_F(ViewPointPage, PublishesWhenItIsUnloaded) {
  click("MoveRight");
  window.RefReshViewpoints();
  ASSERT_EQ(published(), "|");
  window.unload();
  EXPECT_EQ(published(), "155|20");
}

TEST_F(ViewPointPage, ReleasedWithoutUnloadingPublishesNothing) {
  {
    ViewPoint released(*toolkit);
    released.controls().uiTxtBoxX.userTypes("5");
    released.RefReshViewpoints();
  }
  EXPECT_EQ(published(), "|");
}

TEST_F(ViewPointPage, UnloadedBeforeAnyLoadPublishesNothing) {
  threadState().gViewPointX = "1";
  window.unload();
  EXPECT_EQ(published(), "1|");
}

TEST_F(ViewPointPage, TellsOfEachPublicationAtItsStart) {
  std::vector<std::string> told;
  window.ViewPointChanged.connect([&] { told.push_back(published()); });
  click("MoveNE");
  // Each box publishes when it is written, and the move itself once more.
  EXPECT_THAT(told, testing::ElementsAre("|", "155|", "155|22"));
}

TEST_F(ViewPointPage, TellsWhenTheFocusLeavesAndWhenItIsUnloaded) {
  window.load();
  window.userEnters();
  click("MoveNE");
  int told = 0;
  window.ViewPointChanged.connect([&] { ++told; });
  window.userLeaves();
  EXPECT_EQ(told, 1);
  window.unload();
  EXPECT_EQ(told, 2);
}

TEST_F(ViewPointPage, CenterTellsOncePerBox) {
  int told = 0;
  window.ViewPointChanged.connect([&] { ++told; });
  click("Center");
  EXPECT_EQ(told, 2);
}

TEST_F(ViewPointPage, AListenerThatFailsEndsThePublicationOnly) {
  window.ViewPointChanged.connect([] { throw RuntimeFailure("the listener fails"); });
  click("MoveNE");
  EXPECT_EQ(published(), "|");
  EXPECT_EQ(boxes(), "155|22");
  EXPECT_EQ(marks(), Marks{"MoveNE"});
}

TEST_F(ViewPointPage, KeepsTheDocumentsThatNothingReads) {
  window.myServiceInfoXml = "<Info/>";
  window.myMetaDataXml = "<Metadata/>";
  window.RefReshViewpoints();
  EXPECT_EQ(window.myServiceInfoXml, "<Info/>");
  EXPECT_EQ(window.myMetaDataXml, "<Metadata/>");
}

}  // namespace
}  // namespace vlclientui::test
