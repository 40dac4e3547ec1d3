#include "properties/PropertiesEngine.h"

#include <gmock/gmock.h>

#include "contracts/RuntimeFailure.h"
#include "frame/EngineRelease.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PropertiesEngine : public PropertiesFixture {
 protected:
  bool show(const PropertiesPage& page, EmptyPage emptyPage = EmptyPage::Shown) {
    const EnginePlace place{.frame = 77, .top = 8, .left = 3, .width = 400, .height = 290};
    return showPropertiesPage(engine, page, place, emptyPage,
                              [this](Plexa&, const PlexaEvent& event) { notified.push_back(event.Value); });
  }
  [[nodiscard]] const std::vector<std::string>& calls() const { return plexa->record->calls; }
  /// The list of methods with this selection, beside the button of the viewpoint.
  void drawMethods(std::vector<std::string> entries, std::string text) const {
    plexa->record->subControls = {{"@MosaicMethod", {std::move(entries), std::move(text), {}, {}}},
                                  {"@ViewPointControl", {}}};
  }
  [[nodiscard]] const SubControlState& button() const {
    return plexa->record->subControls.at("@ViewPointControl");
  }

  std::shared_ptr<Plexa> engine;
  std::vector<std::string> notified;
};

TEST_F(PropertiesEngine, IsGivenThePageThenThePlaceThenShown) {
  EXPECT_TRUE(show({"<A/>", "<F/>", "<D/>", "//"}));
  EXPECT_THAT(calls(),
              ElementsAre("1.EmbeddedMode true", "1.AttributeDefinition <A/>", "1.FormDefinition <F/>",
                          "1.DataXml <D/>", "1.DataRootPath //", "1.ParentWindow 77", "1.Top 8", "1.Left 3",
                          "1.Width 400", "1.Height 290", "1.Show", "1.FindControl @MosaicMethod"));
}

TEST_F(PropertiesEngine, TakesThePlaceOfAnOlderOneThatIsDetachedFirst) {
  show({"", "", "<D/>"});
  const std::size_t before = calls().size();
  show({"", "", "<D/>"});
  const auto then = plexa->callsFrom(before);
  EXPECT_EQ(then.at(0), "1.ParentWindow 0");
  EXPECT_EQ(then.at(1), "1.released");
  EXPECT_EQ(then.at(2), "2.EmbeddedMode true");
}

TEST_F(PropertiesEngine, TellsItsHolderWhatAPersonDid) {
  show({"", "", "<D/>"});
  engine->Notify.raise(*engine, {"Change", "A", "new", "", 0});
  EXPECT_THAT(notified, ElementsAre("new"));
}

TEST_F(PropertiesEngine, ThatCannotShowTouchesNoSubControl) {
  drawMethods({"Closest to Viewpoint"}, "Closest to Viewpoint");
  plexa->record->showAnswer = false;
  EXPECT_FALSE(show({"<A/>", "<F/>", "<D/>"}));
  EXPECT_EQ(calls().back(), "1.Show");
  EXPECT_FALSE(button().visible);
  EXPECT_FALSE(button().enabled);
}

TEST_F(PropertiesEngine, CanLeaveAnEmptyPageBlank) {
  EXPECT_FALSE(show({}, EmptyPage::LeftBlank));
  EXPECT_EQ(calls().back(), "1.Height 290");
  EXPECT_TRUE(show({}, EmptyPage::Shown));
}

/// Engines that also tell what is read back from them, among their shows.
class ReadingPlexa : public RecordingPlexa {
 public:
  ReadingPlexa(std::shared_ptr<PlexaRecord> record, std::vector<std::string>& reads)
      : RecordingPlexa(std::move(record), 1), reads_(reads) {}

  std::string DataXml() const override { return told("DataXml", RecordingPlexa::DataXml()); }
  std::string AttributeDefinition() const override {
    return told("AttributeDefinition", RecordingPlexa::AttributeDefinition());
  }
  std::string FormDefinition() const override {
    return told("FormDefinition", RecordingPlexa::FormDefinition());
  }
  bool Show() override {
    reads_.emplace_back("Show");
    return RecordingPlexa::Show();
  }
  using RecordingPlexa::AttributeDefinition;
  using RecordingPlexa::DataXml;
  using RecordingPlexa::FormDefinition;

 private:
  std::string told(const char* property, std::string text) const {
    reads_.emplace_back(property);
    return text;
  }

  std::vector<std::string>& reads_;
};

class PropertiesEngineReads : public PropertiesEngine, public PlexaFactory {
 protected:
  PropertiesEngineReads() {
    Platform reading = currentPlatform();
    reading.plexa = std::shared_ptr<PlexaFactory>(std::shared_ptr<void>(), this);
    setPlatform(std::make_shared<Platform>(std::move(reading)));
  }

  std::vector<std::string> reads;

 private:
  std::shared_ptr<Plexa> createPlexa() override {
    return std::make_shared<ReadingPlexa>(plexa->record, reads);
  }
};

TEST_F(PropertiesEngineReads, AreAllThreeTextsBeforeAShowThatMayStayBlank) {
  EXPECT_TRUE(show({"<A/>", "<F/>", "<D/>"}, EmptyPage::LeftBlank));
  EXPECT_THAT(reads, ElementsAre("AttributeDefinition", "FormDefinition", "DataXml", "Show"));
}

TEST_F(PropertiesEngineReads, AreNoneBeforeAShowThatComesInAnyCase) {
  EXPECT_TRUE(show({"<A/>", "", ""}, EmptyPage::Shown));
  EXPECT_THAT(reads, ElementsAre("Show"));
}

TEST_F(PropertiesEngine, ShowsAPageWithDataAlone) {
  EXPECT_TRUE(show({"", "", "<D/>"}, EmptyPage::LeftBlank));
  EXPECT_TRUE(show({"<A/>", "", ""}, EmptyPage::LeftBlank));
  EXPECT_TRUE(show({"", "<F/>", ""}, EmptyPage::LeftBlank));
}

TEST_F(PropertiesEngine, ShowsTheButtonWhenTheListHasClosestToViewpoint) {
  drawMethods({"By Attribute", "Closest to Viewpoint", "Lock Raster"}, "By Attribute");
  show({"", "", "<D/>"});
  EXPECT_EQ(button().visible, true);
  EXPECT_EQ(button().enabled, false);
}

TEST_F(PropertiesEngine, SearchesTheEntriesInOrderUpToTheFound) {
  drawMethods({"A", "Closest to Viewpoint", "C"}, "A");
  show({"", "", "<D/>"});
  EXPECT_THAT(
      plexa->callsFrom(11),
      ElementsAre("1.FindControl @MosaicMethod", "1.@MosaicMethod.ListCount", "1.@MosaicMethod.List 0",
                  "1.FindControl @ViewPointControl", "1.@ViewPointControl.Visible false",
                  "1.@MosaicMethod.ListCount", "1.@MosaicMethod.List 1", "1.FindControl @ViewPointControl",
                  "1.@ViewPointControl.Visible true", "1.@MosaicMethod.Text",
                  "1.FindControl @ViewPointControl", "1.@ViewPointControl.Enabled false"));
}

TEST_F(PropertiesEngine, HidesTheButtonWithoutThatEntryInItsExactSpelling) {
  for (const char* const entry : {"closest to viewpoint", "Viewpoint", "Closest to Viewpoint "}) {
    drawMethods({entry}, "");
    show({"", "", "<D/>"});
    EXPECT_EQ(button().visible, false) << entry;
  }
}

TEST_F(PropertiesEngine, LeavesTheButtonAsDrawnWhenTheListIsEmpty) {
  drawMethods({}, "");
  show({"", "", "<D/>"});
  EXPECT_FALSE(button().visible);
  EXPECT_EQ(button().enabled, false);
}

TEST_F(PropertiesEngine, EnablesTheButtonByTheSelection) {
  drawMethods({"Closest to Viewpoint"}, "Closest to Viewpoint");
  show({"", "", "<D/>"});
  EXPECT_EQ(button().enabled, true);
  drawMethods({"Closest to Viewpoint"}, "Viewpoint");
  show({"", "", "<D/>"});
  EXPECT_EQ(button().enabled, false);
}

TEST_F(PropertiesEngine, ShowsMethodsWithoutAButtonAndAButtonWithoutMethods) {
  plexa->record->subControls = {{"@MosaicMethod", {{"A"}, "A", {}, {}}}};
  EXPECT_TRUE(show({"", "", "<D/>"}));
  plexa->record->subControls = {{"@ViewPointControl", {}}};
  EXPECT_TRUE(show({"", "", "<D/>"}));
  EXPECT_FALSE(button().visible);
}

TEST_F(PropertiesEngine, FollowsBothSpellingsOfTheMethod) {
  drawMethods({}, "");
  show({"", "", "<D/>"});
  for (const char* const method : {"Viewpoint", "Closest to Viewpoint"}) {
    followMosaicMethod(*engine, method);
    EXPECT_EQ(button().enabled, true) << method;
    followMosaicMethod(*engine, "By Attribute");
    EXPECT_EQ(button().enabled, false);
  }
  followMosaicMethod(*engine, "viewpoint");
  EXPECT_EQ(button().enabled, false);
}

TEST_F(PropertiesEngine, NeedsNoButtonToFollow) {
  show({"", "", "<D/>"});
  EXPECT_NO_THROW(followMosaicMethod(*engine, "Viewpoint"));
}

TEST_F(PropertiesEngine, IsReleasedOnlyOnceDetached) {
  show({"", "", "<D/>"});
  plexa->record->failAt = "ParentWindow";
  EXPECT_THROW(releaseEngine(engine), RuntimeFailure);
  EXPECT_TRUE(engine);
  plexa->record->failAt.clear();
  releaseEngine(engine);
  EXPECT_FALSE(engine);
  const std::size_t before = calls().size();
  releaseEngine(engine);
  EXPECT_THAT(plexa->callsFrom(before), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
