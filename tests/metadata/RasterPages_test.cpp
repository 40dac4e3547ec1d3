#include "metadata/RasterPages.h"

#include <algorithm>

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageOf;
using test::imageXml;
using test::RasterText;
using Texts = std::vector<std::string>;

const std::string helpHead = "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF>";

std::string rasters(const std::string& records) {
  return imageXml("", "<Detailed><Rasters>" + records + "</Rasters></Detailed>");
}
std::string record(const std::string& info, const std::string& rest = {}) {
  return "<Raster><Info>" + info + "</Info>" + rest + "</Raster>";
}

class RasterPagesTest : public test::MetadataFixture {
 protected:
  void openSource() {
    openPage();
    clickNode("Raster");
  }
  void openSourceOf(const std::string& document) {
    imageMetadata = document;
    openSource();
  }
  [[nodiscard]] Texts tabs() const { return controls->TabStrip1.captions(); }
  /// Nothing of the source pages shows.
  void expectBlank() {
    EXPECT_EQ(controls->RasterList.count(), 0U);
    EXPECT_FALSE(controls->TabStrip1.visible());
    EXPECT_FALSE(controls->RasterList.visible());
    EXPECT_FALSE(controls->Label1.visible());
    EXPECT_FALSE(controls->Command7.visible());
    EXPECT_FALSE(fields->myPlexa);
    EXPECT_EQ(threadState().gStatus, "");
    EXPECT_TRUE(toolkit->messages().empty());
  }
};

// The list.

TEST_F(RasterPagesTest, TheListHasACaptionPerRasterWithAMarkForWhatDoesNotShow) {
  openSource();
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"north - 1", "* south - 2"}));
  EXPECT_EQ(controls->RasterList.text(), "north - 1");
  EXPECT_TRUE(controls->RasterList.visible());
  EXPECT_TRUE(controls->Label1.visible());
  EXPECT_TRUE(controls->TabStrip1.visible());
}

TEST_F(RasterPagesTest, ASecondClickFillsTheListAnew) {
  openSource();
  controls->RasterList.userSelects(1);
  service->answers["GetImageMetadata "] = imageOf({{.id = "5", .name = "new"}});
  clickNode("Raster");
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"new - 5"}));
  EXPECT_EQ(viewer->rasters().selectedRasterId(), "5");
}

TEST_F(RasterPagesTest, ARecordWithoutAnIdLeavesNoTrace) {
  openSourceOf(rasters(record("<RasterName>a</RasterName><RasterId>1</RasterId>") +
                       record("<RasterName>lost</RasterName><Visible>True</Visible>") +
                       record("<RasterId>2</RasterId>")));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"* a - 1", "* a - 2"}));
}

TEST_F(RasterPagesTest, AMissingNameIsThatOfTheRecordBefore) {
  openSourceOf(rasters(record("<RasterId>1</RasterId><RasterName>a</RasterName><Visible>1</Visible>") +
                       record("<RasterId>2</RasterId>") + record("<RasterId>3</RasterId><RasterName/>") +
                       record("<RasterId>4</RasterId>")));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"a - 1", "a - 2", " - 3", " - 4"}));
}

TEST_F(RasterPagesTest, TheFirstRecordWithoutNameAndMarkIsNamelessAndHidden) {
  openSourceOf(rasters(record("<RasterId>1</RasterId>")));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"*  - 1"}));
  // "* " goes from the caption, and the blank of the empty name stays: the way back to the key holds.
  EXPECT_EQ(viewer->rasters().selectedRasterId(), "1");
}

TEST_F(RasterPagesTest, AMissingMarkIsThatOfTheRecordBefore) {
  openSourceOf(
      rasters(record("<RasterId>1</RasterId><Visible>TRUE</Visible>") + record("<RasterId>2</RasterId>") +
              record("<RasterId>3</RasterId><Visible>false</Visible>") + record("<RasterId>4</RasterId>")));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{" - 1", " - 2", "*  - 3", "*  - 4"}));
}

TEST_F(RasterPagesTest, NumbersAreTruthValuesAsWell) {
  openSourceOf(
      imageOf({{.id = "1", .visible = "0"}, {.id = "2", .visible = "-1"}, {.id = "3", .visible = "0.5"}}));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"* north - 1", "north - 2", "north - 3"}));
}

TEST_F(RasterPagesTest, TruthValuesOfADocumentHaveAPointUnderEveryLocale) {
  system->locale = {",", " ", "EUR"};
  openSourceOf(imageOf({{.id = "1", .visible = "0.0"}, {.id = "2", .visible = "0.5"}}, "1.0"));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"* north - 1", "north - 2"}));
  EXPECT_EQ(tabs().size(), 4U);
  EXPECT_TRUE(controls->TabStrip1.visible());
}

TEST_F(RasterPagesTest, AMarkThatIsNoTruthValueLeavesThePageBlank) {
  openSourceOf(imageOf({{}, {.id = "2", .visible = "maybe"}}));
  expectBlank();
}

TEST_F(RasterPagesTest, AnEmptyMarkLeavesThePageBlank) {
  openSourceOf(rasters(record("<RasterId>1</RasterId><Visible/>")));
  expectBlank();
}

TEST_F(RasterPagesTest, TwoRastersOfOneNameAndIdLeaveThePageBlank) {
  openSourceOf(imageOf({{}, {.id = "2"}, {}}));
  expectBlank();
}

TEST_F(RasterPagesTest, TheMarkMakesNoDifferenceToTheKey) {
  openSourceOf(imageOf({{}, {.visible = "False"}}));
  expectBlank();
}

TEST_F(RasterPagesTest, OneIdUnderTwoNamesIsTwoRasters) {
  openSourceOf(imageOf({{}, {.name = "south"}}));
  EXPECT_EQ(controls->RasterList.count(), 2U);
}

TEST_F(RasterPagesTest, ABlankPageFillsAgainWithTheNextGoodImage) {
  openSourceOf(imageOf({{}, {}}));
  service->answers["GetImageMetadata "] = imageOf({{}});
  clickNode("Raster");
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"north - 1"}));
  EXPECT_TRUE(fields->myPlexa);
}

TEST_F(RasterPagesTest, AnImageWhoseRastersAreGoneShowsAnEmptyListAndItsTabs) {
  openSource();
  service->answers["GetImageMetadata "] = imageXml("<Basic/>", "");
  clickNode("Raster");
  EXPECT_EQ(controls->RasterList.count(), 0U);
  EXPECT_TRUE(controls->RasterList.visible());
  EXPECT_TRUE(controls->TabStrip1.visible());
  EXPECT_FALSE(controls->Command7.visible());
  EXPECT_FALSE(fields->myPlexa);
}

// Tabs.

TEST_F(RasterPagesTest, AllFourTabsStayWithMetadataAndProcessData) {
  openSource();
  EXPECT_EQ(tabs(), (Texts{"Information", "Metadata", "Attributes", "Process"}));
}

TEST_F(RasterPagesTest, WithoutMetadataItsTabGoesAndTheProcessTabStaysAlsoWhenThereIsNoData) {
  for (const std::string available : {"True", "False", ""}) {
    openSourceOf(imageOf({{.metadata = ""}}, available));
    EXPECT_EQ(tabs(), (Texts{"Information", "Attributes", "Process"})) << available;
    service->answers.clear();
  }
}

TEST_F(RasterPagesTest, WithoutProcessDataItsTabGoes) {
  for (const std::string available : {"False", "0", ""}) {
    openSourceOf(imageOf({{}}, available));
    EXPECT_EQ(tabs(), (Texts{"Information", "Metadata", "Attributes"})) << available;
    service->answers.clear();
  }
}

TEST_F(RasterPagesTest, OneRasterWithMetadataKeepsTheTabForAll) {
  openSourceOf(imageOf({{.metadata = ""}, {.id = "2"}}));
  EXPECT_EQ(tabs().at(1), "Metadata");
}

TEST_F(RasterPagesTest, ARemovedTabStaysRemovedForTheLifeOfThePage) {
  openSourceOf(imageOf({{.metadata = ""}}));
  service->answers["GetImageMetadata "] = imageOf({{}});
  clickNode("Raster");
  EXPECT_EQ(tabs(), (Texts{"Information", "Attributes", "Process"}));
}

TEST_F(RasterPagesTest, AfterTheProcessTabWentTheMetadataTabStillGoes) {
  openSourceOf(imageOf({{}}, "False"));
  service->answers["GetImageMetadata "] = imageOf({{.metadata = ""}}, "False");
  clickNode("Raster");
  EXPECT_EQ(tabs(), (Texts{"Information", "Attributes"}));
}

TEST_F(RasterPagesTest, AvailabilityThatIsNoTruthValueEndsBeforeTheTabsShow) {
  openSourceOf(imageOf({{}}, "perhaps"));
  EXPECT_EQ(controls->RasterList.entries(), (Texts{"north - 1"}));
  EXPECT_EQ(tabs().size(), 4U);
  EXPECT_FALSE(controls->TabStrip1.visible());
  EXPECT_FALSE(fields->myPlexa);
}

TEST_F(RasterPagesTest, TheCaptionOfTheSelectedTabIsWrittenBackOverThePageThatShows) {
  openPage();
  Texts journal;
  controls->TabStrip1.changed.connect([&journal](Aspect aspect) {
    if (aspect == Aspect::Entries) journal.push_back("caption");
  });
  plexa->record->onCall = [&journal](const std::string& call) {
    if (call.ends_with(".Show")) journal.push_back("page");
  };
  clickNode("Raster");
  plexa->record->onCall = {};
  EXPECT_EQ(journal, (Texts{"page", "caption", "page"}));
  EXPECT_EQ(tabs(), (Texts{"Information", "Metadata", "Attributes", "Process"}));
}

// The pages of a raster.

TEST_F(RasterPagesTest, TheSourceNodeBuildsTheFirstRastersPageTwice) {
  openPage();
  static_cast<void>(newEngineCalls());
  clickNode("Raster");
  const auto calls = newEngineCalls();
  EXPECT_EQ(std::ranges::count_if(calls, [](const auto& call) { return call.ends_with(".Show"); }), 2);
}

TEST_F(RasterPagesTest, InformationShowsTheInfoGroupOnItsFrame) {
  openSource();
  EXPECT_TRUE(controls->InfoFrame.visible());
  EXPECT_EQ(page().AttributeDefinition(), helpHead + "<Info><A_Raster/></Info></Vorlane>");
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><Info><F_Raster/></Info></Vorlane>");
  EXPECT_EQ(page().DataXml(), helpHead +
                                  "<Info><RasterId>1</RasterId><RasterName>north</RasterName>"
                                  "<Visible>True</Visible></Info></Vorlane>");
  EXPECT_EQ(lastEngineValue("ParentWindow"), std::to_string(toolkit->windowOf(controls->InfoFrame)));
}

TEST_F(RasterPagesTest, ARowClickShowsThatRasterWithoutFetching) {
  openSource();
  static_cast<void>(newServiceCalls());
  controls->RasterList.userSelects(1);
  EXPECT_TRUE(newServiceCalls().empty());
  EXPECT_NE(page().DataXml().find("south"), std::string::npos);
}

TEST_F(RasterPagesTest, ARasterThatDoesNotShowHasItsPagesAsAnyOther) {
  openSource();
  controls->RasterList.userSelects(1);
  clickRasterTab("Attributes");
  EXPECT_EQ(controls->ListView1.rows().size(), 1U);
  clickRasterTab("Metadata");
  EXPECT_NE(lastEngineValue("DataXml").find("<Sensor>"), std::string::npos);
}

TEST_F(RasterPagesTest, TheSelectedTabStaysFromRasterToRaster) {
  openSource();
  clickRasterTab("Attributes");
  controls->RasterList.userSelects(1);
  EXPECT_TRUE(controls->ListView1.visible());
  EXPECT_FALSE(controls->InfoFrame.visible());
  EXPECT_EQ(controls->TabStrip1.selectedCaption(), "Attributes");
}

TEST_F(RasterPagesTest, AttributesAreARowPerChildInDocumentOrder) {
  openSourceOf(imageOf({{.attributes = "<Attributes><Year>1998</Year><Sun a='1'>low</Sun><!--c--><Empty/>"
                                       "<Group><A>x</A><B>y</B></Group></Attributes>"}}));
  clickRasterTab("Attributes");
  EXPECT_TRUE(controls->ListView1.visible());
  EXPECT_EQ(controls->ListView1.rows(),
            (std::vector<ReportList::Row>{
                {"Year", "1998"}, {"Sun", "low"}, {"#comment", "c"}, {"Empty", ""}, {"Group", "xy"}}));
}

TEST_F(RasterPagesTest, WithoutAttributesTheListIsEmptied) {
  openSourceOf(imageOf({{}, {.id = "2", .attributes = ""}}));
  clickRasterTab("Attributes");
  controls->RasterList.userSelects(1);
  EXPECT_TRUE(controls->ListView1.visible());
  EXPECT_TRUE(controls->ListView1.rows().empty());
}

TEST_F(RasterPagesTest, ProcessIsATreeAndACopyInTheHiddenBox) {
  openSource();
  static_cast<void>(newEngineCalls());
  clickRasterTab("Process");
  const std::string xml = "<ProcessMetadata><Step>warp</Step></ProcessMetadata>";
  const std::string window = std::to_string(toolkit->windowOf(*form));
  EXPECT_EQ(newEngineCalls(),
            (Texts{"2.Visible false", "3.Visible false", "3.Visible false", "3.ParentWindow 0", "3.released",
                   "6.Visible false", "6.Width 405", "6.Height 280", "6.SetOption treeviewdisplay True",
                   "6.ParentWindow " + window, "6.Left 150", "6.Top 50", "6.SetOption ShowVScrollBar False",
                   "6.DataXml " + xml, "6.Visible true", "6.Show"}));
  EXPECT_EQ(controls->ProcessMetadata.text(), xml);
  EXPECT_FALSE(controls->ProcessMetadata.visible());
  EXPECT_FALSE(controls->InfoFrame.visible());
}

TEST_F(RasterPagesTest, MetadataIsATreeAndACopyInTheHiddenBox) {
  openSource();
  static_cast<void>(newEngineCalls());
  clickRasterTab("Metadata");
  const std::string xml = "<Metadata><Sensor>frame</Sensor></Metadata>";
  const auto calls = newEngineCalls();
  EXPECT_EQ(calls.at(4), "2.released");
  EXPECT_EQ(calls.at(13), "6.DataXml " + xml);
  EXPECT_EQ(controls->MetadataText.text(), xml);
  EXPECT_FALSE(controls->MetadataText.visible());
}

TEST_F(RasterPagesTest, WhatWasNotTransmittedIsAnEmptyTreeAndALiteralInTheHiddenBox) {
  openSourceOf(imageOf({{.process = ""}, {.id = "2", .metadata = ""}}));
  clickRasterTab("Process");
  EXPECT_EQ(lastEngineValue("DataXml"), "<ProcessMetadata/>");
  EXPECT_EQ(controls->ProcessMetadata.text(), "No Process Metadata transmitted.");
  controls->RasterList.userSelects(1);
  clickRasterTab("Metadata");
  EXPECT_EQ(lastEngineValue("DataXml"), "<Metadata/>");
  EXPECT_EQ(controls->MetadataText.text(), "No Raster Metadata transmitted.");
}

TEST_F(RasterPagesTest, ARasterWithoutInfoCannotBeChosenSoNoOtherPageShowsForIt) {
  openSourceOf(imageXml("",
                        "<Detailed><Rasters><Raster><Attributes><A/></Attributes></Raster></Rasters>"
                        "</Detailed>"));
  EXPECT_EQ(controls->RasterList.count(), 0U);
  EXPECT_FALSE(fields->myPlexa);
  EXPECT_TRUE(controls->TabStrip1.visible());
}

TEST_F(RasterPagesTest, OfSeveralRecordsWithTheIdEachIsShownAndTheLastWins) {
  openSourceOf(imageOf({{}, {.name = "south"}}));
  controls->RasterList.userSelects(0);
  EXPECT_NE(page().DataXml().find("south"), std::string::npos);
  static_cast<void>(newEngineCalls());
  clickRasterTab("Metadata");
  const auto calls = newEngineCalls();
  EXPECT_EQ(std::ranges::count_if(calls, [](const auto& call) { return call.ends_with(".Show"); }), 2);
}

TEST_F(RasterPagesTest, RecordsAreFoundByTheWholeIdNotByThePartThatLocks) {
  openSourceOf(imageOf({{.id = "1.0", .name = "a"}, {.id = "1.5", .name = "b"}}));
  EXPECT_NE(page().DataXml().find("<RasterName>a<"), std::string::npos);
}

TEST_F(RasterPagesTest, ANameWithAMarkInsideLeadsToNoKeyAndNoPage) {
  openSourceOf(imageOf({{.name = "a* b"}}));
  EXPECT_EQ(controls->RasterList.text(), "a* b - 1");
  EXPECT_TRUE(controls->TabStrip1.visible());
  EXPECT_FALSE(fields->myPlexa);
  EXPECT_FALSE(controls->InfoFrame.visible());
}

TEST_F(RasterPagesTest, TheHostsTextsAreReadAfreshWhereverTheyChange) {
  openPageWithoutService();
  clickNode("Raster");
  fields->myImageMetaDataXml = imageOf({{.attributes = "<Attributes><New>1</New></Attributes>"}});
  clickRasterTab("Attributes");
  EXPECT_EQ(controls->ListView1.rows(), (std::vector<ReportList::Row>{{"New", "1"}}));
}

TEST_F(RasterPagesTest, WithoutRastersARowClickOnlyHides) {
  openSource();
  clickRasterTab("Attributes");
  fields->myImageMetaDataXml = imageXml("<Basic/>", "");
  controls->RasterList.userSelects(1);
  EXPECT_FALSE(controls->ListView1.visible());
}

TEST_F(RasterPagesTest, ATabClickHidesEveryPageOfARasterFirst) {
  openSource();
  const std::vector<Control*> pages{&controls->InfoFrame, &controls->ProcessMetadata, &controls->MetadataText,
                                    &controls->ListView1};
  for (Control* const control : pages) control->setVisible(true);
  clickRasterTab("Process");
  for (const Control* const control : pages) EXPECT_FALSE(control->visible()) << control->name();
}

TEST_F(RasterPagesTest, AFailedRasterPageLeavesTheTabsAndTheList) {
  openPage();
  plexa->record->failAt = "EmbeddedMode";
  clickNode("Raster");
  EXPECT_TRUE(controls->TabStrip1.visible());
  EXPECT_TRUE(controls->InfoFrame.visible());
  EXPECT_TRUE(controls->Command7.visible());
  EXPECT_EQ(controls->RasterList.count(), 2U);
}

}  // namespace
}  // namespace vlclientui
