// What a person reads of a service, on the page of a host and in the one-window dialog side by side. Built
// once per window system.

#include <gmock/gmock.h>

#include "scenarios/MetadataVisit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* imageCall = "GetImageMetadata ''";
constexpr const char* infoCall = "ServiceInfo";
constexpr const char* metadataCall = "GetMetaData ''";

class MetadataScenarios : public MetadataVisit, public testing::WithParamInterface<MetadataPlace> {
 protected:
  [[nodiscard]] bool isPage() const { return GetParam() == MetadataPlace::Page; }
  void visit(const std::function<void()>& actions) {
    initialize();
    visitBegun(actions);
  }
  void visitBegun(const std::function<void()>& actions) {
    if (isPage()) return visitPage(actions);
    visitWindow([&] {
      person->clickTab("myTab", "Metadata");
      actions();
    });
  }
  void visitRasters(const std::function<void()>& actions) {
    visit([&] {
      person->clickNode("Source");
      actions();
    });
  }
  /// Nothing of any page shows.
  void expectBlank() const {
    EXPECT_THAT(person->fields(), IsEmpty());
    EXPECT_THAT(person->treeRows(), IsEmpty());
    EXPECT_THAT(person->tabs("TabStrip1"), IsEmpty());
    EXPECT_THAT(person->tabs("TabStrip2"), IsEmpty());
    EXPECT_THAT(person->rasters(), IsEmpty());
    EXPECT_FALSE(person->isVisible("Command7"));
  }
};

INSTANTIATE_TEST_SUITE_P(BothPlaces, MetadataScenarios,
                         testing::Values(MetadataPlace::Page, MetadataPlace::OneWindow),
                         [](const auto& place) {
                           return place.param == MetadataPlace::Page ? "Page" : "OneWindow";
                         });

TEST_P(MetadataScenarios, ItOpensOnTheServiceBesideATreeOfFourNodes) {
  visit([&] {
    EXPECT_THAT(person->nodes(), ElementsAre("Service Info", "Image Returned", "Server Process", "Source"));
    EXPECT_EQ(person->markedNode(), "Service Info");
    EXPECT_THAT(person->tabs("TabStrip2"), ElementsAre("Information", "Properties", "Metadata"));
    EXPECT_EQ(person->tabOnTop("TabStrip2"), "Information");
    EXPECT_THAT(person->fields(),
                ElementsAre("Details/Title|The Alps from above", "Details/Geographic region|Alps",
                            "Details/Pixel source|Aerial"));
    for (const char* const hidden : {"MDRichText", "MetadataText", "ProcessMetadata", "ListView1"}) {
      EXPECT_FALSE(person->isVisible(hidden)) << hidden;
    }
    EXPECT_TRUE(person->isVisible("Save"));
    EXPECT_EQ(person->toolTip("Save"), "Save the metadata to a given file.");
  });
}

TEST_P(MetadataScenarios, TheServiceIsToldOnThreeTabs) {
  visit([&] {
    person->clickTab("TabStrip2", "Properties");
    EXPECT_EQ(shown("Image Service Info/Service"), "Alps");
    EXPECT_EQ(shown("Image Service Info/Source rasters"), "2");
    EXPECT_EQ(shown("Details/Title"), "The Alps from above");
    EXPECT_EQ(shown("Pixels/Color space"), "RGB");
    EXPECT_EQ(shown("Pixels/Most columns"), "3000 pixels");
    EXPECT_EQ(shown("Extent in the coordinate system/Top"), "30");
    person->clickTab("TabStrip2", "Metadata");
    EXPECT_THAT(person->fields(),
                ElementsAre("Service/Name|Alps", "Service/Title|Metadata of the Alps", "Extent/Top|30",
                            "File/Name|alps.tif", "File/Size|4096 bytes", "Camera (EXIF)/Model|Aerocam"));
    person->clickTab("TabStrip2", "Information");
    EXPECT_THAT(person->fields(),
                ElementsAre("Details/Title|The Alps from above", "Details/Geographic region|Alps",
                            "Details/Pixel source|Aerial"));
  });
}

TEST_P(MetadataScenarios, NothingOfAServicePageCanBeChanged) {
  visit([&] {
    EXPECT_FALSE(person->fieldIsOpen("Details/Title"));
    person->clickTab("TabStrip2", "Metadata");
    EXPECT_FALSE(person->fieldIsOpen("Service/Title"));
    person->clickNode("Image Returned");
    EXPECT_FALSE(person->fieldIsOpen("Size/Columns"));
    person->clickNode("Source");
    EXPECT_FALSE(person->fieldIsOpen("Raster/Name"));
  });
}

TEST_P(MetadataScenarios, TheImageIsToldWithItsSizeInKilobytes) {
  visit([&] {
    person->clickNode("Image Returned");
    EXPECT_EQ(person->markedNode(), "Image Returned");
    EXPECT_THAT(person->tabs("TabStrip2"), IsEmpty());
    EXPECT_EQ(shown("Size/Columns"), "512 pixels");
    EXPECT_EQ(shown("Size/Rows"), "256 pixels");
    EXPECT_EQ(shown("Size/Buffer size"), "384 KB");
    EXPECT_EQ(shown("Extent/Left"), "100");
    EXPECT_EQ(shown("Extent/Right"), "200");
  });
}

TEST_P(MetadataScenarios, ASizeOfHalfAKilobyteIsRoundedAndASmallerOneStays) {
  visit([&] {
    for (const auto& [bytes, told] : {std::pair("1536", "2 KB"), {"1024", "1 KB"}, {"100", "100 KB"}}) {
      service->metadata = imageDocument({.bufferSize = bytes});
      person->clickNode("Image Returned");
      EXPECT_EQ(shown("Size/Buffer size"), told);
    }
  });
}

TEST_P(MetadataScenarios, TheStatusIsATextOnThePageAndStandsAsItCameInTheWindow) {
  visit([&] {
    person->clickNode("Image Returned");
    EXPECT_EQ(shown("Image returned/Status"),
              isPage() ? "text of <Status>one source is missing</Status>" : "one source is missing");
    service->metadata = imageDocument({.status = "<Status/>"});
    person->clickNode("Image Returned");
    EXPECT_EQ(shown("Image returned/Status"), "");
  });
}

TEST_P(MetadataScenarios, TheProcessOfTheServerIsATree) {
  visit([&] {
    person->clickNode("Server Process");
    EXPECT_THAT(person->treeRows(),
                ElementsAre("ProcessMetadata|", "  Resampling|cubic", "  Sources|", "    Source|north"));
    EXPECT_THAT(person->fields(), IsEmpty());
    person->clickNode("Service Info");
    EXPECT_THAT(person->treeRows(), IsEmpty());
  });
}

TEST_P(MetadataScenarios, AProcessThatWasNotTransmittedIsAnEmptyTree) {
  service->metadata = imageDocument({});
  visit([&] {
    person->clickNode("Server Process");
    EXPECT_THAT(person->treeRows(), ElementsAre("ServerProcess|"));
    EXPECT_FALSE(person->isVisible("MDRichText"));
  });
}

TEST_P(MetadataScenarios, ThereIsNoSourceNodeForAnImageWithoutRasters) {
  service->metadata = imageDocument({});
  visit([&] {
    EXPECT_THAT(person->nodes(), ElementsAre("Service Info", "Image Returned", "Server Process"));
    person->clickNode("Image Returned");
    EXPECT_EQ(shown("Size/Columns"), "512 pixels");
  });
}

TEST_P(MetadataScenarios, RastersAreListedWithTheirMarksAndReadOnFourTabs) {
  visitRasters([&] {
    EXPECT_THAT(person->rasters(), ElementsAre("north - 12.5", "* south - 2"));
    EXPECT_EQ(person->raster(), "north - 12.5");
    EXPECT_THAT(person->tabs("TabStrip1"), ElementsAre("Information", "Metadata", "Attributes", "Process"));
    EXPECT_EQ(person->tabOnTop("TabStrip1"), "Information");
    EXPECT_THAT(person->fields(), ElementsAre("Raster/Name|north", "Raster/Identifier|12.5",
                                              "Raster/Visible in the image|Yes"));
    person->clickTab("TabStrip1", "Metadata");
    EXPECT_THAT(person->treeRows(), ElementsAre("Metadata|", "  Sensor|frame"));
    EXPECT_THAT(person->fields(), IsEmpty());
    person->clickTab("TabStrip1", "Attributes");
    EXPECT_THAT(person->attributes(), ElementsAre("Year|1998"));
    EXPECT_THAT(person->treeRows(), IsEmpty());
    person->clickTab("TabStrip1", "Process");
    EXPECT_THAT(person->treeRows(), ElementsAre("ProcessMetadata|", "  Step|warp"));
    EXPECT_THAT(person->attributes(), IsEmpty());
  });
}

TEST_P(MetadataScenarios, ANodeTakesThePagesOfTheOthersAway) {
  visitRasters([&] {
    person->clickTab("TabStrip1", "Attributes");
    EXPECT_TRUE(person->isVisible("Label1"));
    EXPECT_TRUE(person->isVisible("Command7"));
    person->clickNode("Image Returned");
    EXPECT_THAT(person->attributes(), IsEmpty());
    EXPECT_THAT(person->rasters(), IsEmpty());
    EXPECT_THAT(person->tabs("TabStrip1"), IsEmpty());
    EXPECT_FALSE(person->isVisible("Label1"));
    EXPECT_FALSE(person->isVisible("Command7"));
    person->clickNode("Source");
    person->clickTab("TabStrip1", "Process");
    person->clickNode("Image Returned");
    EXPECT_THAT(person->treeRows(), IsEmpty());
    EXPECT_EQ(shown("Size/Columns"), "512 pixels");
    person->clickNode("Service Info");
    EXPECT_THAT(person->tabs("TabStrip1"), IsEmpty());
    EXPECT_EQ(shown("Size/Columns"), "no Size/Columns");
  });
}

TEST_P(MetadataScenarios, ARasterThatDoesNotShowOpensAsAnyOtherAndTheTabStays) {
  showRasters({{},
               {.id = "2",
                .name = "south",
                .visible = "False",
                .metadata = "",
                .attributes = "<Attributes><Year>2004</Year><Sun>low</Sun></Attributes>",
                .process = ""}});
  visitRasters([&] {
    person->clickTab("TabStrip1", "Attributes");
    person->pickRaster("* south - 2");
    EXPECT_EQ(person->tabOnTop("TabStrip1"), "Attributes");
    EXPECT_THAT(person->attributes(), ElementsAre("Year|2004", "Sun|low"));
    person->clickTab("TabStrip1", "Information");
    EXPECT_THAT(person->fields(),
                ElementsAre("Raster/Name|south", "Raster/Identifier|2", "Raster/Visible in the image|No"));
    person->clickTab("TabStrip1", "Metadata");
    EXPECT_THAT(person->treeRows(), ElementsAre("Metadata|"));
    person->clickTab("TabStrip1", "Process");
    EXPECT_THAT(person->treeRows(), ElementsAre("ProcessMetadata|"));
    person->pickRaster("north - 1");
    EXPECT_THAT(person->treeRows(), ElementsAre("ProcessMetadata|", "  Step|warp"));
  });
}

TEST_P(MetadataScenarios, WithoutMetadataOfAnyRasterTheTabGoesAndTheProcessStays) {
  showRasters({{.metadata = ""}, {.id = "2", .metadata = ""}}, "False");
  visitRasters([&] {
    EXPECT_THAT(person->tabs("TabStrip1"), ElementsAre("Information", "Attributes", "Process"));
    person->clickTab("TabStrip1", "Process");
    EXPECT_THAT(person->treeRows(), ElementsAre("ProcessMetadata|", "  Step|warp"));
  });
}

TEST_P(MetadataScenarios, WithoutProcessDataTheTabGoes) {
  showRasters({{}}, "False");
  visitRasters(
      [&] { EXPECT_THAT(person->tabs("TabStrip1"), ElementsAre("Information", "Metadata", "Attributes")); });
}

TEST_P(MetadataScenarios, ATabThatWentStaysAwayWhileTheWindowIsOpen) {
  showRasters({{.metadata = ""}});
  visitRasters([&] {
    showRasters({{}});
    person->clickNode("Source");
    EXPECT_THAT(person->tabs("TabStrip1"), ElementsAre("Information", "Attributes", "Process"));
  });
}

TEST_P(MetadataScenarios, TwoRastersOfOneNameAndIdLeaveTheNodeBlank) {
  showRasters({{}, {}});
  visitRasters([&] {
    expectBlank();
    EXPECT_THAT(person->messages(), IsEmpty());
    person->clickNode("Image Returned");
    EXPECT_EQ(shown("Size/Columns"), "512 pixels");
  });
}

TEST_P(MetadataScenarios, TheLockIsOfferedWhereTheServiceKnowsThatMethod) {
  service->definitions[1] = definitionOffering("None; lock raster");
  visitRasters([&] {
    EXPECT_TRUE(person->isVisible("Command7"));
    service->definitions[1] = definitionOffering("None; By Attribute");
    person->clickNode("Source");
    EXPECT_FALSE(person->isVisible("Command7"));
    EXPECT_EQ(person->rasters().size(), 2U);
  });
}

TEST_P(MetadataScenarios, AClickOnTheNodeShownAlreadyFetchesAgainAndOneOnATabOrARasterDoesNot) {
  visitRasters([&] {
    static_cast<void>(newCalls());
    person->clickNode("Source");
    EXPECT_THAT(newCalls(), ElementsAre(imageCall, infoCall, metadataCall, "GetDefinition 1"));
    person->clickTab("TabStrip1", "Process");
    person->pickRaster("* south - 2");
    EXPECT_THAT(newCalls(), IsEmpty());
    person->clickNode("Service Info");
    EXPECT_THAT(newCalls(), ElementsAre(imageCall, infoCall, metadataCall));
    person->clickTab("TabStrip2", "Properties");
    EXPECT_THAT(newCalls(), IsEmpty());
    showRasters({{.id = "3", .name = "east"}});
    person->clickNode("Source");
    EXPECT_THAT(person->rasters(), ElementsAre("east - 3"));
  });
}

TEST_P(MetadataScenarios, AfterTheServiceChangedATabShowsOldDataUntilTheNextNode) {
  visit([&] {
    person->clickNode("Service Info");
    const std::string before = service->info;
    service->info.replace(before.find("Alps</Name>"), 4, "Andes");
    person->clickTab("TabStrip2", "Properties");
    EXPECT_EQ(shown("Image Service Info/Service"), "Alps");
    person->clickNode("Service Info");
    EXPECT_EQ(shown("Image Service Info/Service"), "Andes");
    EXPECT_EQ(person->tabOnTop("TabStrip2"), "Properties");
  });
}

TEST_P(MetadataScenarios, ImageMetadataThatFailLeaveTheLastGoodOnesAndAskNoFurther) {
  visit([&] {
    person->clickNode("Image Returned");
    service->failAt = "GetImageMetadata";
    service->info = "<Vorlane/>";
    static_cast<void>(newCalls());
    person->clickNode("Image Returned");
    EXPECT_THAT(newCalls(), ElementsAre(imageCall));
    EXPECT_EQ(shown("Size/Columns"), "512 pixels");
    EXPECT_EQ(threadState().gStatus, "");
    person->clickNode("Service Info");
    EXPECT_EQ(shown("Details/Title"), "The Alps from above");
    EXPECT_THAT(person->messages(), IsEmpty());
  });
}

TEST_P(MetadataScenarios, ACleanClickErasesAnEarlierFailure) {
  visit([&] {
    threadState().gStatus = "an earlier failure";
    person->clickNode("Server Process");
    EXPECT_EQ(threadState().gStatus, "");
  });
}

TEST_P(MetadataScenarios, SaveAsWritesTheFullMetadataOfTheImageWhicheverNodeShows) {
  service->fullMetadata = imageXml("<Basic/>", "<Detailed><Everything>yes</Everything></Detailed>");
  visit([&] {
    person->chooseFile("C:\\image.xml");
    person->click("Save");
    EXPECT_EQ(textIn(system->readFile("C:\\image.xml"), "Everything"), "yes");
    EXPECT_THAT(person->saveDialogs(), ElementsAre("Xml (*.xml)"));
    person->clickNode("Image Returned");
    EXPECT_EQ(shown("Size/Columns"), "512 pixels");
  });
}

TEST_P(MetadataScenarios, ACanceledSaveAsWritesAndAsksNothing) {
  visit([&] {
    person->clickNode("Image Returned");
    static_cast<void>(newCalls());
    person->click("Save");
    EXPECT_EQ(person->saveDialogs().size(), 1U);
    EXPECT_THAT(newCalls(), IsEmpty());
  });
}

TEST_P(MetadataScenarios, ASaveThatFailsIsToldToThePerson) {
  visit([&] {
    service->failAt = "GetImageMetadata 'Full'";
    person->chooseFile("C:\\image.xml");
    person->click("Save");
    EXPECT_THAT(person->failures(), ElementsAre("the service fails at GetImageMetadata 'Full'"));
    EXPECT_FALSE(system->fileExists("C:\\image.xml"));
  });
}

TEST_P(MetadataScenarios, MetadataThatDoNotParseLeaveAnOldFileAndAreToldToThePerson) {
  service->fullMetadata = "<Vorlane>";
  system->writeFile("C:\\image.xml", "<old/>");
  visit([&] {
    person->chooseFile("C:\\image.xml");
    person->click("Save");
    EXPECT_THAT(person->failures(), ElementsAre(HasSubstr("An empty document cannot be saved")));
    EXPECT_EQ(system->readFile("C:\\image.xml"), "<old/>");
  });
}

TEST_P(MetadataScenarios, ControlCCopiesTheValueOfAnAttributeAndEveryKeyClearsTheClipboardFirst) {
  visitRasters([&] {
    person->clickTab("TabStrip1", "Attributes");
    person->copyElsewhere("of another program");
    person->pressInAttributes(ListKey::CtrlC);
    EXPECT_EQ(person->clipboard(), "");
    person->clickAttribute("Year");
    person->pressInAttributes(ListKey::CtrlC);
    EXPECT_EQ(person->clipboard(), "1998");
    person->pressInAttributes(ListKey::X);
    EXPECT_EQ(person->clipboard(), "");
    person->copyElsewhere("of another program");
    person->pressInAttributes(ListKey::CtrlF1);
    EXPECT_EQ(person->clipboard(), "");
    ASSERT_EQ(system->launched.size(), 1U);
    EXPECT_THAT(system->launched.front(), HasSubstr("Viewing_image_service_metadata"));
  });
}

TEST_P(MetadataScenarios, WithoutAServiceThePagesLiveOnTheDocumentsOfTheHost) {
  beginWithDocuments();
  visitBegun([&] {
    EXPECT_EQ(shown("Details/Title"), "The Alps from above");
    person->clickNode("Image Returned");
    EXPECT_EQ(shown("Size/Buffer size"), "384 KB");
    person->clickNode("Server Process");
    EXPECT_EQ(person->treeRows().size(), 4U);
    person->clickNode("Source");
    EXPECT_THAT(person->rasters(), ElementsAre("north - 12.5", "* south - 2"));
    person->chooseFile("C:\\image.xml");
    person->click("Save");
    EXPECT_EQ(textIn(system->readFile("C:\\image.xml"), "Sensor"), "frame");
  });
  EXPECT_THAT(newCalls(), IsEmpty());
}

TEST_P(MetadataScenarios, WithoutAServiceOnlyThePageGoesByTheDefinitionsOfTheHost) {
  beginWithDocuments();
  const auto extension = queryInterface<IOVLServicePropertiesDialog2>(dialog);
  extension->SetProperty("ClientXADef", service->definitions[1]);
  extension->SetProperty("ServiceMetadataXADef", service->definitions[3]);
  extension->SetProperty("ServiceMetadataXFDef", service->definitions[4]);
  visitBegun([&] {
    person->clickTab("TabStrip2", "Metadata");
    EXPECT_EQ(shown("Service/Title"), isPage() ? "Metadata of the Alps" : "no Service/Title");
    person->clickNode("Source");
    EXPECT_EQ(person->rasters().size(), 2U);
    EXPECT_EQ(person->isVisible("Command7"), isPage());
  });
}

}  // namespace
}  // namespace vlclientui::test
