// The one-window dialog that goes, or is shown again, while the service answers a click on a tab. Each of
// these has crashed once. Built once per window system; the sweep asks the same of every window.

#include "contracts/controls/Form.h"
#include "scenarios/MetadataVisit.h"

namespace vlclientui::test {
namespace {

class GoneWindowScenarios : public MetadataVisit {
 protected:
  GoneWindowScenarios() { initialize(); }

  void showProperties() const { person->clickTab("myTab", "Service Properties"); }
  void showMetadata() const { person->clickTab("myTab", "Metadata"); }

  /// @returns how often the service is asked by the click.
  std::size_t callsOf(const std::function<void()>& before, const std::function<void()>& click) {
    std::size_t calls = 0;
    visitWindow([&] {
      before();
      service->calls.clear();
      click();
      calls = service->calls.size();
    });
    return calls;
  }

  /// Closes the window inside each call of the click in turn.
  void closeInsideEachCallOf(const std::function<void()>& before, const std::function<void()>& click) {
    const std::size_t calls = callsOf(before, click);
    ASSERT_GT(calls, 0U);
    for (std::size_t call = 1; call <= calls; ++call) {
      SCOPED_TRACE("call " + std::to_string(call));
      closeInside(call, before, click);
    }
  }

  void closeInside(std::size_t call, const std::function<void()>& before,
                   const std::function<void()>& click) {
    visitWindow([&] {
      before();
      std::size_t asked = 0;
      service->onCall = [&](const std::string&) {
        if (++asked == call) person->closeByFrame();
      };
      click();
      service->onCall = nullptr;
      EXPECT_EQ(asked, call) << "somebody went on asking for a window that had gone";
      EXPECT_FALSE(person->windowIsOpen());
    });
    EXPECT_TRUE(person->failures().empty());
  }
};

TEST_F(GoneWindowScenarios, ClosedInsideAnAnswerToTheMetadataTabStayClosed) {
  closeInsideEachCallOf([] {}, [&] { showMetadata(); });
}

TEST_F(GoneWindowScenarios, ClosedInsideAnAnswerToThePropertiesTabStayClosed) {
  closeInsideEachCallOf([&] { showMetadata(); }, [&] { showProperties(); });
}

TEST_F(GoneWindowScenarios, ClosedInsideAnAnswerToATabOfTheServiceStayClosed) {
  closeInsideEachCallOf(
      [&] {
        showMetadata();
        person->clickNode("Service Info");
      },
      [&] { person->clickTab("TabStrip2", "Metadata"); });
}

TEST_F(GoneWindowScenarios, ShownAgainWhileTheyAreOpenAreRefusedAtOnceAndStayOpen) {
  EXPECT_EQ(visitWindow([&] {
              EXPECT_EQ(older()->ShowPropertiesModalDialog(), -1);
              EXPECT_EQ(older()->Status(), Form::alreadyOnShow);
              EXPECT_TRUE(person->windowIsOpen());
              showMetadata();
              EXPECT_EQ(person->tabOnTop("myTab"), "Metadata");
            }),
            0);
}

TEST_F(GoneWindowScenarios, ShownAgainInsideAnAnswerToATabAreRefusedAndTheClickGoesOn) {
  visitWindow([&] {
    std::size_t refused = 0;
    service->onCall = [&](const std::string&) {
      refused += older()->ShowPropertiesModalDialog() == -1 ? 1 : 0;
    };
    showMetadata();
    service->onCall = nullptr;
    EXPECT_GT(refused, 0U);
    EXPECT_FALSE(person->nodes().empty());
  });
}

}  // namespace
}  // namespace vlclientui::test
