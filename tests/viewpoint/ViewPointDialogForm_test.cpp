#include "viewpoint/ViewPointDialogForm.h"

#include <gtest/gtest.h>

#include "viewpoint/SteeringTest.h"

namespace vlclientui::test {
namespace {

class ViewPointDialog : public SteeringTest<ViewPointDialogForm> {
 protected:
  /// Shows the window modally; `act` is the person.
  void show(const std::function<void()>& act) {
    toolkit->scriptModal([&](Form&) { act(); });
    window.showModal();
  }
};

TEST_F(ViewPointDialog, HasItsOwnCaptionAndName) {
  EXPECT_EQ(window.caption(), "ViewPoint");
  EXPECT_EQ(window.formName(), "ViewPointDialogForm");
}

TEST_F(ViewPointDialog, HasAnOkButtonAndNoWayToCancel) {
  ASSERT_NE(shown().uibtnok, std::nullopt);
  EXPECT_EQ(shown().uibtnok->caption(), "&OK");
  EXPECT_EQ(window.cancelButton(), nullptr);
}

TEST_F(ViewPointDialog, PublishesTheSeparatorOfTheLocaleAsItStands) {
  useComma();
  service->properties = spacingProperties("0.5", "0.25");
  click("MoveNE");
  EXPECT_EQ(published(), "150,5|20,25");
}

TEST_F(ViewPointDialog, OkPublishesPointsAndShowsThemUntilTheWindowHasGone) {
  useComma();
  service->properties = spacingProperties("0.5", "0.25");
  std::vector<std::string> seen;
  show([&] {
    click("MoveNE");
    for (TextBox* const box : {&shown().uiTxtBoxX, &shown().uiTxtBoxY}) {
      box->change.connect([&seen, box] { seen.push_back(box->text()); });
    }
    click("uibtnok");
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_EQ(published(), "150.5|20.25");
  EXPECT_EQ(seen, (std::vector<std::string>{"150.5", "20.25"}));
}

TEST_F(ViewPointDialog, OkOfAMoveUpLeavesPointsInACommaLocale) {
  useComma();
  service->metadata = basicMetadata({"0.5", "0.5", "1", "1"});
  show([&] {
    click("MoveUp");
    click("uibtnok");
  });
  EXPECT_EQ(published(), "0.75|2.75");
}

TEST_F(ViewPointDialog, ClosedByItsFrameLeavesTheSeparatorOfTheLocale) {
  useComma();
  service->metadata = basicMetadata({"0.5", "0.5", "1", "1"});
  show([&] {
    click("MoveUp");
    window.userCloses();
  });
  EXPECT_EQ(published(), "0,75|2,75");
}

TEST_F(ViewPointDialog, OkWithAPointLocaleWritesNoBox) {
  int writes = 0;
  show([&] {
    typeX("1,5");
    shown().uiTxtBoxX.change.connect([&] { ++writes; });
    click("uibtnok");
  });
  EXPECT_EQ(writes, 0);
  EXPECT_EQ(published(), "1,5|");
}

TEST_F(ViewPointDialog, OkPublishesAgainWhatTheFocusHasForgotten) {
  show([&] {
    click("MoveUp");
    window.RefReshViewpoints();
    ASSERT_EQ(published(), "|");
    click("uibtnok");
  });
  EXPECT_EQ(published(), "150|22");
}

TEST_F(ViewPointDialog, OkBeforeAnyMovePublishesEmptyTexts) {
  threadState().gViewPointX = "1";
  show([&] { click("uibtnok"); });
  EXPECT_EQ(published(), "|");
}

TEST_F(ViewPointDialog, LosingTheFocusPublishesNothing) {
  window.load();
  window.userEnters();
  click("MoveUp");
  window.RefReshViewpoints();
  window.userLeaves();
  EXPECT_EQ(published(), "|");
}

TEST_F(ViewPointDialog, ClosingPublishesNothing) {
  click("MoveUp");
  window.RefReshViewpoints();
  window.userCloses();
  EXPECT_EQ(published(), "|");
}

TEST_F(ViewPointDialog, ShownAgainHasEmptyBoxesAndTheLastMove) {
  show([&] { click("MoveUp"); });
  show([&] {
    EXPECT_EQ(boxes(), "|");
    // Goes on from empty boxes, where there is no number to go on from.
    click("MoveUp");
    EXPECT_EQ(boxes(), "|");
  });
}

TEST_F(ViewPointDialog, PagesAndDialogsPublishIntoTheSamePlace) {
  ViewPoint page(*toolkit);
  page.myImageServiceObject = service;
  page.controls().MoveUp.userClicks();
  EXPECT_EQ(published(), "150|22");
  show([&] { click("MoveRight"); });
  EXPECT_EQ(published(), "155|20");
}

}  // namespace
}  // namespace vlclientui::test
