// When the button that locks the mosaic shows beside the list of rasters.

#include <algorithm>
#include <map>

#include "frame/ThreadState.h"
#include "metadata/RasterPages.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using Texts = std::vector<std::string>;

class RasterLockButton : public test::MetadataFixture {
 protected:
  void openSource() {
    openPage();
    clickNode("Raster");
  }
};

TEST_F(RasterLockButton, TheLockButtonShowsWhereTheServiceAllowsALock) {
  openSource();
  EXPECT_TRUE(controls->Command7.visible());
}

TEST_F(RasterLockButton, TheLockButtonIsDecidedByContainmentInAnyCase) {
  const std::map<std::string, bool> shown{{"lock RASTER", true},
                                          {"Deadlock Rasters", true},
                                          {"LockRaster", false},
                                          {"By Attribute,Viewpoint", false},
                                          {"", false}};
  for (const auto& [methods, wanted] : shown) {
    service->answers["GetDefinition 1"] =
        "<XADef><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='" + methods +
        "'/></ImageServiceProperties></Vorlane></XADef>";
    openSource();
    EXPECT_EQ(controls->Command7.visible(), wanted) << methods;
  }
}

TEST_F(RasterLockButton, WithoutAUsableDefinitionTheLockButtonStaysHidden) {
  for (const std::string definition :
       {"", "<XADef>", "<XADef/>", "<Other/>", "<XADef><Vorlane/></XADef>", "<XADef><!-- only --></XADef>",
        "<XADef><Vorlane><ImageServiceProperties><MosaicMethod/></ImageServiceProperties></Vorlane></"
        "XADef>"}) {
    service->answers["GetDefinition 1"] = definition;
    openSource();
    EXPECT_FALSE(controls->Command7.visible()) << definition;
    EXPECT_TRUE(fields->myPlexa) << definition;
  }
}

TEST_F(RasterLockButton, OnlyTheFirstChildOfTheWrapperCounts) {
  service->answers["GetDefinition 1"] =
      "<XADef><First/><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='Lock Raster'/>"
      "</ImageServiceProperties></Vorlane></XADef>";
  openSource();
  EXPECT_FALSE(controls->Command7.visible());
}

TEST_F(RasterLockButton, TheDefinitionIsAskedOnceAfterTheThreeDocuments) {
  openPage();
  static_cast<void>(newServiceCalls());
  clickNode("Raster");
  EXPECT_EQ(newServiceCalls(),
            (Texts{"GetImageMetadata ", "ServiceInfo", "GetMetaData ", "GetDefinition 1"}));
}

TEST_F(RasterLockButton, ANewerServiceIsAskedForTheDefinitionByKey) {
  service->type = "IOVLImageService";
  openSource();
  EXPECT_EQ(newServiceCalls().back(), "getProperty ClientXADef");
  EXPECT_TRUE(controls->Command7.visible());
}

TEST_F(RasterLockButton, WithoutAServiceTheDefinitionOfTheHostDecides) {
  threadState().gClientXADef =
      "<XADef><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='Lock Raster'/>"
      "</ImageServiceProperties></Vorlane></XADef>";
  openPageWithoutService();
  clickNode("Raster");
  EXPECT_TRUE(controls->Command7.visible());
}

TEST_F(RasterLockButton, AFailedDefinitionLeavesWhatTheSelectionHasBuilt) {
  openPage();
  service->failAt = "GetDefinition 1";
  static_cast<void>(newEngineCalls());
  clickNode("Raster");
  EXPECT_FALSE(controls->Command7.visible());
  ASSERT_TRUE(fields->myPlexa);
  const auto calls = newEngineCalls();
  EXPECT_EQ(std::ranges::count_if(calls, [](const auto& call) { return call.ends_with(".Show"); }), 1);
  EXPECT_EQ(threadState().gStatus, "");
}

TEST_F(RasterLockButton, AnotherNodeHidesTheLockButton) {
  openSource();
  clickNode("Image");
  EXPECT_FALSE(controls->Command7.visible());
}

}  // namespace
}  // namespace vlclientui
