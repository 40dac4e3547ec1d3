#include "contracts/controls/Visit.h"

#include <optional>

#include "contracts/CallOut.h"
#include "contracts/Silence.h"
#include "contracts/controls/SampleForm.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A port that runs an action before it answers.
struct Outside {
  std::function<void()> meanwhile;
  int calls = 0;
  bool fails = false;

  std::string answer(const std::string& question = {}) {
    ++calls;
    if (meanwhile) meanwhile();
    if (fails) throw RuntimeFailure("no answer");
    return "answer" + question;
  }
};

class Visits : public testing::Test {
 protected:
  /// Loads the form in a window of the host.
  WindowHandle standInHost() {
    const WindowHandle host = toolkit.addHostWindow("host");
    form->load();
    toolkit.setParent(toolkit.windowOf(*form), host);
    return host;
  }

  headless::HeadlessToolkit toolkit;
  std::shared_ptr<SampleForm> form = std::make_shared<SampleForm>(toolkit);
  std::shared_ptr<Outside> outside = std::make_shared<Outside>();
};

TEST_F(Visits, StandWhileTheWindowIsTheOneThatWasEntered) {
  form->load();
  const Visit visit(*form);
  EXPECT_TRUE(visit.stands());
  form->controls().box.setText("x");
  EXPECT_TRUE(visit.stands());
  EXPECT_NO_THROW(Visit::lookAgain());
}

TEST_F(Visits, EndWhenTheWindowIsClosed) {
  form->load();
  const Visit visit(*form);
  form->userCloses();
  EXPECT_FALSE(visit.stands());
  EXPECT_THROW(Visit::lookAgain(), WindowGone);
}

TEST_F(Visits, EndWhenAnotherWindowIsShownInThePlaceOfTheFormer) {
  form->load();
  const Visit visit(*form);
  form->userCloses();
  form->load();
  EXPECT_FALSE(visit.stands());
}

TEST_F(Visits, EndWhenTheWindowGoesWithOneOfTheHost) {
  const WindowHandle host = standInHost();
  const Visit visit(*form);
  EXPECT_TRUE(visit.stands());
  toolkit.removeWindow(host);
  EXPECT_TRUE(form->loaded());
  EXPECT_FALSE(visit.stands());
}

TEST_F(Visits, StandWhenTheWindowIsPutIntoAnother) {
  const WindowHandle host = standInHost();
  const Visit visit(*form);
  toolkit.setParent(toolkit.windowOf(*form), 0);
  toolkit.setParent(toolkit.windowOf(*form), host);
  EXPECT_TRUE(visit.stands());
}

TEST_F(Visits, ToAFormWithoutAWindowEndWhenItGetsOne) {
  const Visit visit(*form);
  EXPECT_TRUE(visit.stands());
  form->load();
  EXPECT_FALSE(visit.stands());
}

TEST_F(Visits, ToNoWindowAlwaysStand) {
  form->load();
  const Visit outer(*form);
  {
    const Visit noWindow;
    form->userCloses();
    EXPECT_TRUE(noWindow.stands());
    EXPECT_NO_THROW(Visit::lookAgain()) << "what encloses it is not asked";
  }
  EXPECT_THROW(Visit::lookAgain(), WindowGone);
}

TEST_F(Visits, AreAskedFromTheInnermostOn) {
  SampleForm other(toolkit);
  form->load();
  other.load();
  const Visit outer(*form);
  {
    const Visit inner(other);
    form->userCloses();
    EXPECT_NO_THROW(Visit::lookAgain());
    EXPECT_NO_THROW(Visit::lookAgainIn(*form));
    other.userCloses();
    EXPECT_THROW(Visit::lookAgainIn(other), WindowGone);
  }
  EXPECT_NO_THROW(Visit::lookAgainIn(other));
  EXPECT_THROW(Visit::lookAgainIn(*form), WindowGone);
}

TEST_F(Visits, KeepTheControlsThatTheyCameFor) {
  TextBox& box = form->controls().box;
  {
    const Visit visit(*form);
    form->userCloses();
    EXPECT_EQ(form->livingSets(), 1);
    box.setText("nobody sees it");
    EXPECT_EQ(box.text(), "nobody sees it");
  }
  EXPECT_EQ(form->livingSets(), 0);
}

TEST_F(Visits, KeepTheFormThatItsHolderLetsGo) {
  const std::weak_ptr<SampleForm> watched = form;
  form->load();
  {
    const Visit visit(*form);
    form.reset();
    EXPECT_FALSE(watched.expired());
  }
  EXPECT_TRUE(watched.expired());
}

TEST_F(Visits, OutsideAnyOfThemThereIsNothingToLookAt) { EXPECT_NO_THROW(Visit::lookAgain()); }

TEST_F(Visits, OfAPersonEndQuietlyWithThePointerBackToNormal) {
  form->controls().button.click.connect([this] {
    toolkit.setPointer(Pointer::Hourglass);
    form->unload();
    Visit::lookAgain();
    ADD_FAILURE() << "the window has gone";
  });
  form->controls().button.userClicks();
  EXPECT_FALSE(form->loaded());
  EXPECT_THAT(toolkit.failures(), IsEmpty());
  EXPECT_THAT(toolkit.pointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
}

TEST_F(Visits, ThatLoseTheirWindowAreToldAsASilentEnd) {
  std::vector<SilentEnd> ends;
  const SilenceListener listener([&ends](const SilentEnd& end) { ends.push_back(end); });
  form->load();
  const bool ended = form->visited(
      [this] {
        form->unload();
        Visit::lookAgain();
      },
      "A routine");
  EXPECT_FALSE(ended);
  EXPECT_THAT(ends, ElementsAre(SilentEnd{"A routine", "its window has gone"}));
}

TEST_F(Visits, LetFailuresPass) {
  form->load();
  EXPECT_THROW(form->visited([] { throw RuntimeFailure("of the routine"); }), RuntimeFailure);
  EXPECT_TRUE(form->visited([] {}));
}

class CallsOut : public Visits {};

TEST_F(CallsOut, GiveTheAnswerWhileTheWindowStands) {
  form->load();
  const Visit visit(*form);
  EXPECT_EQ(callOut(outside)->answer("!"), "answer!");
  EXPECT_EQ(callOut(*outside)->answer(), "answer");
}

TEST_F(CallsOut, AreMadeOutsideAnyVisitToo) { EXPECT_EQ(callOut(outside)->answer(), "answer"); }

TEST_F(CallsOut, EndTheRoutineWhenTheWindowGoesMeanwhile) {
  form->load();
  outside->meanwhile = [this] { form->unload(); };
  std::string answer;
  bool wentOn = false;
  EXPECT_FALSE(form->visited([&] {
    answer = callOut(outside)->answer();
    wentOn = true;
  }));
  EXPECT_EQ(answer, "answer") << "the expression itself ends first";
  EXPECT_FALSE(wentOn);
}

TEST_F(CallsOut, AreNotMadeWhenTheWindowWentBefore) {
  form->load();
  EXPECT_FALSE(form->visited([&] {
    form->unload();
    static_cast<void>(callOut(outside)->answer());
  }));
  EXPECT_EQ(outside->calls, 0);
}

TEST_F(CallsOut, LetTheFailureOfTheCallPassAlsoWhenTheWindowHasGone) {
  form->load();
  outside->meanwhile = [this] { form->unload(); };
  outside->fails = true;
  EXPECT_THROW(form->visited([&] { static_cast<void>(callOut(outside)->answer()); }), RuntimeFailure);
}

TEST_F(CallsOut, KeepWhatTheyCall) {
  const std::weak_ptr<Outside> watched = outside;
  outside->meanwhile = [&] {
    outside.reset();
    EXPECT_FALSE(watched.expired());
  };
  EXPECT_EQ(callOut(outside)->answer(), "answer");
  EXPECT_TRUE(watched.expired());
}

TEST_F(CallsOut, ToNobodyAreAFailure) {
  const std::shared_ptr<Outside> nobody;
  try {
    static_cast<void>(callOut(nobody)->answer());
    ADD_FAILURE() << "there is nobody to call";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.kind(), FailureKind::MissingObject);
  }
}

class Shows : public Visits {};

TEST_F(Shows, RefuseASecondOneAtOnceAndLeaveTheOpenWindowAlone) {
  std::optional<std::string> refusal;
  toolkit.scriptModal([&](Form& open) {
    const auto number = open.windowNumber();
    try {
      open.showModal();
    } catch (const RuntimeFailure& failure) {
      refusal = failure.description();
    }
    EXPECT_TRUE(open.loaded());
    EXPECT_EQ(open.windowNumber(), number);
  });
  form->showModal();
  EXPECT_EQ(refusal, Form::alreadyOnShow);
  EXPECT_EQ(form->loads, 1);
}

TEST_F(Shows, MayFollowOnceTheWindowHasClosedInsideTheFormer) {
  int shown = 0;
  toolkit.scriptModal([&](Form& open) {
    open.userCloses();
    toolkit.scriptModal([&](Form&) { ++shown; });
    open.showModal();
  });
  form->showModal();
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(form->loads, 2);
  EXPECT_FALSE(form->loaded());
}

TEST_F(Shows, LeaveNoControlsBehindAFailureBeforeTheWindowAppears) {
  try {
    Form::Show show(*form);
    form->controls().box.setText("of this show");
    throw RuntimeFailure("what the show needs is missing");
  } catch (const RuntimeFailure&) {
    EXPECT_FALSE(form->loaded());
  }
  EXPECT_FALSE(form->onShow());
  EXPECT_EQ(form->controls().box.text(), "");
}

TEST_F(Shows, ShowNothingWhenTheWindowWentBefore) {
  toolkit.scriptModal([](Form&) { ADD_FAILURE() << "no window may appear"; });
  Form::Show show(*form);
  form->load();
  form->userCloses();
  show.run();
  EXPECT_FALSE(form->loaded());
  EXPECT_EQ(form->loads, 1);
}

TEST_F(Shows, CountAsSuchUntilTheWindowHasClosed) {
  EXPECT_FALSE(form->onShow());
  toolkit.scriptModal([](Form& open) {
    EXPECT_TRUE(open.onShow());
    open.userCloses();
    EXPECT_FALSE(open.onShow());
  });
  form->showModal();
  EXPECT_FALSE(form->onShow());
}

TEST_F(Shows, KeepTheFormThatItsHolderLetsGo) {
  const std::weak_ptr<SampleForm> watched = form;
  toolkit.scriptModal([this](Form&) { form.reset(); });
  form->showModal();
  EXPECT_TRUE(watched.expired());
}

TEST_F(Shows, AreReportedWhereTheirUnloadFails) {
  form->whenUnloading = [] { throw RuntimeFailure("the unload fails"); };
  {
    Form::Show show(*form);
    form->load();
  }
  EXPECT_THAT(toolkit.failures(), ElementsAre("the unload fails"));
}

TEST_F(Visits, OfAnUnloadAreNotEnteredTwice) {
  form->load();
  form->whenUnloading = [this] { form->unload(); };
  form->unload();
  EXPECT_EQ(form->unloads, 1);
  EXPECT_FALSE(form->loaded());
}

}  // namespace
}  // namespace vlclientui::test
