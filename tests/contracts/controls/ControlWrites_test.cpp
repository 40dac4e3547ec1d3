// What a write from code raises, and what an act of a person raises.

#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextBoxWrites : public SampleFormTest {};
class CheckBoxWrites : public SampleFormTest {};
class LabelWrites : public SampleFormTest {};

TEST_F(TextBoxWrites, RaiseTheChangeEventAtEveryWrite) {
  controls().box.setText("a");
  controls().box.setText("b");
  EXPECT_THAT(takeLog(), ElementsAre("box changed", "box changed"));
  EXPECT_EQ(controls().box.text(), "b");
}

TEST_F(TextBoxWrites, RaiseTheChangeEventAlsoForAnEqualText) {
  controls().box.setText("same");
  controls().box.setText("same");
  EXPECT_THAT(takeLog(), ElementsAre("box changed", "box changed"));
}

TEST_F(TextBoxWrites, HaveTheNewTextBeforeTheEvent) {
  std::string seen;
  when("box changed", [&] { seen = controls().box.text(); });
  controls().box.setText("new");
  EXPECT_EQ(seen, "new");
}

TEST_F(TextBoxWrites, MayBeMadeFromTheirOwnChangeEvent) {
  when("box changed", [&] {
    if (controls().box.text() != "final") controls().box.setText("final");
  });
  controls().box.setText("first");
  EXPECT_EQ(controls().box.text(), "final");
  EXPECT_THAT(takeLog(), ElementsAre("box changed", "box changed"));
}

TEST_F(TextBoxWrites, WorkOnADisabledBoxWhichAPersonCannotType) {
  controls().box.setEnabled(false);
  controls().box.userTypes("typed");
  EXPECT_EQ(controls().box.text(), "");
  controls().box.setText("written");
  EXPECT_EQ(controls().box.text(), "written");
  EXPECT_THAT(takeLog(), ElementsAre("box changed"));
}

TEST_F(TextBoxWrites, ByAPersonRaiseTheChangeEventToo) {
  controls().box.userTypes("typed");
  EXPECT_EQ(controls().box.text(), "typed");
  EXPECT_THAT(takeLog(), ElementsAre("box changed"));
}

TEST_F(CheckBoxWrites, RaiseTheClickEvent) {
  controls().check.setChecked(true);
  EXPECT_TRUE(controls().check.checked());
  controls().check.setChecked(false);
  EXPECT_FALSE(controls().check.checked());
  EXPECT_THAT(takeLog(), ElementsAre("check clicked", "check clicked"));
}

TEST_F(CheckBoxWrites, ByAPersonMoveTheFocusThenToggle) {
  controls().box.userFocuses();
  takeLog();
  controls().check.userClicks();
  EXPECT_TRUE(controls().check.checked());
  controls().check.userClicks();
  EXPECT_FALSE(controls().check.checked());
  EXPECT_THAT(takeLog(), ElementsAre("box lost focus", "check got focus", "check clicked", "check clicked"));
}

TEST_F(CheckBoxWrites, ByAPersonDoNotCountAfterAMessageBoxOnTheWay) {
  controls().box.userFocuses();
  when("box lost focus", [&] { toolkit.showMessage({"Complaint", ""}); });
  controls().check.userClicks();
  EXPECT_FALSE(controls().check.checked());
}

TEST_F(CheckBoxWrites, ByAPersonDoNotReachABoxWhoseFormWasUnloadedOnTheWay) {
  controls().box.userFocuses();
  takeLog();
  when("box lost focus", [&] { form.unload(); });
  controls().check.userClicks();
  EXPECT_THAT(form.log, ElementsAre("box lost focus"));
  EXPECT_FALSE(form.loaded());
}

TEST_F(LabelWrites, RaiseNothing) {
  controls().label.setCaption("Other");
  controls().label.setToolTip("Tip");
  controls().label.setTextColor(TextColor::Red);
  EXPECT_EQ(controls().label.caption(), "Other");
  EXPECT_EQ(controls().label.toolTip(), "Tip");
  EXPECT_EQ(controls().label.textColor(), TextColor::Red);
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(LabelWrites, OfEveryAspectTellTheView) {
  std::vector<Aspect> told;
  controls().label.changed.connect([&](Aspect aspect) { told.push_back(aspect); });
  controls().label.setCaption("Other");
  controls().label.setToolTip("Tip");
  controls().label.setTextColor(TextColor::Red);
  controls().label.setEnabled(false);
  controls().label.setVisible(false);
  EXPECT_THAT(told,
              ElementsAre(Aspect::Text, Aspect::ToolTip, Aspect::Color, Aspect::Enabled, Aspect::Visible));
}

TEST_F(LabelWrites, OfAComplaintTellTheViewWhenItIsAnotherOne) {
  std::vector<Aspect> told;
  controls().label.changed.connect([&](Aspect aspect) { told.push_back(aspect); });
  controls().label.setComplaint("");
  EXPECT_THAT(told, IsEmpty());
  controls().label.setComplaint("Too wide.");
  controls().label.setComplaint("Too wide.");
  EXPECT_EQ(controls().label.complaint(), "Too wide.");
  EXPECT_THAT(told, ElementsAre(Aspect::Complaint));
}

}  // namespace
}  // namespace vlclientui::test
