#include "metadata/MetadataViewerDifferences.h"

#include <algorithm>

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageOf;
using test::imageXml;
using Texts = std::vector<std::string>;

const Texts oneFetch{"GetImageMetadata ", "ServiceInfo", "GetMetaData "};

/// What differs between the embedded page and the one window, a row each, side by side.
class MetadataViewerDifferencesTest : public test::MetadataFixture {
 protected:
  /// Calls of the engines with their operation alone, numbers left out.
  [[nodiscard]] Texts newOperations() {
    Texts operations;
    for (const std::string& call : newEngineCalls()) operations.push_back(call.substr(call.find('.') + 1));
    return operations;
  }
  void openBothAfter(const std::function<void()>& open, const std::string& key) {
    open();
    clickNode(key);
  }
};

TEST_F(MetadataViewerDifferencesTest, ActivationFetchesOnThePageAlone) {
  openPage();
  static_cast<void>(newServiceCalls());
  viewer->windowActivated();
  EXPECT_EQ(newServiceCalls().size(), 6U);
  openOneWindow();
  static_cast<void>(newServiceCalls());
  viewer->windowActivated();
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(MetadataViewerDifferencesTest, AClickFetchesOnceInBoth) {
  openPage();
  static_cast<void>(newServiceCalls());
  clickNode("Image");
  EXPECT_EQ(newServiceCalls(), oneFetch);
  openOneWindow();
  static_cast<void>(newServiceCalls());
  clickNode("Image");
  EXPECT_EQ(newServiceCalls(), oneFetch);
}

TEST_F(MetadataViewerDifferencesTest, TheWindowCommitsThePageBeforeItDropsIt) {
  openPage();
  clickNode("Image");
  static_cast<void>(newEngineCalls());
  viewer->DropPageEngine();
  EXPECT_EQ(newOperations(), (Texts{"ParentWindow 0", "released"}));
  openOneWindow();
  clickNode("Image");
  static_cast<void>(newEngineCalls());
  viewer->DropPageEngine();
  EXPECT_EQ(newOperations(), (Texts{"Commit", "ParentWindow 0", "released"}));
}

TEST_F(MetadataViewerDifferencesTest, AFailedCommitEndsTheClickRuleOfTheWindow) {
  openOneWindow();
  plexa->record->failAt = "Commit";
  clickNode("Image");
  EXPECT_EQ(threadState().gStatus, "the engine fails at Commit");
}

TEST_F(MetadataViewerDifferencesTest, APageThatReplacesAnotherCommitsInNeither) {
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    open();
    clickNode("Service");
    static_cast<void>(newEngineCalls());
    clickServiceTab("Properties");
    EXPECT_EQ(newOperations().front(), "ParentWindow 0");
  }
}

TEST_F(MetadataViewerDifferencesTest, TheWindowHidesItsSecondFrameAndHasNoListOfSources) {
  openPage();
  EXPECT_FALSE(controls->Frame2);
  EXPECT_TRUE(controls->SourceImagesList);
  EXPECT_TRUE(controls->Send);
  openOneWindow();
  ASSERT_TRUE(controls->Frame2);
  EXPECT_FALSE(controls->SourceImagesList);
  EXPECT_FALSE(controls->Send);
  controls->Frame2->setVisible(true);
  viewer->HidePages();
  EXPECT_FALSE(controls->Frame2->visible());
}

TEST_F(MetadataViewerDifferencesTest, TheClickRuleOfTheWindowHidesTheProcessOnceMore) {
  openPage();
  static_cast<void>(newEngineCalls());
  clickNode("Image");
  auto hidden = newEngineCalls();
  EXPECT_EQ(std::ranges::count(hidden, "1.Visible false"), 1);
  openOneWindow();
  clickNode("Service");
  static_cast<void>(newEngineCalls());
  clickNode("Image");
  hidden = newOperations();
  EXPECT_EQ(std::ranges::count(hidden, "Visible false"), 4);
}

TEST_F(MetadataViewerDifferencesTest, KeysOfSinglePagesLeadAnywhereInTheWindowAlone) {
  for (const std::string key : {"KeyDetails", "Metadata"}) {
    openPage();
    controls->uiTreeView.addNode("", key, key);
    clickNode(key);
    EXPECT_FALSE(fields->myPlexa) << key;
    openOneWindow();
    controls->uiTreeView.addNode("", key, key);
    static_cast<void>(newPointers());
    clickNode(key);
    EXPECT_TRUE(fields->myPlexa) << key;
    EXPECT_EQ(newPointers(), (std::vector{Pointer::Hourglass, Pointer::Default, Pointer::Default})) << key;
  }
}

TEST_F(MetadataViewerDifferencesTest, TheWindowShowsTheStatusAsItCame) {
  imageMetadata = imageXml("<Basic><BufferSize>2048</BufferSize><Status>3</Status></Basic>", "");
  openBothAfter([this] { openPage(); }, "Image");
  EXPECT_NE(page().DataXml().find("<BufferSize>2</BufferSize><Status>text of"), std::string::npos);
  openBothAfter([this] { openOneWindow(); }, "Image");
  EXPECT_NE(page().DataXml().find("<BufferSize>2</BufferSize><Status>3</Status>"), std::string::npos);
}

TEST_F(MetadataViewerDifferencesTest, TheServerProcessStandsByAnotherFrameLowerDown) {
  openBothAfter([this] { openPage(); }, "ServerProcess");
  EXPECT_EQ(lastEngineValue("Left"), std::to_string(controls->Frame1.geometry().left));
  EXPECT_EQ(lastEngineValue("Top"), "5");
  openBothAfter([this] { openOneWindow(); }, "ServerProcess");
  EXPECT_EQ(lastEngineValue("Left"), std::to_string(controls->FirstPageFrame.geometry().left / 15));
  EXPECT_EQ(lastEngineValue("Top"), "27");
}

TEST_F(MetadataViewerDifferencesTest, TheTreeOfARasterHasItsOwnPlaceInEach) {
  const auto place = [this] {
    clickNode("Raster");
    clickRasterTab("Process");
    return Texts{lastEngineValue("Left"), lastEngineValue("Top"), lastEngineValue("Width"),
                 lastEngineValue("Height")};
  };
  openPage();
  EXPECT_EQ(place(), (Texts{"150", "50", "405", "280"}));
  openOneWindow();
  EXPECT_EQ(place(), (Texts{"160", "75", "405", "300"}));
}

TEST_F(MetadataViewerDifferencesTest, TheTreeEnginesHaveTheirOwnHeightsAtLoad) {
  openPage();
  viewer->sizeTreeEngines();
  auto calls = newOperations();
  EXPECT_EQ(Texts(calls.end() - 6, calls.end()),
            (Texts{"Width 414", "Height 330", "Width 405", "Height 280", "Width 405", "Height 280"}));
  openOneWindow();
  viewer->sizeTreeEngines();
  calls = newOperations();
  EXPECT_EQ(Texts(calls.end() - 6, calls.end()),
            (Texts{"Width 414", "Height 350", "Width 405", "Height 300", "Width 405", "Height 300"}));
}

TEST_F(MetadataViewerDifferencesTest, TheAttributesOfTheWindowStandInTheirFrame) {
  openBothAfter([this] { openPage(); }, "Raster");
  clickRasterTab("Attributes");
  EXPECT_TRUE(controls->ListView1.visible());
  openBothAfter([this] { openOneWindow(); }, "Raster");
  EXPECT_FALSE(controls->Frame2->visible());
  clickRasterTab("Attributes");
  EXPECT_TRUE(controls->Frame2->visible());
  EXPECT_TRUE(controls->ListView1.visible());
  clickRasterTab("Process");
  EXPECT_FALSE(controls->Frame2->visible());
  EXPECT_FALSE(controls->ListView1.visible());
}

TEST_F(MetadataViewerDifferencesTest, WithoutAServiceTheWindowKnowsNoDefinitions) {
  threadState().gClientXADef =
      "<XADef><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='Lock Raster'/>"
      "</ImageServiceProperties></Vorlane></XADef>";
  threadState().gServiceMetadataXADef = "<XADef><HostAttributes/></XADef>";
  threadState().gServiceMetadataXFDef = "<XFDef><HostForm/></XFDef>";
  const auto shownForm = [this] {
    clickNode("Service");
    clickServiceTab("Metadata");
    return page().AttributeDefinition() + page().FormDefinition();
  };
  openBothAfter([this] { openPageWithoutService(); }, "Raster");
  EXPECT_TRUE(controls->Command7.visible());
  EXPECT_EQ(shownForm(), "<HostAttributes/><HostForm/>");
  openBothAfter([this] { openOneWindowWithoutService(); }, "Raster");
  EXPECT_FALSE(controls->Command7.visible());
  EXPECT_EQ(shownForm(), "");
}

TEST_F(MetadataViewerDifferencesTest, ThePageBuildsTheRasterTwiceAndTheWindowOnce) {
  const auto shows = [this] {
    static_cast<void>(newEngineCalls());
    clickNode("Raster");
    const auto operations = newOperations();
    return std::ranges::count(operations, "Show");
  };
  openPage();
  EXPECT_EQ(shows(), 2);
  openOneWindow();
  EXPECT_EQ(shows(), 1);
  EXPECT_TRUE(controls->InfoFrame.visible());
}

TEST_F(MetadataViewerDifferencesTest, TheCaptionOfTheTabIsWrittenBackOnThePageAlone) {
  const auto writes = [this] {
    std::size_t count = 0;
    controls->TabStrip1.changed.connect([&count](Aspect aspect) { count += aspect == Aspect::Entries; });
    clickNode("Raster");
    controls->TabStrip1.changed.disconnectAll();
    return count;
  };
  openPage();
  EXPECT_EQ(writes(), 1U);
  openOneWindow();
  EXPECT_EQ(writes(), 0U);
}

TEST_F(MetadataViewerDifferencesTest, BothRemoveTheSameTabsAndKeepThemRemoved) {
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    imageMetadata = imageOf({{.metadata = ""}}, "False");
    open();
    clickNode("Raster");
    EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Attributes", "Process"}));
    service->answers["GetImageMetadata "] = imageOf({{}});
    clickNode("Raster");
    EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Attributes", "Process"}));
    service->answers.clear();
    imageMetadata = imageOf({{}}, "False");
    open();
    clickNode("Raster");
    EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Metadata", "Attributes"}));
    service->answers.clear();
  }
}

TEST_F(MetadataViewerDifferencesTest, BothGoOnToTheLastRecordWithTheId) {
  imageMetadata = imageOf({{}, {.name = "south"}});
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    open();
    clickNode("Raster");
    EXPECT_EQ(controls->RasterList.text(), "north - 1");
    EXPECT_NE(page().DataXml().find("south"), std::string::npos);
  }
}

TEST_F(MetadataViewerDifferencesTest, BothHaveTheKeysOfTheListAndOfTheHelp) {
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    open();
    clickNode("Raster");
    clickRasterTab("Attributes");
    controls->ListView1.userFocuses();
    toolkit->setClipboardText("held before");
    controls->ListView1.userPresses('C', keyModifier::control);
    EXPECT_EQ(toolkit->clipboardText(), "");
    controls->ListView1.userSelects(0);
    controls->ListView1.userPresses('C', keyModifier::control);
    EXPECT_EQ(toolkit->clipboardText(), "1998");
    system->launched.clear();
    controls->ListView1.userPresses(keyCode::f1, keyModifier::control);
    EXPECT_EQ(system->launched,
              (Texts{"hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Viewing_image_service_metadata.htm"}));
    EXPECT_EQ(toolkit->clipboardText(), "");
  }
}

TEST_F(MetadataViewerDifferencesTest, PagesOfTheWindowKeepTheDistanceOfItsTree) {
  const auto corner = [this] { return Texts{lastEngineValue("Left"), lastEngineValue("Top")}; };
  openBothAfter([this] { openPage(); }, "Image");
  EXPECT_EQ(corner(), (Texts{"1", "7"}));
  openOneWindow();
  controls->uiTreeView.setGeometry({180, 90, 0, 0});
  clickNode("Image");
  EXPECT_EQ(corner(), (Texts{"12", "6"}));
}

TEST_F(MetadataViewerDifferencesTest, TheWindowMakesItsTreeAnewAtEachVisitAndShowsTheServiceAtOnce) {
  openPage();
  EXPECT_FALSE(fields->myPlexa);
  EXPECT_THROW(viewer->buildTree(), RuntimeFailure);
  imageMetadata = imageXml("<Basic/>", "");
  openOneWindow();
  EXPECT_TRUE(fields->myPlexa);
  EXPECT_EQ(nodeKeys().size(), 3U);
  clickNode("Image");
  service->answers["GetImageMetadata "] = imageOf({{}});
  static_cast<void>(newPointers());
  viewer->buildTree();
  EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess", "Raster"}));
  EXPECT_EQ(controls->uiTreeView.selectedKey(), "Service");
  EXPECT_TRUE(controls->TabStrip2.visible());
  EXPECT_EQ(newPointers(), (std::vector{Pointer::Hourglass, Pointer::Hourglass, Pointer::Default,
                                        Pointer::Default, Pointer::Default}));
}

TEST_F(MetadataViewerDifferencesTest, AVisitOfTheWindowEmptiesTheListOfRasters) {
  openOneWindow();
  clickNode("Raster");
  EXPECT_EQ(controls->RasterList.count(), 2U);
  EXPECT_EQ(viewer->rasters().selectedRasterId(), "1");
  viewer->buildTree();
  EXPECT_EQ(controls->RasterList.count(), 0U);
  controls->RasterList.addEntries({"north - 1"});
  controls->RasterList.setText("north - 1");
  EXPECT_THROW(static_cast<void>(viewer->rasters().selectedRasterId()), RuntimeFailure);
}

TEST_F(MetadataViewerDifferencesTest, TheLockButtonsSayDifferentThings) {
  openPage();
  EXPECT_TRUE(controls->Command7.toolTip().starts_with("Lock to selected raster. Note:"));
  openOneWindow();
  EXPECT_EQ(controls->Command7.toolTip(), "Lock to current image.");
}

TEST_F(MetadataViewerDifferencesTest, BothSaveAlike) {
  service->answers["GetImageMetadata Full"] = "<Vorlane><Full/></Vorlane>";
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    open();
    toolkit->chooseFile("C:\\image.xml");
    controls->Save.userClicks();
    EXPECT_EQ(system->readFile("C:\\image.xml"), "<Vorlane><Full/></Vorlane>");
    system->writeFile("C:\\image.xml", "");
  }
}

TEST_F(MetadataViewerDifferencesTest, TheWindowLetsItsProcessEnginesGoBetweenItsSides) {
  openOneWindow();
  clickNode("ServerProcess");
  static_cast<void>(newEngineCalls());
  viewer->releaseProcessEngines();
  EXPECT_EQ(newOperations(), (Texts{"ParentWindow 0", "released", "ParentWindow 0", "released"}));
  viewer->hideServerProcess();
  EXPECT_EQ(newOperations(), (Texts{"Visible false"}));
}

}  // namespace
}  // namespace vlclientui
