// Typing combos, drop-down lists and list boxes.

#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Runs the action and returns the kind of the failure that it throws.
template <class Action>
FailureKind failureOf(Action&& action) {
  try {
    std::forward<Action>(action)();
  } catch (const RuntimeFailure& failure) {
    return failure.kind();
  }
  ADD_FAILURE() << "no failure";
  return FailureKind::General;
}

class Entries : public SampleFormTest {
 protected:
  Entries() { fill(controls().typing, controls().drop, controls().list); }
  template <class... Boxes>
  static void fill(Boxes&... boxes) {
    const auto fillOne = [](EntryControl& box) {
      for (const char* const entry : {"a", "b", "c"}) box.addEntry(entry);
    };
    (fillOne(boxes), ...);
  }
};

class TypingCombos : public Entries {};
class DropDowns : public Entries {};
class ListBoxes : public Entries {};

TEST_F(Entries, AddedRemovedAndClearedRaiseNothing) {
  for (EntryControl* const box :
       {static_cast<EntryControl*>(&controls().typing), static_cast<EntryControl*>(&controls().drop),
        static_cast<EntryControl*>(&controls().list)}) {
    box->addEntry("d");
    box->insertEntry(0, "first");
    EXPECT_THAT(box->entries(), ElementsAre("first", "a", "b", "c", "d"));
    box->removeEntry(2);
    EXPECT_THAT(box->entries(), ElementsAre("first", "a", "c", "d"));
    box->clear();
    EXPECT_EQ(box->count(), 0U);
  }
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Entries, ManyAreAddedAtTheEndWithOneWordToTheView) {
  for (EntryControl* const box :
       {static_cast<EntryControl*>(&controls().typing), static_cast<EntryControl*>(&controls().drop),
        static_cast<EntryControl*>(&controls().list)}) {
    int told = 0;
    box->changed.connect([&told](Aspect aspect) { told += aspect == Aspect::Entries ? 1 : 0; });
    box->addEntries({"d", "e"});
    EXPECT_THAT(box->entries(), ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_EQ(told, 1);
  }
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(Entries, AtIndexCountReadAsAnEmptyString) {
  EXPECT_EQ(controls().list.entry(2), "c");
  EXPECT_EQ(controls().list.entry(3), "");
  controls().list.clear();
  EXPECT_EQ(controls().list.entry(0), "");
}

TEST_F(Entries, BeyondIndexCountAreAFailure) {
  EXPECT_EQ(failureOf([&] { static_cast<void>(controls().list.entry(4)); }), FailureKind::InvalidIndex);
  EXPECT_EQ(failureOf([&] { controls().list.insertEntry(4, "x"); }), FailureKind::InvalidIndex);
  EXPECT_EQ(failureOf([&] { controls().list.removeEntry(3); }), FailureKind::InvalidIndex);
  EXPECT_THAT(controls().list.entries(), ElementsAre("a", "b", "c"));
}

TEST_F(TypingCombos, TakeAWrittenTextWithoutAnyEvent) {
  controls().typing.setText("free text");
  EXPECT_EQ(controls().typing.text(), "free text");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(TypingCombos, TakeAWrittenTextWithoutASelectionEventAlsoWhenItEqualsAnEntry) {
  controls().typing.setText("b");
  EXPECT_EQ(controls().typing.text(), "b");
  EXPECT_FALSE(controls().typing.index().has_value());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(TypingCombos, LoseTheirSelectionWhenAnotherTextIsWritten) {
  controls().typing.setCurrentSelection(1);
  controls().typing.setText("b");
  EXPECT_EQ(controls().typing.index(), 1U);
  controls().typing.setText("other");
  EXPECT_FALSE(controls().typing.index().has_value());
}

TEST_F(TypingCombos, RaiseTheSelectionEventAtEveryWriteOfTheIndex) {
  controls().typing.setIndex(1);
  controls().typing.setIndex(1);
  EXPECT_EQ(controls().typing.text(), "b");
  EXPECT_THAT(takeLog(), ElementsAre("typing selected", "typing selected"));
}

TEST_F(TypingCombos, FailAtAnIndexOutOfRangeAndChangeNothing) {
  controls().typing.setIndex(2);
  takeLog();
  EXPECT_EQ(failureOf([&] { controls().typing.setIndex(3); }), FailureKind::InvalidIndex);
  EXPECT_EQ(controls().typing.index(), 2U);
  EXPECT_EQ(controls().typing.text(), "c");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(TypingCombos, FollowTheirRawSelectionWithoutAnEvent) {
  controls().typing.setCurrentSelection(2);
  EXPECT_EQ(controls().typing.index(), 2U);
  EXPECT_EQ(controls().typing.text(), "c");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(TypingCombos, HaveNoSelectionAfterARawSelectionOutOfRange) {
  controls().typing.setCurrentSelection(2);
  controls().typing.setCurrentSelection(17);
  EXPECT_FALSE(controls().typing.index().has_value());
  EXPECT_EQ(controls().typing.text(), "");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(TypingCombos, AreEmptyInTextAndSelectionAfterClearing) {
  controls().typing.setCurrentSelection(1);
  controls().typing.clear();
  EXPECT_EQ(controls().typing.text(), "");
  EXPECT_FALSE(controls().typing.index().has_value());
}

TEST_F(TypingCombos, KeepTheSelectedRowSelectedWhenRowsMove) {
  controls().typing.setCurrentSelection(1);
  controls().typing.insertEntry(0, "new");
  EXPECT_EQ(controls().typing.index(), 2U);
  controls().typing.removeEntry(0);
  EXPECT_EQ(controls().typing.index(), 1U);
  controls().typing.removeEntry(2);
  EXPECT_EQ(controls().typing.index(), 1U);
  EXPECT_EQ(controls().typing.text(), "b");
}

TEST_F(TypingCombos, RaiseTheChangeEventButNoSelectionEventWhenAPersonTypes) {
  controls().typing.userTypes("b");
  EXPECT_EQ(controls().typing.text(), "b");
  EXPECT_THAT(takeLog(), ElementsAre("typing changed"));
}

TEST_F(TypingCombos, RaiseTheSelectionEventAgainForTheEntryAlreadySelected) {
  controls().typing.userSelects(0);
  controls().typing.userSelects(0);
  EXPECT_THAT(takeLog(), ElementsAre("typing selected", "typing selected"));
}

TEST_F(DropDowns, SelectTheEntryOfAWrittenTextAndRaiseTheSelectionEvent) {
  controls().drop.setText("c");
  EXPECT_EQ(controls().drop.index(), 2U);
  EXPECT_EQ(controls().drop.text(), "c");
  EXPECT_THAT(takeLog(), ElementsAre("drop selected"));
}

TEST_F(DropDowns, RaiseTheSelectionEventAlsoForAnEqualText) {
  controls().drop.setText("c");
  controls().drop.setText("c");
  EXPECT_THAT(takeLog(), ElementsAre("drop selected", "drop selected"));
}

TEST_F(DropDowns, FailAtATextThatIsNoEntry) {
  controls().drop.setText("a");
  takeLog();
  EXPECT_EQ(failureOf([&] { controls().drop.setText("A"); }), FailureKind::InvalidIndex);
  EXPECT_EQ(controls().drop.text(), "a");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(DropDowns, RaiseTheSelectionEventAtEveryWriteOfTheIndex) {
  controls().drop.setIndex(0);
  controls().drop.setIndex(0);
  EXPECT_THAT(takeLog(), ElementsAre("drop selected", "drop selected"));
  EXPECT_EQ(failureOf([&] { controls().drop.setIndex(3); }), FailureKind::InvalidIndex);
}

TEST_F(DropDowns, FollowTheirRawSelectionWithoutAnEvent) {
  controls().drop.setCurrentSelection(1);
  EXPECT_EQ(controls().drop.text(), "b");
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(DropDowns, RaiseTheSelectionEventAgainForTheEntryAlreadySelected) {
  controls().drop.userSelects(1);
  controls().drop.userSelects(1);
  EXPECT_THAT(takeLog(), ElementsAre("drop selected", "drop selected"));
}

TEST_F(DropDowns, IgnoreAPersonWhileDisabledOrHidden) {
  controls().drop.setEnabled(false);
  controls().drop.userSelects(1);
  controls().drop.setEnabled(true);
  controls().drop.setVisible(false);
  controls().drop.userSelects(1);
  EXPECT_FALSE(controls().drop.index().has_value());
  EXPECT_THAT(takeLog(), IsEmpty());
}

TEST_F(ListBoxes, SelectExactlyTheRowsThatAPersonPicks) {
  controls().list.userSelects({0, 2});
  EXPECT_TRUE(controls().list.selected(0));
  EXPECT_FALSE(controls().list.selected(1));
  EXPECT_TRUE(controls().list.selected(2));
  controls().list.userSelects({1});
  EXPECT_FALSE(controls().list.selected(0));
  EXPECT_TRUE(controls().list.selected(1));
  EXPECT_THAT(takeLog(), ElementsAre("list clicked", "list clicked"));
}

TEST_F(ListBoxes, RaiseTheSelectionEventAgainForTheRowsAlreadySelected) {
  controls().list.userSelects({1});
  controls().list.userSelects({1});
  EXPECT_THAT(takeLog(), ElementsAre("list clicked", "list clicked"));
}

TEST_F(ListBoxes, HaveNothingSelectedAtAndBeyondCount) {
  controls().list.userSelects({2, 3, 9});
  EXPECT_FALSE(controls().list.selected(3));
  EXPECT_FALSE(controls().list.selected(9));
  EXPECT_TRUE(controls().list.anySelected());
}

TEST_F(ListBoxes, LetSelectedMarksTravelWithTheirRows) {
  controls().list.userSelects({1});
  controls().list.insertEntry(0, "new");
  EXPECT_FALSE(controls().list.selected(1));
  EXPECT_TRUE(controls().list.selected(2));
  controls().list.removeEntry(0);
  EXPECT_TRUE(controls().list.selected(1));
  controls().list.removeEntry(1);
  EXPECT_FALSE(controls().list.anySelected());
}

TEST_F(ListBoxes, HaveNoMarksAfterClearing) {
  controls().list.userSelects({0, 1, 2});
  controls().list.clear();
  EXPECT_FALSE(controls().list.anySelected());
  fill(controls().list);
  EXPECT_FALSE(controls().list.anySelected());
}

TEST_F(Entries, OfAControlWithoutASelectionComeAndGo) {
  EntryControl plain(nullptr, "plain", ControlKind::ListBox);
  plain.addEntries({"a", "b"});
  plain.insertEntry(1, "between");
  plain.removeEntry(0);
  EXPECT_THAT(plain.entries(), ElementsAre("between", "b"));
  plain.clear();
  EXPECT_THAT(plain.entries(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
