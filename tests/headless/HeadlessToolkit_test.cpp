#include "headless/HeadlessToolkit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/RuntimeFailure.h"

namespace vlclientui::headless {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A form of two hosted controls and a box, for tests.
class TwoPages : public Form {
 public:
  struct Controls {
    explicit Controls(TwoPages& form)
        : box(form, "box"), first(&form, "first", "Page"), second(&form, "second", "Page") {}
    TextBox box;
    HostedControl first;
    HostedControl second;
  };

  explicit TwoPages(Toolkit& toolkit) : Form(toolkit, "TwoPages") { setCaption("Two pages"); }
  Controls& controls() {
    load();
    return *controls_;
  }

  std::function<void()> whenBoxGetsFocus;

 protected:
  std::shared_ptr<void> buildControls() override {
    controls_ = std::make_shared<Controls>(*this);
    controls_->box.gotFocus.connect([this] {
      if (whenBoxGetsFocus) whenBoxGetsFocus();
    });
    return controls_;
  }
  void dropControls() override { controls_.reset(); }

 private:
  std::shared_ptr<Controls> controls_;
};

class HeadlessBoxes : public testing::Test {
 protected:
  MessageAnswer show(MessageButtons buttons) {
    return toolkit.showMessage({"Text", "Title", MessageIcon::Question, buttons});
  }
  HeadlessToolkit toolkit;
};

class HeadlessWindows : public testing::Test {
 protected:
  HeadlessToolkit toolkit;
  TwoPages form{toolkit};
};

class HeadlessShows : public HeadlessWindows {};

TEST_F(HeadlessBoxes, AreRecordedWhole) {
  show(MessageButtons::YesNo);
  EXPECT_THAT(toolkit.messages(),
              ElementsAre(MessageBox{"Text", "Title", MessageIcon::Question, MessageButtons::YesNo}));
}

TEST_F(HeadlessBoxes, AreAnsweredByTheirFirstButton) {
  EXPECT_EQ(show(MessageButtons::Ok), MessageAnswer::Ok);
  EXPECT_EQ(show(MessageButtons::OkCancel), MessageAnswer::Ok);
  EXPECT_EQ(show(MessageButtons::YesNo), MessageAnswer::Yes);
  EXPECT_EQ(show(MessageButtons::YesNoCancel), MessageAnswer::Yes);
}

TEST_F(HeadlessBoxes, AreAnsweredFromTheQueueInOrder) {
  toolkit.answerMessage(MessageAnswer::No);
  toolkit.answerMessage(MessageAnswer::Cancel);
  EXPECT_EQ(show(MessageButtons::YesNoCancel), MessageAnswer::No);
  EXPECT_EQ(show(MessageButtons::YesNoCancel), MessageAnswer::Cancel);
  EXPECT_EQ(show(MessageButtons::YesNoCancel), MessageAnswer::Yes);
}

TEST_F(HeadlessBoxes, AreToldToTheListenerBeforeTheyAreAnswered) {
  toolkit.onMessage([&](const MessageBox& box) {
    EXPECT_EQ(box.text, "Text");
    toolkit.answerMessage(MessageAnswer::No);
  });
  EXPECT_EQ(show(MessageButtons::YesNo), MessageAnswer::No);
}

TEST_F(HeadlessBoxes, OfFilesAreCanceledUnlessAChoiceWaits) {
  const FileDialog dialog{"name", "All|*.*", "Title"};
  EXPECT_EQ(toolkit.openFile(dialog), std::nullopt);
  toolkit.chooseFile("C:\\file");
  EXPECT_EQ(toolkit.openFile(dialog), "C:\\file");
  EXPECT_EQ(toolkit.openFile(dialog), std::nullopt);
  EXPECT_THAT(toolkit.fileDialogs(), ElementsAre(dialog, dialog, dialog));
}

TEST_F(HeadlessBoxes, OfFilesToSaveAreRecordedApart) {
  const FileDialog dialog{"name", "All|*.*", "Title", "C:\\start"};
  EXPECT_EQ(toolkit.saveFile(dialog), std::nullopt);
  toolkit.chooseFile("C:\\file");
  EXPECT_EQ(toolkit.saveFile(dialog), "C:\\file");
  EXPECT_THAT(toolkit.saveDialogs(), ElementsAre(dialog, dialog));
  EXPECT_THAT(toolkit.fileDialogs(), testing::IsEmpty());
}

TEST_F(HeadlessBoxes, OfFoldersAreCanceledUnlessAChoiceWaits) {
  const FolderDialog dialog{18, 3, "Title", 0x241};
  EXPECT_FALSE(toolkit.browseForFolder(dialog).has_value());
  toolkit.chooseFolder({"C:\\folder", "folder"});
  const auto choice = toolkit.browseForFolder(dialog);
  ASSERT_TRUE(choice.has_value());
  EXPECT_EQ(choice->path, "C:\\folder");
  EXPECT_EQ(choice->displayName, "folder");
  EXPECT_THAT(toolkit.folderDialogs(), ElementsAre(dialog, dialog));
}

TEST_F(HeadlessBoxes, LeaveTheRestOfTheToolkitToRecords) {
  toolkit.setPointer(Pointer::Hourglass);
  toolkit.setPointer(Pointer::Default);
  toolkit.setClipboardText("copied");
  toolkit.reportFailure("failed");
  EXPECT_THAT(toolkit.pointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
  EXPECT_EQ(toolkit.clipboardText(), "copied");
  EXPECT_THAT(toolkit.failures(), ElementsAre("failed"));
  EXPECT_EQ(toolkit.twipsPerPixelX(), 15);
  EXPECT_EQ(toolkit.twipsPerPixelY(), 15);
}

TEST_F(HeadlessBoxes, LetPendingEventsRunOnlyWhenThereAreAny) {
  toolkit.letPendingEventsRun();
  int runs = 0;
  toolkit.setPendingEvents([&] { ++runs; });
  EXPECT_EQ(runs, 0);
  toolkit.letPendingEventsRun();
  toolkit.letPendingEventsRun();
  EXPECT_EQ(runs, 2);
}

TEST_F(HeadlessWindows, ExistForEachHostedControlOfALoadedForm) {
  const WindowHandle first = toolkit.windowOf(form.controls().first);
  const WindowHandle second = toolkit.windowOf(form.controls().second);
  EXPECT_NE(first, 0);
  EXPECT_NE(second, 0);
  EXPECT_NE(first, second);
  EXPECT_TRUE(toolkit.hasWindow(first));
}

TEST_F(HeadlessWindows, GoWithTheUnloadOfTheirForm) {
  const WindowHandle first = toolkit.windowOf(form.controls().first);
  const WindowHandle inside = toolkit.addChildWindow(first, "inside");
  form.unload();
  EXPECT_FALSE(toolkit.hasWindow(first));
  EXPECT_FALSE(toolkit.hasWindow(inside));
}

TEST_F(HeadlessWindows, OfTwoFormsGoEachWithItsOwn) {
  TwoPages other(toolkit);
  const WindowHandle own = toolkit.windowOf(form.controls().first);
  const WindowHandle others = toolkit.windowOf(other.controls().first);
  form.unload();
  EXPECT_FALSE(toolkit.hasWindow(own));
  EXPECT_TRUE(toolkit.hasWindow(others));
  EXPECT_EQ(toolkit.windowOf(other.controls().first), others);
}

TEST_F(HeadlessWindows, AreNewOnesAtEachLoad) {
  const WindowHandle before = toolkit.windowOf(form.controls().first);
  form.unload();
  EXPECT_NE(toolkit.windowOf(form.controls().first), before);
}

TEST_F(HeadlessWindows, MayBeRemovedBeforeTheirFormIsUnloaded) {
  const WindowHandle first = toolkit.windowOf(form.controls().first);
  toolkit.removeWindow(first);
  form.unload();
  EXPECT_FALSE(toolkit.hasWindow(first));
}

TEST_F(HeadlessWindows, ListTheirChildrenTopmostFirst) {
  const WindowHandle parent = toolkit.windowOf(form.controls().first);
  const WindowHandle below = toolkit.addChildWindow(parent, "below");
  const WindowHandle above = toolkit.addChildWindow(parent, "above");
  static_cast<void>(toolkit.addChildWindow(below, "grandchild"));
  EXPECT_THAT(toolkit.childWindows(parent), ElementsAre(above, below));
  toolkit.removeWindow(above);
  EXPECT_THAT(toolkit.childWindows(parent), ElementsAre(below));
  EXPECT_THAT(toolkit.childWindows(0), IsEmpty());
  EXPECT_THAT(toolkit.childWindows(999), IsEmpty());
}

TEST_F(HeadlessWindows, TakeTheirChildrenWithThem) {
  const WindowHandle parent = toolkit.windowOf(form.controls().first);
  const WindowHandle child = toolkit.addChildWindow(parent, "child");
  const WindowHandle grandchild = toolkit.addChildWindow(child, "grandchild");
  toolkit.removeWindow(child);
  EXPECT_FALSE(toolkit.hasWindow(grandchild));
  EXPECT_TRUE(toolkit.hasWindow(parent));
}

TEST_F(HeadlessWindows, HaveNoChildBelowAWindowThatIsMissing) {
  EXPECT_EQ(toolkit.addChildWindow(0, "x"), 0);
  EXPECT_EQ(toolkit.addChildWindow(999, "x"), 0);
}

TEST_F(HeadlessWindows, GiveTheirTitleUpToALimit) {
  const WindowHandle parent = toolkit.windowOf(form.controls().first);
  const WindowHandle child = toolkit.addChildWindow(parent, "CHSList");
  EXPECT_EQ(toolkit.windowTitle(child, 4), "CHSL");
  EXPECT_EQ(toolkit.windowTitle(child, 100), "CHSList");
  EXPECT_EQ(toolkit.windowTitle(999, 4), "");
}

TEST_F(HeadlessWindows, RememberWhetherTheyAreEnabled) {
  const WindowHandle window = toolkit.windowOf(form.controls().first);
  EXPECT_TRUE(toolkit.isWindowEnabled(window));
  toolkit.enableWindow(window, false);
  EXPECT_FALSE(toolkit.isWindowEnabled(window));
  toolkit.enableWindow(window, true);
  EXPECT_TRUE(toolkit.isWindowEnabled(window));
  toolkit.enableWindow(999, true);
  EXPECT_FALSE(toolkit.isWindowEnabled(999));
}

TEST_F(HeadlessShows, HandTheFormToTheScript) {
  Form* shown = nullptr;
  toolkit.scriptModal([&](Form& given) {
    shown = &given;
    EXPECT_TRUE(given.loaded());
  });
  form.showModal();
  EXPECT_EQ(shown, &form);
}

TEST_F(HeadlessShows, CloseTheFormByItsFrameWhenTheScriptLeavesItLoaded) {
  toolkit.scriptModal([](Form&) {});
  form.showModal();
  EXPECT_FALSE(form.loaded());
}

TEST_F(HeadlessShows, CloseTheFormAtOnceWithoutAScript) {
  form.showModal();
  EXPECT_FALSE(form.loaded());
}

TEST_F(HeadlessShows, AcceptAScriptThatUnloadsTheForm) {
  toolkit.scriptModal([](Form& shown) { shown.unload(); });
  form.showModal();
  EXPECT_FALSE(form.loaded());
  EXPECT_THAT(toolkit.failures(), IsEmpty());
}

TEST_F(HeadlessShows, UseTheirScriptsUpInOrder) {
  std::vector<int> ran;
  toolkit.scriptModal([&](Form&) { ran.push_back(1); });
  toolkit.scriptModal([&](Form&) { ran.push_back(2); });
  form.showModal();
  form.showModal();
  form.showModal();
  EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(HeadlessShows, MayBeNested) {
  TwoPages inner(toolkit);
  std::vector<std::string> order;
  toolkit.scriptModal([&](Form&) {
    order.emplace_back("outer begins");
    inner.showModal();
    order.emplace_back("outer ends");
  });
  toolkit.scriptModal([&](Form& shown) {
    EXPECT_EQ(&shown, &inner);
    order.emplace_back("inner");
  });
  form.showModal();
  EXPECT_THAT(order, ElementsAre("outer begins", "inner", "outer ends"));
}

TEST_F(HeadlessShows, GiveTheFocusBeforeTheScriptRuns) {
  bool focused = false;
  toolkit.scriptModal([&](Form&) { focused = form.controls().box.hasFocus(); });
  form.showModal();
  EXPECT_TRUE(focused);
}

TEST_F(HeadlessShows, RunNoScriptOnAFormThatUnloadedItselfAsItAppeared) {
  bool ran = false;
  form.whenBoxGetsFocus = [&] { form.unload(); };
  toolkit.scriptModal([&](Form&) { ran = true; });
  form.showModal();
  EXPECT_FALSE(ran);
  EXPECT_FALSE(form.loaded());
}

TEST_F(HeadlessShows, RecordAFailureAsTheWindowAppears) {
  form.whenBoxGetsFocus = [] { throw RuntimeFailure("cannot appear"); };
  form.showModal();
  EXPECT_THAT(toolkit.failures(), ElementsAre("cannot appear"));
  EXPECT_FALSE(form.loaded());
}

}  // namespace
}  // namespace vlclientui::headless
