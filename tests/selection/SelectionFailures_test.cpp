// Whatever a client, an engine or the system does wrong ends the step it happens in: nothing reaches the
// host, nothing reaches the top-level handler, and the pointer is never left as an hourglass.

#include <functional>
#include <new>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "frame/ThreadState.h"
#include "selection/SelectionTest.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Thrower {
  const char* name;
  std::function<void()> run;
};

void PrintTo(const Thrower& thrower, std::ostream* out) { *out << thrower.name; }

class ClientThatThrows : public SelectionTest, public testing::WithParamInterface<Thrower> {
 protected:
  ClientThatThrows() { server->answer = serverInfoOf({"A"}); }
};

TEST_P(ClientThatThrows, InTheFirstLoadLeavesAnEmptyWindow) {
  server->duringCall = GetParam().run;
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    EXPECT_EQ(plexa->lastEngine(), nullptr);
    EXPECT_FALSE(window.controls().uibtnok.enabled());
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
    EXPECT_EQ(control.SelectedServer, "");
  });
  EXPECT_THAT(toolkit->failures(), IsEmpty());
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

TEST_P(ClientThatThrows, InARefreshChangesNothingButTheReferenceInHand) {
  show([&](auto&, ImageServicesControl& control) {
    click("A");
    server->duringCall = GetParam().run;
    mark();
    enterServer(control, "alpha");
    EXPECT_THAT(newPointers(), ElementsAre(Pointer::Hourglass, Pointer::Default));
    control.uiTxtBoxServerName.userSelects(0);
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
    EXPECT_THAT(control.ServiceNames, ElementsAre("A"));
    EXPECT_EQ(control.SelectedServer, "127.0.0.1");
    EXPECT_EQ(control.SelectedFile, "");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("127.0.0.1"));
  });
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_P(ClientThatThrows, OfTheNewerGenerationIsNoDifferent) {
  dialog = std::make_shared<ImageServicesDialog>();
  ASSERT_EQ(newer(dialog)->Init("", std::make_shared<FakeOVLServerClient>(server)), boolean16True);
  server->duringCall = GetParam().run;
  show([&](auto&, ImageServicesControl& control) { enterServer(control, "alpha"); });
  EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(AnyThing, ClientThatThrows,
                         testing::Values(Thrower{"RuntimeFailure", [] { throw RuntimeFailure("no line"); }},
                                         Thrower{"BadAlloc", [] { throw std::bad_alloc(); }},
                                         Thrower{"Int", [] { throw 7; }}),
                         [](const auto& tested) { return std::string(tested.param.name); });

/// One whole use of the window, made anew for each call that is to fail.
class WholeUse : public SelectionTest {
 public:
  WholeUse() {
    server->answer = serverInfoOf({"A/B", "D"});
    system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
  }
  void TestBody() override {}

  void run(std::size_t failingCall) {
    plexa->record->failAtCall = failingCall;
    show([this](ImageServicesDialogForm& window, ImageServicesControl& control) {
      const WindowHandle list = addListWindow(control);
      plexa->record->duringShow = [this, list] { toolkit->enableWindow(list, false); };
      raise({"DblClick", "", "/", "A", 0});
      raise({"DblClick", "", "/A", "", 8});
      raise({"DblClick", "", "/", "D", 0});
      raise({"Click", "", "/", "D", 0});
      control.Info.userClicks();
      control.Info.userClicks();
      EXPECT_TRUE(toolkit->isWindowEnabled(list));
      plexa->record->duringShow = nullptr;
      enterServer(control, "alpha");
      control.Check1.setChecked(true);
      server->answer.clear();
      enterServer(control, "ghost");
      toolkit->chooseFile("C:\\a.VLRef");
      control.Browse.userClicks();
      window.controls().uibtnok.userClicks();
    });
  }

  [[nodiscard]] std::size_t callCount() const { return plexa->record->calls.size(); }
  [[nodiscard]] std::string callAt(std::size_t call) const { return plexa->record->calls.at(call - 1); }

  void expectNothingLeftBehind(const std::string& what) const {
    EXPECT_THAT(toolkit->failures(), IsEmpty()) << what;
    EXPECT_THAT(toolkit->messages(), IsEmpty()) << what;
    EXPECT_NE(toolkit->pointers().back(), Pointer::Hourglass) << what;
  }

 private:
  /// As the engine of the list would; without one there is nobody to raise it.
  void raise(const PlexaEvent& event) {
    const auto engine = plexa->lastEngine();
    if (engine) engine->Notify.raise(*engine, event);
  }
};

TEST(EngineThatFails, AtAnyCallEndsTheStepAndNothingElse) {
  std::size_t calls = 0;
  {
    WholeUse good;
    good.run(0);
    good.expectNothingLeftBehind("no failure");
    calls = good.callCount();
  }
  ASSERT_GT(calls, 60U);
  for (std::size_t call = 1; call <= calls; ++call) {
    WholeUse use;
    use.run(call);
    use.expectNothingLeftBehind(use.callCount() < call ? "not reached" : use.callAt(call));
  }
}

class EngineFailures : public SelectionTest {
 protected:
  EngineFailures() { server->answer = serverInfoOf({"A/B", "D"}); }
};

TEST_F(EngineFailures, AtTheRowsEndTheRebuildBeforeColumnsPlaceAndShow) {
  plexa->record->failAt = "SetOption List_Values";
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_EQ(plexa->record->calls.size(), 4U);
    EXPECT_EQ(control.SelectedServer, "127.0.0.1");
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  });
}

TEST_F(EngineFailures, AtShowLeaveTheServerBoxRuleToRun) {
  show([&](auto&, ImageServicesControl& control) {
    plexa->record->failAt = "Show";
    enterServer(control, "alpha");
    EXPECT_THAT(control.uiTxtBoxServerName.entries(), ElementsAre("alpha", "127.0.0.1"));
  });
}

TEST_F(EngineFailures, AtTheTemplateOfOkLeaveTheWindowOpenWithoutAWord) {
  show([&](ImageServicesDialogForm& window, ImageServicesControl& control) {
    doubleClick("D");
    plexa->record->failAt = "GetTemplateXml";
    window.controls().uibtnok.userClicks();
    EXPECT_TRUE(window.loaded());
    EXPECT_TRUE(window.OkPressed);
    EXPECT_FALSE(control.visible());
  });
  EXPECT_THAT(toolkit->messages(), IsEmpty());
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(EngineFailures, AtTheDetachingOfAnUnloadStillCloseTheWindow) {
  show([&](ImageServicesDialogForm& window, auto&) {
    plexa->record->failAt = "ParentWindow";
    window.userCloses();
    EXPECT_FALSE(window.loaded());
  });
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST(SystemThatFails, NeverReachesTheHost) {
  WholeUse use;
  use.run(0);
  class Failing : public WholeUse {
   public:
    void check() {
      dialog = readyDialog();
      system->everythingFails = true;
      EXPECT_EQ(older(dialog)->ShowDialog(), boolean16True);
      EXPECT_EQ(older(dialog)->ShowDialogEx("<AddImageServiceDialog/>"), boolean16False)
          << "the user's locale cannot be read";
      EXPECT_THAT(toolkit->failures(), IsEmpty());
    }
  } failing;
  failing.check();
}

TEST(HugeAnswer, OfManyServicesIsShownWhole) {
  class Huge : public WholeUse {
   public:
    void check() {
      std::vector<std::string> names;
      for (int i = 0; i < 20000; ++i) names.push_back("s" + std::to_string(i));
      server->answer = serverInfoOf(names);
      show([&](auto&, ImageServicesControl& control) {
        EXPECT_EQ(control.ServiceNames.size(), names.size());
        EXPECT_EQ(shownNames().size(), names.size());
      });
    }
  } huge;
  huge.check();
}

class AnswerOfTwoHundredMegabytes : public SelectionTest {
 protected:
  static constexpr std::size_t megabyte = 1024 * 1024;

  /// Two services whose titles make the size, so that the test measures no list of rows.
  static std::string titled(std::size_t characters) {
    return "<ImageServiceInfo><Name>n</Name><KeyDetails><Title>" + std::string(characters, 't') +
           "</Title></KeyDetails></ImageServiceInfo>";
  }
};

TEST_F(AnswerOfTwoHundredMegabytes, IsShownWhole) {
  server->answer = serverInfo({{"Roads/West", titled(100 * megabyte)}, {"Relief", titled(100 * megabyte)}});
  ASSERT_GT(server->answer.size(), 200 * megabyte);
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_THAT(shownNames(), ElementsAre("Roads", "Relief"));
    click("Relief");
    EXPECT_EQ(control.Desc.text().size(), 100 * megabyte);
  });
  EXPECT_THAT(toolkit->failures(), IsEmpty());
}

TEST_F(AnswerOfTwoHundredMegabytes, ThatBreaksOffAtItsEndChangesNothing) {
  server->answer = serverInfo({{"Relief", titled(200 * megabyte)}});
  server->answer.resize(server->answer.size() - 1);
  show([&](auto&, ImageServicesControl& control) {
    EXPECT_THAT(control.ServiceNames, IsEmpty());
    EXPECT_EQ(plexa->lastEngine(), nullptr);
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default);
  });
  EXPECT_THAT(toolkit->messages(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
