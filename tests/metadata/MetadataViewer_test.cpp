#include "metadata/MetadataViewer.h"

#include "contracts/RuntimeFailure.h"
#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageOf;
using test::imageXml;
using Texts = std::vector<std::string>;
using Pointers = std::vector<Pointer>;

class MetadataViewerTest : public test::MetadataFixture {};

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST_F(MetadataViewerTest, TheTreeHasServiceImageProcessAndSourceInThisOrder) {
  openPage();
  const auto& nodes = controls->uiTreeView.nodes();
  ASSERT_EQ(nodes.size(), 4U);
  EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess", "Raster"}));
  EXPECT_EQ(nodes[0].text, "Service Info");
  EXPECT_EQ(nodes[1].text, "Image Returned");
  EXPECT_EQ(nodes[2].text, "Server Process");
  EXPECT_EQ(nodes[3].text, "Source");
}

TEST_F(MetadataViewerTest, AnImageWithoutRastersHasNoSourceNode) {
  imageMetadata = imageXml("<Basic/>", "<Detailed><Rasters/></Detailed>");
  openPage();
  EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess"}));
}

TEST_F(MetadataViewerTest, WithoutAServiceTheTreeIsMadeFromTheText) {
  openPageWithoutService();
  EXPECT_EQ(nodeKeys().size(), 4U);
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(MetadataViewerTest, WithAServiceTheTreeIsMadeFromItsImageAndTheTextStays) {
  fields = nullptr;
  service->answers["GetImageMetadata "] = imageXml("<Basic/>", "");
  openPage();
  EXPECT_EQ(nodeKeys().size(), 3U);
  EXPECT_EQ(newServiceCalls(), (Texts{"GetImageMetadata "}));
  EXPECT_EQ(fields->myImageMetaDataXml, imageMetadata);
}

TEST_F(MetadataViewerTest, LoadingMarksTheFirstNodeAndShowsNoPage) {
  openPage();
  EXPECT_EQ(controls->uiTreeView.selectedKey(), "Service");
  EXPECT_FALSE(fields->myPlexa);
  EXPECT_FALSE(controls->TabStrip2.visible());
  EXPECT_FALSE(controls->FirstPageFrame.visible());
  EXPECT_TRUE(newPointers().empty());
}

TEST_F(MetadataViewerTest, LoadingHidesThenSizesTheThreeTreeEngines) {
  openPage();
  EXPECT_EQ(newEngineCalls(),
            (Texts{"1.Visible false", "2.Visible false", "3.Visible false", "1.Width 414", "1.Height 330",
                   "2.Width 405", "2.Height 280", "3.Width 405", "3.Height 280"}));
}

TEST_F(MetadataViewerTest, AClickFetchesThreeDocumentsInOrder) {
  openPage();
  static_cast<void>(newServiceCalls());
  clickNode("Service");
  EXPECT_EQ(newServiceCalls(), (Texts{"GetImageMetadata ", "ServiceInfo", "GetMetaData "}));
}

TEST_F(MetadataViewerTest, AClickOnTheSelectedNodeFetchesAgain) {
  openPage();
  clickNode("Image");
  static_cast<void>(newServiceCalls());
  clickNode("Image");
  EXPECT_EQ(newServiceCalls(), (Texts{"GetImageMetadata ", "ServiceInfo", "GetMetaData "}));
}

TEST_F(MetadataViewerTest, FetchedDocumentsGetOneHelpBlockEach) {
  openPage();
  clickNode("Image");
  clickNode("Image");
  for (const std::string& xml :
       {fields->myImageMetaDataXml, fields->myServiceInfoXml, fields->myMetaDataXml}) {
    EXPECT_EQ(countOf(xml, "<X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF>"), 1U) << xml;
  }
}

TEST_F(MetadataViewerTest, WithoutAServiceEachPassAddsOneMoreHelpBlock) {
  openPageWithoutService();
  for (int pass = 0; pass < 3; ++pass) clickNode("Image");
  for (const std::string& xml :
       {fields->myImageMetaDataXml, fields->myServiceInfoXml, fields->myMetaDataXml}) {
    EXPECT_EQ(countOf(xml, "<HELP_Path>"), 3U) << xml;
    EXPECT_EQ(countOf(xml, "<X_DEF/>"), 2U) << xml;
  }
}

TEST_F(MetadataViewerTest, ServiceMetadataWithAnotherRootPassesUnchanged) {
  serviceMetadata = "<Vorlane><Author/></Vorlane>";
  openPage();
  clickNode("Service");
  EXPECT_EQ(fields->myMetaDataXml, serviceMetadata);
}

TEST_F(MetadataViewerTest, AFailedFirstCallKeepsTheOldTextsAndMakesNoOtherCall) {
  openPage();
  clickNode("Image");
  const MetadataFields before = *fields;
  static_cast<void>(newServiceCalls());
  service->failAt = "GetImageMetadata ";
  clickNode("Service");
  EXPECT_EQ(newServiceCalls(), (Texts{"GetImageMetadata "}));
  EXPECT_EQ(fields->myImageMetaDataXml, before.myImageMetaDataXml);
  EXPECT_EQ(fields->myServiceInfoXml, before.myServiceInfoXml);
  EXPECT_EQ(page().DataXml().find("Alps") != std::string::npos, true);
  EXPECT_EQ(threadState().gStatus, "");
}

TEST_F(MetadataViewerTest, AFailedSecondCallKeepsWhatWasFetchedBefore) {
  openPage();
  service->failAt = "ServiceInfo";
  service->answers["GetImageMetadata "] = imageXml("<Basic><New/></Basic>", "");
  static_cast<void>(newServiceCalls());
  clickNode("Image");
  EXPECT_EQ(newServiceCalls(), (Texts{"GetImageMetadata ", "ServiceInfo"}));
  EXPECT_NE(fields->myImageMetaDataXml.find("<New/>"), std::string::npos);
  EXPECT_EQ(fields->myMetaDataXml, serviceMetadata);
}

TEST_F(MetadataViewerTest, AFailedThirdCallKeepsTheOldServiceMetadata) {
  openPage();
  service->failAt = "GetMetaData ";
  clickNode("Image");
  EXPECT_EQ(fields->myMetaDataXml, serviceMetadata);
  EXPECT_EQ(countOf(fields->myServiceInfoXml, "<HELP_Path>"), 1U);
}

TEST_F(MetadataViewerTest, AnObjectThatIsNoServiceLeavesTheTextsAsTheyAre) {
  openPage();
  fields->myImageServiceObject = std::make_shared<test::FakeStranger>();
  clickNode("Image");
  EXPECT_EQ(fields->myImageMetaDataXml, imageMetadata);
  EXPECT_NE(page().DataXml().find("<NRows>10</NRows>"), std::string::npos);
}

TEST_F(MetadataViewerTest, AClickShowsTheHourglassThenTwiceTheDefaultPointer) {
  openPage();
  for (const std::string key : {"Service", "Image", "ServerProcess", "Raster"}) {
    static_cast<void>(newPointers());
    clickNode(key);
    EXPECT_EQ(newPointers(), (Pointers{Pointer::Hourglass, Pointer::Default, Pointer::Default})) << key;
  }
}

TEST_F(MetadataViewerTest, ACleanClickClearsAnEarlierFailureText) {
  openPage();
  threadState().gStatus = "an earlier failure";
  clickNode("Image");
  EXPECT_EQ(threadState().gStatus, "");
}

TEST_F(MetadataViewerTest, AFailureOfTheClickItselfIsTheStatusAndThePointerReturns) {
  openPage();
  clickNode("Image");
  static_cast<void>(newPointers());
  plexa->record->failAt = "ParentWindow";
  clickNode("Service");
  EXPECT_EQ(threadState().gStatus, "the engine fails at ParentWindow");
  EXPECT_EQ(newPointers(), (Pointers{Pointer::Default}));
  EXPECT_TRUE(toolkit->failures().empty());
}

TEST_F(MetadataViewerTest, AFailureOfAPageLeavesTheStatusClear) {
  openPage();
  plexa->record->failAt = "Show";
  for (const std::string key : {"Service", "Image", "ServerProcess", "Raster"}) {
    threadState().gStatus = "before";
    clickNode(key);
    EXPECT_EQ(threadState().gStatus, "") << key;
  }
  EXPECT_TRUE(toolkit->messages().empty());
}

TEST_F(MetadataViewerTest, WithoutASelectedNodeTheClickTellsTheStatus) {
  openPage();
  controls->uiTreeView.clear();
  viewer->showSelectedNode();
  EXPECT_FALSE(threadState().gStatus.empty());
  EXPECT_FALSE(fields->myPlexa);
}

TEST_F(MetadataViewerTest, ThePageEngineIsDetachedBeforeItIsReleased) {
  openPage();
  clickNode("Image");
  static_cast<void>(newEngineCalls());
  clickNode("ServerProcess");
  const auto calls = newEngineCalls();
  ASSERT_GE(calls.size(), 2U);
  EXPECT_EQ(calls[0], "4.ParentWindow 0");
  EXPECT_EQ(calls[1], "4.released");
  EXPECT_FALSE(fields->myPlexa);
}

TEST_F(MetadataViewerTest, EveryEngineIsDetachedBeforeItIsReleased) {
  openPage();
  for (const std::string key : {"Service", "Image", "ServerProcess", "Raster", "ServerProcess", "Raster"}) {
    clickNode(key);
    if (key == "Raster") {
      for (const std::string tab : {"Metadata", "Process", "Information", "Process"}) clickRasterTab(tab);
    }
  }
  form.reset();
  const auto& calls = plexa->record->calls;
  std::size_t released = 0;
  for (std::size_t at = 0; at < calls.size(); ++at) {
    if (!calls[at].ends_with(".released")) continue;
    ++released;
    const std::string number = calls[at].substr(0, calls[at].find('.'));
    EXPECT_EQ(calls[at - 1], number + ".ParentWindow 0");
  }
  EXPECT_GE(released, 10U);
  for (int engine = 1; engine <= static_cast<int>(released); ++engine) EXPECT_FALSE(plexa->engine(engine));
}

TEST_F(MetadataViewerTest, HidingThePagesHidesEveryControlBehindTheNodes) {
  openPage();
  MetadataControls& all = *controls;
  const std::vector<Control*> pages{&all.TabStrip1,    &all.RasterList,      &all.Label1,
                                    &all.MetadataText, &all.ProcessMetadata, &all.ListView1,
                                    &all.InfoFrame,    &all.FirstPageFrame,  &all.TabStrip2,
                                    &all.Command7,     &all.MDRichText,      &*all.SourceImagesList};
  for (Control* const control : pages) control->setVisible(true);
  all.MDRichText.setText("text");
  viewer->HidePages();
  for (const Control* const control : pages) EXPECT_FALSE(control->visible()) << control->name();
  EXPECT_EQ(all.MDRichText.text(), "");
  EXPECT_TRUE(all.Frame1.visible());
}

TEST_F(MetadataViewerTest, ThePagesAreHiddenInAFixedOrder) {
  openPage();
  Texts order;
  for (Control* const control : form->controls()) {
    control->changed.connect([&order, control](Aspect aspect) {
      if (aspect == Aspect::Visible) order.push_back(control->name());
    });
  }
  viewer->HidePages();
  EXPECT_EQ(order,
            (Texts{"MDRichText", "TabStrip1", "RasterList", "Label1", "SourceImagesList", "MetadataText",
                   "ProcessMetadata", "ListView1", "InfoFrame", "FirstPageFrame", "TabStrip2", "Command7"}));
}

TEST_F(MetadataViewerTest, HidingThePagesHidesTheThreeEnginesInOrder) {
  openPage();
  static_cast<void>(newEngineCalls());
  viewer->HidePages();
  EXPECT_EQ(newEngineCalls(), (Texts{"1.Visible false", "2.Visible false", "3.Visible false"}));
}

TEST_F(MetadataViewerTest, WhatIsHiddenAtAllTimesNeverShows) {
  openPage();
  Texts shown;
  for (Control* const control :
       {static_cast<Control*>(&controls->MDRichText), static_cast<Control*>(&controls->MetadataText),
        static_cast<Control*>(&controls->ProcessMetadata), static_cast<Control*>(&*controls->Send),
        static_cast<Control*>(&*controls->SourceImagesList)}) {
    EXPECT_FALSE(control->visible()) << control->name();
    control->changed.connect([&shown, control](Aspect) {
      if (control->visible()) shown.push_back(control->name());
    });
  }
  for (const std::string key : {"Service", "Image", "ServerProcess", "Raster"}) clickNode(key);
  for (const std::string tab : {"Metadata", "Attributes", "Process"}) clickRasterTab(tab);
  EXPECT_EQ(shown, Texts{});
  EXPECT_FALSE(controls->Send->enabled());
  EXPECT_EQ(controls->SourceImagesList->count(), 0U);
}

TEST_F(MetadataViewerTest, ControlsCarryTheirCaptionsAndHints) {
  openPage();
  EXPECT_EQ(controls->TabStrip2.captions(), (Texts{"Information", "Properties", "Metadata"}));
  EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Metadata", "Attributes", "Process"}));
  EXPECT_EQ(controls->ListView1.columns(), (Texts{"Name", "Value"}));
  EXPECT_EQ(controls->Label1.caption(), "Raster:");
  EXPECT_EQ(controls->Save.caption(), "&Save As");
  EXPECT_EQ(controls->Save.toolTip(), "Save the metadata to a given file.");
  EXPECT_EQ(controls->Send->toolTip(), "Send to browser");
  EXPECT_EQ(controls->Command7.toolTip(),
            "Lock to selected raster. Note: Change of mosaic method in Service Properties will only be "
            "reflected on OK/Apply.");
}

// Keys.

TEST_F(MetadataViewerTest, HelpOfTheFirstBoxFindsItsHomeInTheRegistry) {
  system->registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\Ostrel\\Vor Lane\\Home"] = {1, "D:\\Vor\\", 0};
  openPage();
  controls->uiTreeView.userFocuses();
  controls->MDRichText.keyDown.raise({keyCode::f1, keyModifier::control});
  EXPECT_EQ(system->launched,
            (Texts{"hh.exe D:\\Vor\\Help\\Vorlane_Clients.chm::/Viewing_image_service_metadata.htm"}));
}

TEST_F(MetadataViewerTest, HelpOfTheOtherBoxesAndTheListFindsItsHomeWithTheInstallation) {
  system->registry["HKEY_LOCAL_MACHINE\\SOFTWARE\\Ostrel\\Vor Lane\\Home"] = {1, "D:\\Vor\\", 0};
  openPage();
  controls->uiTreeView.userFocuses();
  const Texts wanted{"hh.exe C:\\Home\\Help\\Vorlane_Clients.chm::/Viewing_image_service_metadata.htm"};
  for (const Control* const control : {static_cast<const Control*>(&controls->MetadataText),
                                       static_cast<const Control*>(&controls->ProcessMetadata),
                                       static_cast<const Control*>(&controls->ListView1)}) {
    system->launched.clear();
    control->keyDown.raise({keyCode::f1, keyModifier::control});
    EXPECT_EQ(system->launched, wanted) << control->name();
  }
  EXPECT_TRUE(system->registryLog.empty());
}

TEST_F(MetadataViewerTest, HelpNeedsControlAloneAndAControlWithTheFocus) {
  openPage();
  controls->ListView1.keyDown.raise({keyCode::f1, keyModifier::control});
  controls->uiTreeView.userFocuses();
  controls->ListView1.keyDown.raise({keyCode::f1, keyModifier::none});
  controls->ListView1.keyDown.raise({keyCode::f1, keyModifier::control | keyModifier::shift});
  controls->uiTreeView.keyDown.raise({keyCode::f1, keyModifier::control});
  EXPECT_TRUE(system->launched.empty());
}

class AttributeListKeys : public MetadataViewerTest {
 protected:
  void openList() {
    openPage();
    clickNode("Raster");
    clickRasterTab("Attributes");
    controls->ListView1.userFocuses();
    toolkit->setClipboardText("held before");
  }
};

TEST_F(AttributeListKeys, EveryKeyEmptiesTheClipboard) {
  openList();
  for (const std::int32_t key : {keyCode::f1, 40, 65, keyCode::escape}) {
    toolkit->setClipboardText("held before");
    controls->ListView1.userPresses(key);
    EXPECT_EQ(toolkit->clipboardText(), "") << key;
  }
}

TEST_F(AttributeListKeys, ControlCCopiesTheValueOfTheSelectedItem) {
  openList();
  controls->ListView1.userSelects(0);
  controls->ListView1.userPresses('C', keyModifier::control);
  EXPECT_EQ(toolkit->clipboardText(), "1998");
}

TEST_F(AttributeListKeys, ControlCWithoutASelectionLeavesTheClipboardEmpty) {
  openList();
  controls->ListView1.userPresses('C', keyModifier::control);
  EXPECT_EQ(toolkit->clipboardText(), "");
}

TEST_F(AttributeListKeys, CWithoutControlCopiesNothing) {
  openList();
  controls->ListView1.userSelects(0);
  controls->ListView1.userPresses('C');
  EXPECT_EQ(toolkit->clipboardText(), "");
}

// Saving.

TEST_F(MetadataViewerTest, SavingWritesTheImageMetadataOfTheLevelFullWhateverShows) {
  service->answers["GetImageMetadata Full"] = "<Vorlane><Full/></Vorlane>";
  openPage();
  enter();
  clickNode("Service");
  static_cast<void>(newServiceCalls());
  toolkit->chooseFile("C:\\image.xml");
  controls->Save.userClicks();
  EXPECT_EQ(system->readFile("C:\\image.xml"), "<Vorlane><Full/></Vorlane>");
  EXPECT_EQ(newServiceCalls(), (Texts{"GetImageMetadata Full"}));
  EXPECT_EQ(toolkit->saveDialogs(), (std::vector<FileDialog>{{.fileName = "",
                                                              .filter = "Xml (*.xml) | *.xml",
                                                              .title = "",
                                                              .startFolder = "",
                                                              .asksBeforeOverwriting = true}}));
}

TEST_F(MetadataViewerTest, SavingWithoutAServiceWritesTheTextThatIsHeld) {
  imageMetadata = "<Vorlane><Held/></Vorlane>";
  openPageWithoutService();
  enter();
  fields->myImageMetaDataXml = imageMetadata;
  toolkit->chooseFile("C:\\image.xml");
  controls->Save.userClicks();
  EXPECT_EQ(system->readFile("C:\\image.xml"), imageMetadata);
}

TEST_F(MetadataViewerTest, ACanceledSaveAsksTheServiceNothing) {
  openPage();
  enter();
  static_cast<void>(newServiceCalls());
  controls->Save.userClicks();
  toolkit->chooseFile("");
  controls->Save.userClicks();
  EXPECT_TRUE(newServiceCalls().empty());
  EXPECT_TRUE(toolkit->failures().empty());
}

TEST_F(MetadataViewerTest, ARefusedFileReachesTheTopLevelAndTheDialogKeepsItsName) {
  service->answers["GetImageMetadata Full"] = "<Vorlane/>";
  openPage();
  toolkit->chooseFile("C:\\no\\such\\folder\\image.xml");
  controls->Save.userClicks();
  EXPECT_EQ(toolkit->failures().size(), 1U);
  toolkit->chooseFile("C:\\image.xml");
  controls->Save.userClicks();
  EXPECT_EQ(toolkit->saveDialogs().back().fileName, "C:\\no\\such\\folder\\image.xml");
  controls->Save.userClicks();
  EXPECT_EQ(toolkit->saveDialogs().back().fileName, "");
}

TEST_F(MetadataViewerTest, AServiceThatFailsAtSavingReachesTheTopLevel) {
  openPage();
  service->failAt = "GetImageMetadata Full";
  toolkit->chooseFile("C:\\image.xml");
  controls->Save.userClicks();
  EXPECT_EQ(toolkit->failures(), (Texts{"the service fails at GetImageMetadata Full"}));
}

TEST_F(MetadataViewerTest, ANodeThatNobodyKnowsShowsNoPage) {
  for (const bool inOneWindow : {false, true}) {
    inOneWindow ? openOneWindow() : openPage();
    controls->uiTreeView.addNode("", "Stranger", "Stranger");
    clickNode("Stranger");
    EXPECT_FALSE(fields->myPlexa);
    EXPECT_FALSE(controls->ListView1.visible());
  }
}

}  // namespace
}  // namespace vlclientui
