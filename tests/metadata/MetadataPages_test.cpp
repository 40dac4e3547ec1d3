#include "metadata/MetadataPages.h"

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageXml;
using Texts = std::vector<std::string>;

const std::string helpHead = "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF>";

class MetadataPagesTest : public test::MetadataFixture {
 protected:
  /// Opens the image page on a `Basic` group with these children and gives the data that the page got.
  std::string imageDataOf(const std::string& children) {
    imageMetadata = imageXml("<Basic>" + children + "</Basic>", "");
    openPage();
    clickNode("Image");
    return page().DataXml();
  }
  static std::string basicWith(const std::string& children) {
    return helpHead + "<Basic>" + children + "</Basic></Vorlane>";
  }
  /// Expects a page on show whose engine holds these three texts.
  void expectPage(const std::string& attributes, const std::string& formText, const std::string& data) {
    ASSERT_TRUE(fields->myPlexa);
    EXPECT_EQ(page().AttributeDefinition(), attributes);
    EXPECT_EQ(page().FormDefinition(), formText);
    EXPECT_EQ(page().DataXml(), data);
  }
};

// The service.

TEST_F(MetadataPagesTest, TheServiceNodeShowsItsTabsAndTheInformationOfTheService) {
  openPage();
  clickNode("Service");
  EXPECT_TRUE(controls->TabStrip2.visible());
  EXPECT_TRUE(controls->FirstPageFrame.visible());
  expectPage(helpHead + "<KeyDetails><A_Key/></KeyDetails></Vorlane>",
             "<Vorlane><KeyDetails><F_Key/></KeyDetails></Vorlane>",
             helpHead + "<KeyDetails><Title>Alps</Title></KeyDetails></Vorlane>");
}

TEST_F(MetadataPagesTest, ServiceInfoWithoutKeyDetailsIsShownWithEmptyData) {
  serviceInfo = "<Vorlane><ImageServiceInfo/></Vorlane>";
  openPage();
  clickNode("Service");
  EXPECT_EQ(page().DataXml(), "");
}

TEST_F(MetadataPagesTest, ThePropertiesTabShowsTheWholeServiceInfoUnderTheWholeDefinition) {
  openPage();
  clickNode("Service");
  clickServiceTab("Properties");
  EXPECT_TRUE(page().AttributeDefinition().starts_with("<Vorlane><Client>"));
  EXPECT_TRUE(page().AttributeDefinition().ends_with(
      "<X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF></Vorlane>"));
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><F_Properties/></Vorlane>");
  EXPECT_EQ(page().DataXml(), fields->myServiceInfoXml);
  EXPECT_NE(page().DataXml().find("<X_DEF>"), std::string::npos);
}

TEST_F(MetadataPagesTest, TheMetadataTabJoinsTheChildrenOfTheDefinitionsOfAnOlderService) {
  service->answers["GetDefinition 4"] = "<XFDef><F1/><F2>x</F2></XFDef>";
  service->answers["GetDefinition 3"] = "<XADef><A1/><A2/></XADef>";
  openPage();
  clickNode("Service");
  static_cast<void>(newServiceCalls());
  clickServiceTab("Metadata");
  EXPECT_EQ(newServiceCalls(), (Texts{"GetDefinition 4", "GetDefinition 3"}));
  expectPage("<A1/><A2/>", "<F1/><F2>x</F2>", fields->myMetaDataXml);
}

TEST_F(MetadataPagesTest, TheMetadataTabAsksANewerServiceByKeyWhateverTheCaseOfItsName) {
  service->type = "IOvlImageService";
  service->answers["getProperty ServiceMetadataXFDef"] = "<XFDef><F/></XFDef>";
  service->answers["getProperty ServiceMetadataXADef"] = "<XADef><A/></XADef>";
  openPage();
  clickNode("Service");
  static_cast<void>(newServiceCalls());
  clickServiceTab("Metadata");
  EXPECT_EQ(newServiceCalls(),
            (Texts{"getProperty ServiceMetadataXFDef", "getProperty ServiceMetadataXADef"}));
  expectPage("<A/>", "<F/>", fields->myMetaDataXml);
}

TEST_F(MetadataPagesTest, WithoutAServiceTheMetadataTabUsesTheDefinitionsOfTheHost) {
  threadState().gServiceMetadataXFDef = "<XFDef><HostForm/></XFDef>";
  threadState().gServiceMetadataXADef = "<XADef><HostAttributes/></XADef>";
  openPageWithoutService();
  clickNode("Service");
  clickServiceTab("Metadata");
  expectPage("<HostAttributes/>", "<HostForm/>", fields->myMetaDataXml);
}

TEST_F(MetadataPagesTest, DefinitionsWithoutTheirWrapperAreEmpty) {
  service->answers["GetDefinition 4"] = "<Other><F/></Other>";
  service->answers["GetDefinition 3"] = "no xml";
  openPage();
  clickNode("Service");
  clickServiceTab("Metadata");
  expectPage("", "", fields->myMetaDataXml);
}

TEST_F(MetadataPagesTest, TheImageDefinitionsOfTheHostAreReadByNoPage) {
  threadState().gImageMetadataXADef = "<XADef><HostImage/></XADef>";
  threadState().gImageMetadataXFDef = "<XFDef><HostImage/></XFDef>";
  openPageWithoutService();
  for (const std::string key : {"Service", "Image", "ServerProcess", "Raster"}) clickNode(key);
  for (const std::string& call : plexa->record->calls) EXPECT_EQ(call.find("HostImage"), std::string::npos);
}

TEST_F(MetadataPagesTest, ATabClickFetchesNothingHidesNothingAndShowsOldData) {
  openPage();
  clickNode("Service");
  service->answers["ServiceInfo"] = "<Vorlane><New/></Vorlane>";
  static_cast<void>(newServiceCalls());
  static_cast<void>(newEngineCalls());
  clickServiceTab("Properties");
  EXPECT_TRUE(newServiceCalls().empty());
  EXPECT_EQ(page().DataXml().find("<New/>"), std::string::npos);
  EXPECT_NE(page().DataXml().find("Alps"), std::string::npos);
  EXPECT_EQ(newEngineCalls().front(), "4.ParentWindow 0");
  clickNode("Service");
  EXPECT_NE(page().DataXml().find("<New/>"), std::string::npos);
}

TEST_F(MetadataPagesTest, TheNodeShowsTheTabThatWasSelectedLast) {
  openPage();
  clickNode("Service");
  clickServiceTab("Properties");
  clickNode("Image");
  clickNode("Service");
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><F_Properties/></Vorlane>");
}

TEST_F(MetadataPagesTest, ATabOfAnotherCaptionDoesNothing) {
  openPage();
  clickNode("Service");
  controls->TabStrip2.setCaption(0, "Else");
  static_cast<void>(newEngineCalls());
  clickServiceTab("Else");
  EXPECT_TRUE(newEngineCalls().empty());
}

TEST_F(MetadataPagesTest, EveryTabOfTheServiceStandsOnTheFrameOfTheServicePages) {
  openPage();
  clickNode("Service");
  for (const std::string tab : {"Properties", "Metadata", "Information"}) {
    clickServiceTab(tab);
    EXPECT_EQ(lastEngineValue("ParentWindow"), std::to_string(toolkit->windowOf(controls->FirstPageFrame)))
        << tab;
    EXPECT_EQ(lastEngineValue("DataRootPath"), "//") << tab;
  }
}

TEST_F(MetadataPagesTest, EveryChildOfAWrapperIsJoinedWhateverItIs) {
  service->answers["GetDefinition 4"] = "<XFDef>text<F1/><!-- c --><F2/><![CDATA[<d>]]></XFDef>";
  service->answers["GetDefinition 3"] = "<Top><XADef><A1 b='2'/><!-- c --></XADef></Top>";
  openPage();
  clickNode("Service");
  clickServiceTab("Metadata");
  expectPage("<A1 b=\"2\"/><!-- c -->", "text<F1/><!-- c --><F2/><![CDATA[<d>]]>", fields->myMetaDataXml);
}

// Pages with definitions.

TEST_F(MetadataPagesTest, APageIsBuiltInTheOrderOfTheEngine) {
  openPage();
  controls->Frame1.setGeometry({0, 0, 1500, 3000});
  form->unload();
  form->load();
  controls = &sourceMetadata().controls();
  static_cast<void>(newEngineCalls());
  clickNode("Image");
  const auto calls = newEngineCalls();
  const std::string frame = std::to_string(toolkit->windowOf(controls->Frame1));
  const auto rect = *toolkit->windowRect(toolkit->windowOf(controls->Frame1));
  const Texts wanted{"7.EmbeddedMode true",
                     "7.SetOption readonly true",
                     "7.AttributeDefinition " + page().AttributeDefinition(),
                     "7.FormDefinition " + page().FormDefinition(),
                     "7.DataXml " + page().DataXml(),
                     "7.DataRootPath //",
                     "7.ParentWindow " + frame,
                     "7.Top 7",
                     "7.Left 1",
                     "7.Width " + std::to_string(rect.width() - 5),
                     "7.Height " + std::to_string(rect.height()),
                     "7.Show"};
  ASSERT_GE(calls.size(), wanted.size());
  EXPECT_EQ(Texts(calls.end() - static_cast<std::ptrdiff_t>(wanted.size()), calls.end()), wanted);
}

TEST_F(MetadataPagesTest, APageNeverKeepsItsHeader) {
  service->answers["GetDefinition 4"] =
      "<XFDef><Metadata><xfd_header><Title/></xfd_header><F/></Metadata></XFDef>";
  openPage();
  clickNode("Service");
  clickServiceTab("Metadata");
  EXPECT_EQ(page().FormDefinition(), "<Metadata><F/></Metadata>");
}

TEST_F(MetadataPagesTest, AHeaderDeepInADefinitionGoesAsWell) {
  system->writeFile("C:\\Program\\VLClient.Xfdef",
                    "<Vorlane><ImageServiceInfo><KeyDetails><xfd_header/><F/></KeyDetails>"
                    "</ImageServiceInfo></Vorlane>");
  openPage();
  clickNode("Service");
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><KeyDetails><F/></KeyDetails></Vorlane>");
}

TEST_F(MetadataPagesTest, ADefinitionWithoutHeaderIsGivenToTheLetter) {
  service->answers["GetDefinition 4"] = "<XFDef><F/><G/></XFDef>";
  openPage();
  clickNode("Service");
  clickServiceTab("Metadata");
  EXPECT_EQ(page().FormDefinition(), "<F/><G/>");
}

TEST_F(MetadataPagesTest, ASectionMissingFromADefinitionFileIsAnEmptyDefinition) {
  system->writeFile("C:\\Program\\VLClient.XADef", "<Vorlane/>");
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
  openPage();
  clickNode("Image");
  EXPECT_EQ(page().AttributeDefinition(), "");
  EXPECT_EQ(page().FormDefinition(), "");
  clickNode("Service");
  EXPECT_EQ(page().AttributeDefinition(), "");
  EXPECT_EQ(page().FormDefinition(), "");
  clickServiceTab("Properties");
  EXPECT_EQ(page().AttributeDefinition(), helpHead + "</Vorlane>");
  EXPECT_EQ(page().FormDefinition(), "");
}

TEST_F(MetadataPagesTest, MissingOrMalformedDefinitionFilesLeaveEmptyDefinitions) {
  threadState().ClientXADefPath = "C:\\Program\\none";
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane>");
  openPage();
  for (const std::string key : {"Image", "Service", "Raster"}) {
    clickNode(key);
    ASSERT_TRUE(fields->myPlexa) << key;
    EXPECT_EQ(page().AttributeDefinition(), "") << key;
    EXPECT_EQ(page().FormDefinition(), "") << key;
  }
}

TEST_F(MetadataPagesTest, DefinitionFilesAreReadEachTimeAPageIsBuilt) {
  openPage();
  clickNode("Image");
  system->writeFile("C:\\Program\\VLClient.Xfdef",
                    "<Vorlane><ImageMetadata><Basic><Changed/></Basic></ImageMetadata></Vorlane>");
  clickNode("Image");
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><Basic><Changed/></Basic></Vorlane>");
}

// The image.

TEST_F(MetadataPagesTest, TheImagePageShowsTheBasicGroupOnItsFrame) {
  EXPECT_EQ(imageDataOf("<NRows>10</NRows>"), basicWith("<NRows>10</NRows>"));
  EXPECT_EQ(page().AttributeDefinition(), helpHead + "<Basic><A_Image/></Basic></Vorlane>");
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><Basic><F_Image/></Basic></Vorlane>");
  EXPECT_EQ(lastEngineValue("ParentWindow"), std::to_string(toolkit->windowOf(controls->Frame1)));
  EXPECT_FALSE(controls->FirstPageFrame.visible());
  EXPECT_FALSE(controls->TabStrip2.visible());
}

TEST_F(MetadataPagesTest, WithoutABasicGroupTheImagePageShowsEmptyData) {
  imageMetadata = imageXml("", "<Detailed/>");
  openPage();
  clickNode("Image");
  EXPECT_EQ(page().DataXml(), "");
}

TEST_F(MetadataPagesTest, AnImageDocumentThatDoesNotParseShowsEmptyData) {
  imageMetadata = "<Vorlane>";
  openPage();
  clickNode("Image");
  ASSERT_TRUE(fields->myPlexa);
  EXPECT_EQ(page().DataXml(), "");
}

TEST_F(MetadataPagesTest, TheBufferSizeIsShownInWholeKilobytesHalvesUp) {
  const std::map<std::string, std::string> shown{
      {"1536", "2"},  {"1024", "1"},    {"512", "1"},     {"511", "511"},  {"100", "100"},
      {"0", "0"},     {"1535.9", "1"},  {"2560.0", "3"},  {"-2048", "-2"}, {"1048576", "1024"},
      {"1e6", "977"}, {"-511", "-511"}, {"-100", "-100"}, {"-512", "-1"}};
  for (const auto& [bytes, text] : shown) {
    EXPECT_EQ(imageDataOf("<BufferSize>" + bytes + "</BufferSize>"),
              basicWith("<BufferSize>" + text + "</BufferSize>"))
        << bytes;
  }
}

TEST_F(MetadataPagesTest, TheBufferSizeOfADocumentHasAPointUnderEveryLocale) {
  system->locale = {",", ".", "EUR"};
  EXPECT_EQ(imageDataOf("<BufferSize>1535.9</BufferSize>"), basicWith("<BufferSize>1</BufferSize>"));
  EXPECT_EQ(imageDataOf("<BufferSize>0.05</BufferSize>"), basicWith("<BufferSize>0.05</BufferSize>"));
}

TEST_F(MetadataPagesTest, AnEmptyBufferSizeStaysEmpty) {
  EXPECT_EQ(imageDataOf("<BufferSize/>"), basicWith("<BufferSize/>"));
}

TEST_F(MetadataPagesTest, ABufferSizeThatIsNoNumberLeavesThePageBlank) {
  imageMetadata = imageXml("<Basic><BufferSize>large</BufferSize></Basic>", "");
  openPage();
  threadState().gStatus = "before";
  clickNode("Image");
  EXPECT_FALSE(fields->myPlexa);
  EXPECT_EQ(threadState().gStatus, "");
}

TEST_F(MetadataPagesTest, TheStatusIsShownAsTheTextOfTheClientLibrary) {
  EXPECT_EQ(imageDataOf("<Status><Code>3</Code></Status>"),
            basicWith("<Status>text of &lt;Status&gt;&lt;Code&gt;3&lt;/Code&gt;&lt;/Status&gt;</Status>"));
}

TEST_F(MetadataPagesTest, AStatusWithAnEmptyElementIsNoEmptyStatus) {
  EXPECT_EQ(imageDataOf("<Status><Fine/></Status>"),
            basicWith("<Status>text of &lt;Status&gt;&lt;Fine/&gt;&lt;/Status&gt;</Status>"));
}

TEST_F(MetadataPagesTest, AnEmptyStatusStaysAsItIs) {
  EXPECT_EQ(imageDataOf("<Status/>"), basicWith("<Status/>"));
}

TEST_F(MetadataPagesTest, AStatusOfSpacesStaysAsItIs) {
  EXPECT_EQ(imageDataOf("<Status>   </Status>").find("text of"), std::string::npos);
}

TEST_F(MetadataPagesTest, RewritingForThePageLeavesTheFetchedTextAlone) {
  imageDataOf("<BufferSize>2048</BufferSize><Status>x</Status>");
  EXPECT_NE(fields->myImageMetaDataXml.find("<BufferSize>2048</BufferSize><Status>x</Status>"),
            std::string::npos);
}

// The server process.

TEST_F(MetadataPagesTest, TheServerProcessIsATreeOverTheFirstFrame) {
  openPage();
  static_cast<void>(newEngineCalls());
  clickNode("ServerProcess");
  const std::string xml = "<ProcessMetadata><Resampling>cubic</Resampling></ProcessMetadata>";
  const std::string window = std::to_string(toolkit->windowOf(*form));
  EXPECT_EQ(
      newEngineCalls(),
      (Texts{"1.Visible false", "2.Visible false", "3.Visible false", "1.Visible false", "1.ParentWindow 0",
             "1.released", "4.Visible false", "4.Left " + std::to_string(controls->Frame1.geometry().left),
             "4.Top 5", "4.Width " + std::to_string(controls->TabStrip1.geometry().width / 15),
             "4.Height " + std::to_string(controls->TabStrip1.geometry().height / 15),
             "4.SetOption treeviewdisplay True", "4.ParentWindow " + window,
             "4.SetOption ShowVScrollBar False", "4.DataXml " + xml, "4.Visible true", "4.Show"}));
  EXPECT_EQ(controls->MDRichText.text(), xml);
  EXPECT_FALSE(controls->MDRichText.visible());
}

TEST_F(MetadataPagesTest, ThePlaceOfTheServerProcessIsDividedIntoWholePixelsAndItsLeftIsNot) {
  openPage();
  controls->TabStrip1.setGeometry({0, 0, 1514, 1499});
  controls->Frame1.setGeometry({1234, 0, 0, 0});
  clickNode("ServerProcess");
  EXPECT_EQ(lastEngineValue("Left"), "1234");
  EXPECT_EQ(lastEngineValue("Width"), "100");
  EXPECT_EQ(lastEngineValue("Height"), "99");
}

TEST_F(MetadataPagesTest, WithoutProcessDataTheTreeIsEmptyAndTheHiddenBoxTellsIt) {
  imageMetadata = imageXml("<Basic/>", "<Detailed/>");
  openPage();
  clickNode("ServerProcess");
  EXPECT_EQ(lastEngineValue("DataXml"), "<ServerProcess/>");
  EXPECT_EQ(controls->MDRichText.text(), "No Server Process data transmitted.");
  EXPECT_FALSE(controls->MDRichText.visible());
}

TEST_F(MetadataPagesTest, TheHiddenBoxIsClearedByTheNextClick) {
  openPage();
  clickNode("ServerProcess");
  clickNode("Image");
  EXPECT_EQ(controls->MDRichText.text(), "");
}

TEST_F(MetadataPagesTest, WithoutAServiceEveryPageWorksFromTheTexts) {
  openPageWithoutService();
  clickNode("Service");
  EXPECT_NE(page().DataXml().find("Alps"), std::string::npos);
  clickServiceTab("Properties");
  EXPECT_NE(page().DataXml().find("Alps"), std::string::npos);
  clickServiceTab("Metadata");
  EXPECT_NE(page().DataXml().find("survey"), std::string::npos);
  clickNode("Image");
  EXPECT_NE(page().DataXml().find("NRows"), std::string::npos);
  clickNode("ServerProcess");
  EXPECT_NE(lastEngineValue("DataXml").find("cubic"), std::string::npos);
  clickNode("Raster");
  EXPECT_NE(page().DataXml().find("north"), std::string::npos);
}

}  // namespace
}  // namespace vlclientui
