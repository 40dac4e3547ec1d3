// What a person does on the metadata page of a host and what the host hears of it. Built once per window
// system.

#include <gmock/gmock.h>

#include "scenarios/MetadataVisit.h"

namespace vlclientui::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto propertiesPageId = PropertyPageId::PropertyPageProperties;

class MetadataPageScenarios : public MetadataVisit {
 protected:
  MetadataPageScenarios() {
    queryInterface<IOVLServicePropertiesDialog2>(dialog)->SetCallback(callback);
    initialize();
  }

  void visitRasters(const std::function<void()>& visit) {
    visitPage([&] {
      person->clickNode("Source");
      visit();
    });
  }

  std::shared_ptr<FakePropertiesCallback> callback = std::make_shared<FakePropertiesCallback>();
};

TEST_F(MetadataPageScenarios, ALockReachesTheHostAtOnce) {
  visitRasters([&] {
    EXPECT_THAT(person->toolTip("Command7"), HasSubstr("Lock to selected raster."));
    person->click("Command7");
    ASSERT_EQ(callback->told.size(), 1U);
    EXPECT_EQ(callback->told[0], published());
    EXPECT_EQ(textIn(callback->told[0], "MosaicMethod"), "LockRaster");
    EXPECT_EQ(textIn(callback->told[0], "LockImageID"), "12");
    EXPECT_EQ(textIn(callback->told[0], "TileOrderField"), "Year");
    person->pickRaster("* south - 2");
    person->click("Command7");
    ASSERT_EQ(callback->told.size(), 2U);
    EXPECT_EQ(textIn(callback->told[1], "LockImageID"), "2");
  });
}

TEST_F(MetadataPageScenarios, ALockWithoutPropertiesMakesThem) {
  visitRasters([&] {
    published().clear();
    person->click("Command7");
    ASSERT_EQ(callback->told.size(), 1U);
    EXPECT_EQ(textIn(callback->told[0], "MosaicMethod"), "LockRaster");
    EXPECT_EQ(textIn(callback->told[0], "LockImageID"), "12");
  });
}

TEST_F(MetadataPageScenarios, AServiceThatFailsStopsTheLockBeforeThePropertiesChange) {
  visitRasters([&] {
    service->failAt = "GetDefinition 1";
    person->click("Command7");
    EXPECT_THAT(person->failures(), ElementsAre("the service fails at GetDefinition 1"));
    EXPECT_EQ(published(), service->properties);
    EXPECT_THAT(callback->told, IsEmpty());
    EXPECT_EQ(person->raster(), "north - 12.5");
  });
}

TEST_F(MetadataPageScenarios, ALockIsToldToThePersonAsAFailureWhereTheHostDoesNotListen) {
  queryInterface<IOVLServicePropertiesDialog2>(dialog)->SetCallback(nullptr);
  visitRasters([&] {
    person->click("Command7");
    ASSERT_EQ(person->failures().size(), 1U);
    EXPECT_THAT(person->failures()[0], HasSubstr("SetCallback"));
    EXPECT_EQ(textIn(published(), "LockImageID"), "12");
  });
}

TEST_F(MetadataPageScenarios, ThePropertiesBesideItTakeTheLockWithApplyOverAnyOtherMethod) {
  visitRasters([&] {
    ASSERT_EQ(older()->ShowPropertyPage(propertiesPageId, person->hostWindow()), boolean16True);
    person->lookAt(dialog->propertiesPage());
    person->pickInField("Mosaic/Mosaic method", "None");
    person->lookAt(dialog->metadataPage());
    person->click("Command7");
    person->lookAt(dialog->propertiesPage());
    EXPECT_EQ(shown("Mosaic/Mosaic method"), "None");
    EXPECT_EQ(shown("Mosaic/Locked raster"), "7");
    const std::string applied = older()->GetUpdatedProperties();
    EXPECT_EQ(textIn(applied, "MosaicMethod"), "LockRaster");
    EXPECT_EQ(textIn(applied, "LockImageID"), "12");
    EXPECT_EQ(callback->told.size(), 1U);
    person->pickInField("Mosaic/Mosaic method", "By Attribute");
    EXPECT_EQ(textIn(older()->GetUpdatedProperties(), "MosaicMethod"), "By Attribute");
    EXPECT_EQ(older()->Close(propertiesPageId), boolean16True);
    person->lookAt(dialog->metadataPage());
  });
}

TEST_F(MetadataPageScenarios, ARefreshOfTheHostShowsTheNewImageOnTheNodeThatShows) {
  visitPage([&] {
    person->clickNode("Image Returned");
    service->metadata = imageDocument({.bufferSize = "2048"});
    EXPECT_EQ(shown("Size/Buffer size"), "384 KB");
    older()->Refresh();
    EXPECT_EQ(shown("Size/Buffer size"), "2 KB");
    EXPECT_EQ(person->markedNode(), "Image Returned");
  });
}

TEST_F(MetadataPageScenarios, ARefreshNeitherTakesTheSourceNodeAwayNorBringsOne) {
  visitPage([&] {
    service->metadata = imageDocument({});
    older()->Refresh();
    EXPECT_EQ(person->nodes().size(), 4U);
    person->clickNode("Source");
    EXPECT_THAT(person->rasters(), IsEmpty());
  });
  visitPage([&] {
    EXPECT_EQ(person->nodes().size(), 3U);
    showRasters({{}});
    older()->Refresh();
    EXPECT_EQ(person->nodes().size(), 3U);
  });
}

TEST_F(MetadataPageScenarios, ARefreshLeavesTheTreeOfTheServerProcessAsItIs) {
  visitPage([&] {
    person->clickNode("Server Process");
    service->metadata = imageDocument({});
    older()->Refresh();
    EXPECT_EQ(person->treeRows().size(), 4U);
    person->clickNode("Server Process");
    EXPECT_THAT(person->treeRows(), ElementsAre("ServerProcess|"));
  });
}

TEST_F(MetadataPageScenarios, APageThatIsShownAgainHasItsTabsBack) {
  showRasters({{.metadata = ""}}, "False");
  visitRasters([&] { EXPECT_EQ(person->tabs("TabStrip1").size(), 3U); });
  showRasters({{}});
  visitRasters([&] { EXPECT_EQ(person->tabs("TabStrip1").size(), 4U); });
}

}  // namespace
}  // namespace vlclientui::test
