#include "metadata/SourceMetadata.h"

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageOf;
using test::imageXml;
using test::RasterText;
using Texts = std::vector<std::string>;

const Texts oneFetch{"GetImageMetadata ", "ServiceInfo", "GetMetaData "};
const Texts twoFetches{"GetImageMetadata ", "ServiceInfo", "GetMetaData ",
                       "GetImageMetadata ", "ServiceInfo", "GetMetaData "};

class SourceMetadataTest : public test::MetadataFixture {};

TEST_F(SourceMetadataTest, HasNoEngineBeforeItIsLoaded) {
  EXPECT_EQ(SourceMetadata(*toolkit).myPlexa, nullptr);
  EXPECT_TRUE(plexa->record->calls.empty());
}

TEST_F(SourceMetadataTest, ActivationFetchesTwiceAndShowsTheSelectedNode) {
  openPage();
  static_cast<void>(newServiceCalls());
  form->userActivates();
  EXPECT_EQ(newServiceCalls(), twoFetches);
  EXPECT_TRUE(controls->TabStrip2.visible());
  ASSERT_TRUE(fields->myPlexa);
}

TEST_F(SourceMetadataTest, FocusLetsPendingEventsRunThenFetchesTwice) {
  openPage();
  static_cast<void>(newServiceCalls());
  Texts atPendingEvents;
  int yields = 0;
  toolkit->setPendingEvents([&] {
    ++yields;
    atPendingEvents = service->calls;
  });
  form->userEnters();
  EXPECT_EQ(yields, 1);
  EXPECT_EQ(atPendingEvents, Texts{});
  EXPECT_EQ(newServiceCalls(), twoFetches);
}

TEST_F(SourceMetadataTest, FocusWhoseEventsUnloadThePageEndsThere) {
  openPage();
  toolkit->setPendingEvents([this] { form->unload(); });
  static_cast<void>(newServiceCalls());
  form->userEnters();
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(SourceMetadataTest, ActivationDoesNotYield) {
  openPage();
  int yields = 0;
  toolkit->setPendingEvents([&yields] { ++yields; });
  form->userActivates();
  EXPECT_EQ(yields, 0);
}

TEST_F(SourceMetadataTest, ARefreshWhileNothingShowsIsNone) {
  openPage();
  static_cast<void>(newServiceCalls());
  sourceMetadata().RefreshTheForm();
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(SourceMetadataTest, ARefreshBeforeLoadingIsNone) {
  SourceMetadata page(*toolkit);
  page.myImageServiceObject = service;
  page.RefreshTheForm();
  EXPECT_FALSE(page.loaded());
  EXPECT_TRUE(service->calls.empty());
}

TEST_F(SourceMetadataTest, ARefreshWhileTheServerProcessShowsIsNone) {
  openPage();
  clickNode("ServerProcess");
  static_cast<void>(newServiceCalls());
  sourceMetadata().RefreshTheForm();
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(SourceMetadataTest, ARefreshYieldsFetchesTwiceShowsTheNodeAndCommits) {
  openPage();
  clickNode("Image");
  static_cast<void>(newServiceCalls());
  int yields = 0;
  toolkit->setPendingEvents([&] {
    ++yields;
    EXPECT_TRUE(service->calls.empty());
  });
  service->answers["GetImageMetadata "] = imageXml("<Basic><NRows>77</NRows></Basic>", "");
  sourceMetadata().RefreshTheForm();
  EXPECT_EQ(yields, 1);
  EXPECT_EQ(newServiceCalls(), twoFetches);
  EXPECT_NE(page().DataXml().find("<NRows>77</NRows>"), std::string::npos);
  EXPECT_TRUE(plexa->record->calls.back().ends_with(".Commit"));
}

TEST_F(SourceMetadataTest, ARefreshThatLeavesNoPageEndsQuietlyWithoutCommit) {
  openPage();
  clickNode("Raster");
  service->answers["GetImageMetadata "] = imageXml("<Basic/>", "");
  sourceMetadata().RefreshTheForm();
  EXPECT_FALSE(fields->myPlexa);
  for (const std::string& call : plexa->record->calls) EXPECT_FALSE(call.ends_with(".Commit"));
}

TEST_F(SourceMetadataTest, AFailedCommitOfARefreshIsQuiet) {
  openPage();
  clickNode("Image");
  plexa->record->failAt = "Commit";
  EXPECT_NO_THROW(sourceMetadata().RefreshTheForm());
  EXPECT_EQ(threadState().gStatus, "");
}

TEST_F(SourceMetadataTest, ARefreshWhoseEventsUnloadThePageEndsThere) {
  openPage();
  clickNode("Image");
  toolkit->setPendingEvents([this] { form->unload(); });
  fields->myPlexa = plexa->createPlexa();
  static_cast<void>(newServiceCalls());
  sourceMetadata().RefreshTheForm();
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(SourceMetadataTest, RastersThatComeWithARefreshGetNoNodeUntilThePageIsBuiltAnew) {
  imageMetadata = imageXml("<Basic/>", "");
  openPage();
  clickNode("Image");
  service->answers["GetImageMetadata "] = imageOf({RasterText{}});
  sourceMetadata().RefreshTheForm();
  EXPECT_EQ(nodeKeys().size(), 3U);
  form->unload();
  form->load();
  controls = &sourceMetadata().controls();
  EXPECT_EQ(nodeKeys().size(), 4U);
}

TEST_F(SourceMetadataTest, TheSourceNodeStaysWhenTheNewImageHasNoRasters) {
  openPage();
  clickNode("Image");
  service->answers["GetImageMetadata "] = imageXml("<Basic/>", "");
  sourceMetadata().RefreshTheForm();
  EXPECT_EQ(nodeKeys().size(), 4U);
}

TEST_F(SourceMetadataTest, WithoutServiceAndRastersThreeNodesAreLeftAndTheirPagesWork) {
  imageMetadata = imageXml("<Basic><NRows>10</NRows></Basic>", "");
  openPageWithoutService();
  EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess"}));
  clickNode("Service");
  EXPECT_NE(page().DataXml().find("Alps"), std::string::npos);
  clickNode("Image");
  EXPECT_NE(page().DataXml().find("<NRows>10</NRows>"), std::string::npos);
  clickNode("ServerProcess");
  EXPECT_EQ(lastEngineValue("DataXml"), "<ServerProcess/>");
}

TEST_F(SourceMetadataTest, AServiceThatFailsAtLoadLeavesThreeNodesAndNoFailureReport) {
  service->failAt = "GetImageMetadata ";
  openPage();
  EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess"}));
  EXPECT_EQ(controls->uiTreeView.selectedKey(), "");
  EXPECT_TRUE(toolkit->failures().empty());
  service->failAt = "";
  clickNode("Image");
  EXPECT_TRUE(fields->myPlexa);
}

TEST_F(SourceMetadataTest, UnloadingDetachesAndReleasesAllEngines) {
  openPage();
  clickNode("Image");
  static_cast<void>(newEngineCalls());
  form->unload();
  EXPECT_EQ(newEngineCalls(), (Texts{"4.ParentWindow 0", "4.released", "1.ParentWindow 0", "1.released",
                                     "2.ParentWindow 0", "2.released", "3.ParentWindow 0", "3.released"}));
  EXPECT_FALSE(fields->myPlexa);
}

TEST_F(SourceMetadataTest, ReleasingThePageDetachesItsEnginesWhileItsWindowStands) {
  openPage();
  clickNode("ServerProcess");
  const WindowHandle window = toolkit->windowOf(*form);
  static_cast<void>(newEngineCalls());
  EXPECT_TRUE(toolkit->hasWindow(window));
  form.reset();
  const auto calls = newEngineCalls();
  EXPECT_EQ(calls.size(), 6U);
  EXPECT_EQ(calls.front(), "4.ParentWindow 0");
}

TEST_F(SourceMetadataTest, AnEngineThatCannotBeDetachedKeepsNoOtherFromBeing) {
  openPage();
  clickNode("Image");
  plexa->record->failAt = "ParentWindow";
  EXPECT_NO_THROW(form.reset());
}

// Lock to a raster.

class LockToRaster : public SourceMetadataTest {
 protected:
  void openSource() {
    openPage();
    sourceMetadata().FireOnChange.connect([this](const std::string& xml) { told.push_back(xml); });
    enter();
    clickNode("Raster");
    static_cast<void>(newServiceCalls());
  }
  void lock() { controls->Command7.userClicks(); }

  Texts told;
};

TEST_F(LockToRaster, StartsFromTheLiteralDocumentWhenNoPropertiesAreHeld) {
  openSource();
  lock();
  const std::string wanted =
      "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod>"
      "<LockImageID>1</LockImageID></ImageServiceProperties></Vorlane>";
  EXPECT_EQ(threadState().gServicePropertiesXml, wanted);
  EXPECT_EQ(told, (Texts{wanted}));
  EXPECT_EQ(threadState().gLockImageID, "1");
}

TEST_F(LockToRaster, WritesMethodAndIdIntoTheHeldProperties) {
  openSource();
  threadState().gServicePropertiesXml =
      "<Vorlane><ImageServiceProperties><MosaicMethod>Viewpoint</MosaicMethod><LockImageID>9</LockImageID>"
      "<Kept/></ImageServiceProperties></Vorlane>";
  controls->RasterList.userSelects(1);
  lock();
  EXPECT_EQ(told, (Texts{"<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod>"
                         "<LockImageID>2</LockImageID><Kept/></ImageServiceProperties></Vorlane>"}));
}

TEST_F(LockToRaster, CreatesAMissingLockElement) {
  openSource();
  threadState().gServicePropertiesXml =
      "<Vorlane><ImageServiceProperties><MosaicMethod/></ImageServiceProperties></Vorlane>";
  lock();
  EXPECT_EQ(told, (Texts{"<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod>"
                         "<LockImageID>1</LockImageID></ImageServiceProperties></Vorlane>"}));
}

TEST_F(LockToRaster, CreatesNoMissingMethod) {
  openSource();
  threadState().gServicePropertiesXml = "<Vorlane><ImageServiceProperties/></Vorlane>";
  lock();
  EXPECT_EQ(told, (Texts{"<Vorlane><ImageServiceProperties><LockImageID>1</LockImageID>"
                         "</ImageServiceProperties></Vorlane>"}));
}

TEST_F(LockToRaster, WritesNothingWhereTheGroupIsMissing) {
  openSource();
  threadState().gServicePropertiesXml = "<Vorlane><Other/></Vorlane>";
  lock();
  EXPECT_EQ(told, (Texts{"<Vorlane><Other/></Vorlane>"}));
  EXPECT_EQ(threadState().gLockImageID, "1");
}

TEST_F(LockToRaster, PropertiesThatDoNotParseBecomeEmpty) {
  openSource();
  threadState().gServicePropertiesXml = "<Vorlane>";
  lock();
  EXPECT_EQ(told, (Texts{""}));
}

TEST_F(LockToRaster, TheIdEndsAtItsFirstPoint) {
  imageMetadata = imageOf({{.id = "123.0"}});
  openSource();
  lock();
  EXPECT_EQ(threadState().gLockImageID, "123");
  EXPECT_NE(told.at(0).find("<LockImageID>123</LockImageID>"), std::string::npos);
}

TEST_F(LockToRaster, AnEmptyIdTellsTheUnchangedProperties) {
  imageMetadata = imageXml("",
                           "<Detailed><Rasters><Raster><Info><RasterId/><RasterName>n</RasterName>"
                           "<Visible>True</Visible></Info></Raster></Rasters></Detailed>");
  openSource();
  threadState().gServicePropertiesXml = "<Vorlane><ImageServiceProperties/></Vorlane>";
  threadState().gLockImageID = "before";
  lock();
  EXPECT_EQ(told, (Texts{"<Vorlane><ImageServiceProperties/></Vorlane>"}));
  EXPECT_EQ(threadState().gLockImageID, "before");
  EXPECT_TRUE(newServiceCalls().empty());
}

TEST_F(LockToRaster, AHiddenRasterLocksByItsIdWithoutTheMark) {
  openSource();
  controls->RasterList.userSelects(1);
  EXPECT_EQ(controls->RasterList.text(), "* south - 2");
  lock();
  EXPECT_EQ(threadState().gLockImageID, "2");
}

TEST_F(LockToRaster, AsksForTheDefinitionOnce) {
  openSource();
  lock();
  EXPECT_EQ(newServiceCalls(), (Texts{"GetDefinition 1"}));
}

TEST_F(LockToRaster, ANewerServiceIsAskedByKey) {
  service->type = "iovlImageService";
  openSource();
  lock();
  EXPECT_EQ(newServiceCalls(), (Texts{"getProperty ClientXADef"}));
}

TEST_F(LockToRaster, AFailedDefinitionEndsTheLockBeforeTheDocumentChanges) {
  openSource();
  const std::string before =
      "<Vorlane><ImageServiceProperties><MosaicMethod>Viewpoint</MosaicMethod></ImageServiceProperties>"
      "</Vorlane>";
  threadState().gServicePropertiesXml = before;
  service->failAt = "GetDefinition 1";
  lock();
  EXPECT_EQ(threadState().gServicePropertiesXml, before);
  EXPECT_EQ(threadState().gLockImageID, "1");
  EXPECT_TRUE(told.empty());
  EXPECT_EQ(toolkit->failures(), (Texts{"the service fails at GetDefinition 1"}));
}

TEST_F(LockToRaster, AFailedDefinitionLeavesTheLiteralDocumentWhenNoPropertiesWereHeld) {
  openSource();
  service->failAt = "GetDefinition 1";
  lock();
  EXPECT_NE(threadState().gServicePropertiesXml.find("<LockImageID>1</LockImageID>"), std::string::npos);
  EXPECT_TRUE(told.empty());
}

TEST_F(LockToRaster, NeedsNoService) {
  openPageWithoutService();
  sourceMetadata().FireOnChange.connect([this](const std::string& xml) { told.push_back(xml); });
  enter();
  clickNode("Raster");
  controls->Command7.click.raise();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].find("<LockImageID>1</LockImageID>"), std::string::npos);
  EXPECT_TRUE(service->calls.empty());
}

TEST_F(LockToRaster, LeavesThePagesAndTheListAsTheyShow) {
  openSource();
  clickRasterTab("Attributes");
  static_cast<void>(newEngineCalls());
  lock();
  EXPECT_TRUE(newEngineCalls().empty());
  EXPECT_TRUE(controls->ListView1.visible());
  EXPECT_EQ(controls->RasterList.text(), "north - 1");
}

TEST_F(LockToRaster, AListenerThatFailsReachesTheTopLevel) {
  openSource();
  sourceMetadata().FireOnChange.connect(
      [](const std::string&) { throw RuntimeFailure("nobody is listening"); });
  lock();
  EXPECT_EQ(toolkit->failures(), (Texts{"nobody is listening"}));
}

TEST_F(LockToRaster, ACaptionThatLeadsToNoRasterReachesTheTopLevel) {
  imageMetadata = imageOf({{.id = "1", .name = "a* b"}});
  openSource();
  ASSERT_TRUE(controls->Command7.visible());
  lock();
  EXPECT_EQ(toolkit->failures().size(), 1U);
  EXPECT_TRUE(told.empty());
}

}  // namespace
}  // namespace vlclientui
