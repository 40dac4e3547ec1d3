// What a person does in the one-window dialog, on its two sides, and what the host gets of it. Built once per
// window system.

#include <gmock/gmock.h>

#include "contracts/Silence.h"
#include "scenarios/MetadataVisit.h"

namespace vlclientui::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* method = "Mosaic/Mosaic method";
constexpr const char* orderField = "Mosaic/Order by attribute";
constexpr const char* viewPoint = "Mosaic/Viewpoint…";

class OneWindowScenarios : public MetadataVisit {
 protected:
  OneWindowScenarios() {
    queryInterface<IOVLServicePropertiesDialog2>(dialog)->SetCallback(callback);
    initialize();
  }

  void showProperties() const { person->clickTab("myTab", "Service Properties"); }
  void showMetadata() const { person->clickTab("myTab", "Metadata"); }
  void lock() const {
    showMetadata();
    person->clickNode("Source");
    person->click("Command7");
  }

  std::shared_ptr<FakePropertiesCallback> callback = std::make_shared<FakePropertiesCallback>();
};

TEST_F(OneWindowScenarios, ItOpensOnThePropertiesUnderTheNameOfTheService) {
  EXPECT_EQ(visitWindow([&] {
              EXPECT_EQ(person->caption(), "Service Properties -- Alps");
              EXPECT_THAT(person->tabs("myTab"), ElementsAre("Service Properties", "Metadata"));
              EXPECT_EQ(person->tabOnTop("myTab"), "Service Properties");
              EXPECT_EQ(shown(method), "By Attribute");
              EXPECT_EQ(shown(orderField), "Year");
              EXPECT_EQ(shown("Pixels/Resampling"), "Nearest neighbor");
            }),
            0);
}

TEST_F(OneWindowScenarios, AServiceWithoutANameLeavesThePlainCaption) {
  service->info = "<Vorlane><ImageServiceInfo/></Vorlane>";
  visitWindow([&] { EXPECT_EQ(person->caption(), "Service Properties"); });
}

TEST_F(OneWindowScenarios, EachSideHasItsOwnButtons) {
  visitWindow([&] {
    EXPECT_TRUE(person->isVisible("SaveAs"));
    EXPECT_FALSE(person->isVisible("Save"));
    EXPECT_FALSE(person->isVisible("uiTreeView"));
    showMetadata();
    EXPECT_FALSE(person->isVisible("SaveAs"));
    EXPECT_TRUE(person->isVisible("Save"));
    EXPECT_TRUE(person->isVisible("uiTreeView"));
    for (const char* const side : {"Service Properties", "Metadata"}) {
      person->clickTab("myTab", side);
      for (const char* const button : {"Command2", "uibtnok", "uibtncancel"}) {
        EXPECT_TRUE(person->isVisible(button)) << button << " on " << side;
      }
      EXPECT_FALSE(person->isVisible("Command1")) << side;
      EXPECT_FALSE(person->isVisible("Command7")) << side;
    }
  });
}

TEST_F(OneWindowScenarios, OkGivesAnEditToTheHost) {
  EXPECT_EQ(visitWindow([&] {
              person->typeField(orderField, "Sensor");
              EXPECT_EQ(published(), service->properties);
              person->click("uibtnok");
            }),
            1);
  EXPECT_EQ(textIn(published(), "TileOrderField"), "Sensor");
  EXPECT_EQ(textIn(published(), "TileOrderBase"), "2020");
}

TEST_F(OneWindowScenarios, CancelEscapeAndTheFrameLeaveThePropertiesAsTheyWere) {
  const std::vector<std::function<void()>> ways{
      [&] { person->click("uibtncancel"); }, [&] { person->pressEscape(); }, [&] { person->closeByFrame(); }};
  for (const auto& leave : ways) {
    EXPECT_EQ(visitWindow([&] {
                person->typeField(orderField, "Sensor");
                leave();
                EXPECT_FALSE(person->windowIsOpen());
              }),
              0);
    EXPECT_EQ(published(), service->properties);
  }
}

TEST_F(OneWindowScenarios, AnEditSurvivesAVisitToTheMetadataAndGoesToTheHostFromThere) {
  EXPECT_EQ(visitWindow([&] {
              person->typeField(orderField, "Sensor");
              showMetadata();
              EXPECT_EQ(shown("Details/Title"), "The Alps from above");
              showProperties();
              EXPECT_EQ(shown(orderField), "Sensor");
              person->pickInField("Pixels/Resampling", "Bilinear");
              showMetadata();
              person->click("uibtnok");
            }),
            1);
  EXPECT_EQ(textIn(published(), "TileOrderField"), "Sensor");
  EXPECT_EQ(textIn(published(), "Resampling"), "Bilinear");
}

TEST_F(OneWindowScenarios, OkOnTheMetadataCollectsNothingAgain) {
  threadState().gViewPointX = "1";
  visitWindow([&] {
    showMetadata();
    threadState().gViewPointX = "2";
    person->click("uibtnok");
  });
  EXPECT_EQ(textIn(published(), "ViewPointX"), "1");
}

TEST_F(OneWindowScenarios, ALockShowsOnThePropertiesAndReachesTheHostWithOkOnly) {
  EXPECT_EQ(visitWindow([&] {
              lock();
              EXPECT_EQ(person->toolTip("Command7"), "Lock to current image.");
              EXPECT_EQ(published(), service->properties);
              showProperties();
              EXPECT_EQ(shown(method), "Lock Raster");
              EXPECT_EQ(shown("Mosaic/Locked raster"), "12");
              person->click("uibtnok");
            }),
            1);
  EXPECT_EQ(textIn(published(), "MosaicMethod"), "LockRaster");
  EXPECT_EQ(textIn(published(), "LockImageID"), "12");
  EXPECT_THAT(callback->told, IsEmpty());
}

TEST_F(OneWindowScenarios, CancelAfterALockLeavesThePropertiesAsTheyWere) {
  EXPECT_EQ(visitWindow([&] {
              lock();
              person->click("uibtncancel");
            }),
            0);
  EXPECT_EQ(published(), service->properties);
}

TEST_F(OneWindowScenarios, OkWithoutALockBlanksTheRasterThatWasLocked) {
  visitWindow([&] { person->click("uibtnok"); });
  EXPECT_EQ(textIn(published(), "LockImageID"), "");
  EXPECT_EQ(textIn(published(), "MosaicMethod"), "By Attribute");
}

TEST_F(OneWindowScenarios, ASecondShowStartsFromTheDesignAndKnowsNoLock) {
  visitWindow([&] { lock(); });
  visitWindow([&] {
    EXPECT_EQ(person->caption(), "Service Properties -- Alps");
    EXPECT_EQ(person->tabOnTop("myTab"), "Service Properties");
    EXPECT_EQ(shown(method), "By Attribute");
    person->click("uibtnok");
  });
  EXPECT_EQ(textIn(published(), "LockImageID"), "");
}

TEST_F(OneWindowScenarios, EachVisitToTheMetadataMakesTheTreeAnew) {
  service->metadata = imageDocument({});
  visitWindow([&] {
    showMetadata();
    EXPECT_EQ(person->nodes().size(), 3U);
    person->clickNode("Server Process");
    showProperties();
    EXPECT_THAT(person->treeRows(), IsEmpty());
    EXPECT_EQ(shown(method), "By Attribute");
    showRasters({{}});
    showMetadata();
    EXPECT_EQ(person->nodes().size(), 4U);
    EXPECT_EQ(person->markedNode(), "Service Info");
    EXPECT_THAT(person->treeRows(), IsEmpty());
    EXPECT_EQ(shown("Details/Title"), "The Alps from above");
  });
}

TEST_F(OneWindowScenarios, ARasterThatWasPickedIsForgottenWithTheNextVisit) {
  visitWindow([&] {
    showMetadata();
    person->clickNode("Source");
    person->pickRaster("* south - 2");
    showProperties();
    showMetadata();
    EXPECT_THAT(person->rasters(), IsEmpty());
    EXPECT_FALSE(person->isVisible("Command7"));
    person->clickNode("Source");
    EXPECT_EQ(person->raster(), "north - 12.5");
  });
}

TEST_F(OneWindowScenarios, TheMethodDecidesWhetherTheViewpointCanBeSteered) {
  visitWindow([&] {
    EXPECT_FALSE(person->fieldIsOpen(viewPoint));
    person->pickInField(method, "Closest to Viewpoint");
    EXPECT_TRUE(person->fieldIsOpen(viewPoint));
    showMetadata();
    showProperties();
    EXPECT_TRUE(person->fieldIsOpen(viewPoint));
    person->pickInField(method, "None");
    EXPECT_FALSE(person->fieldIsOpen(viewPoint));
  });
}

TEST_F(OneWindowScenarios, TheViewpointIsSteeredInAWindowOverThisOneAndGoesToTheHostWithOk) {
  visitWindow([&] {
    person->pickInField(method, "Closest to Viewpoint");
    person->whenWindowAppears([&] {
      EXPECT_EQ(person->caption(), "ViewPoint");
      person->click("Center");
      EXPECT_EQ(person->text("uiTxtBoxX"), "150");
      person->click("uibtnok");
    });
    person->clickField(viewPoint);
    EXPECT_EQ(person->caption(), "Service Properties -- Alps");
    EXPECT_EQ(shown(method), "Closest to Viewpoint");
    person->click("uibtnok");
  });
  EXPECT_EQ(textIn(published(), "MosaicMethod"), "Closest to Viewpoint");
  EXPECT_EQ(textIn(published(), "ViewPointX"), "150");
  EXPECT_EQ(textIn(published(), "ViewPointY"), "20");
}

TEST_F(OneWindowScenarios, SaveAsWritesThePropertiesAsTheyAreEdited) {
  visitWindow([&] {
    person->typeField(orderField, "Sensor");
    person->chooseFile("C:\\own.VLRef");
    person->click("SaveAs");
    EXPECT_THAT(person->saveDialogs(), ElementsAre("VLRef (*.VLRef);Xml (*.xml)"));
    const std::string saved = system->readFile("C:\\own.VLRef");
    EXPECT_EQ(textIn(saved, "TileOrderField"), "Sensor");
    EXPECT_EQ(textIn(saved, "LockImageID"), "7");
    EXPECT_EQ(shown(orderField), "Sensor");
  });
  EXPECT_THAT(service->savedFiles, IsEmpty());
  EXPECT_EQ(published(), service->properties);
}

TEST_F(OneWindowScenarios, ALockReachesTheFileAsFarAsThePropertiesHoldIt) {
  visitWindow([&] {
    lock();
    showProperties();
    person->chooseFile("C:\\locked.VLRef");
    person->click("SaveAs");
  });
  EXPECT_EQ(textIn(system->readFile("C:\\locked.VLRef"), "MosaicMethod"), "LockRaster");
  EXPECT_EQ(textIn(system->readFile("C:\\locked.VLRef"), "LockImageID"), "12");
}

TEST_F(OneWindowScenarios, PropertiesThatDoNotParseLeaveAnOldFileAndATrace) {
  service->properties = "<Vorlane>";
  system->writeFile("C:\\own.VLRef", "<old/>");
  std::vector<SilentEnd> ends;
  visitWindow([&] {
    person->chooseFile("C:\\own.VLRef");
    const SilenceListener listener([&](const SilentEnd& end) { ends.push_back(end); });
    person->click("SaveAs");
    EXPECT_TRUE(person->windowIsOpen());
  });
  EXPECT_EQ(system->readFile("C:\\own.VLRef"), "<old/>");
  EXPECT_THAT(ends, Contains(Field(&SilentEnd::reason, HasSubstr("empty document"))));
  EXPECT_THAT(person->failures(), IsEmpty());
}

TEST_F(OneWindowScenarios, ACanceledSaveAsLeavesTheWindowAsItIs) {
  visitWindow([&] {
    person->typeField(orderField, "Sensor");
    person->click("SaveAs");
    EXPECT_EQ(person->saveDialogs().size(), 1U);
    EXPECT_TRUE(person->windowIsOpen());
    EXPECT_EQ(shown(orderField), "Sensor");
  });
  EXPECT_THAT(person->messages(), IsEmpty());
}

TEST_F(OneWindowScenarios, ExportOpensTheExportWindowOverThisOne) {
  visitWindow([&] {
    for (const char* const side : {"Service Properties", "Metadata"}) {
      person->clickTab("myTab", side);
      bool opened = false;
      person->whenWindowAppears([&] {
        EXPECT_EQ(person->caption(), "Export Image Properties");
        opened = true;
      });
      person->click("Command2");
      EXPECT_TRUE(opened) << side;
      EXPECT_TRUE(person->windowIsOpen());
      EXPECT_EQ(person->caption(), "Service Properties -- Alps");
    }
  });
  EXPECT_EQ(service->exportRequest, "");
}

TEST_F(OneWindowScenarios, PropertiesThatCannotBeShownLeaveTheirSideBlankAndSilent) {
  service->definitions[1] = "<XADef/>";
  service->definitions[2] = "<XFDef/>";
  visitWindow([&] {
    EXPECT_THAT(person->fields(), IsEmpty());
    showMetadata();
    EXPECT_EQ(shown("Details/Title"), "The Alps from above");
  });
  EXPECT_THAT(person->messages(), IsEmpty());
}

}  // namespace
}  // namespace vlclientui::test
