// What each click costs: the calls that a service gets for it, in both windows of the viewer.

#include <functional>

#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using Texts = std::vector<std::string>;

const Texts oneFetch{"GetImageMetadata ", "ServiceInfo", "GetMetaData "};

class MetadataCalls : public test::MetadataFixture {
 protected:
  /// Runs it in the page and in the window, each opened anew.
  void inBoth(const std::function<void(const std::string& window)>& clicks) {
    openPage();
    clicks("the page");
    openOneWindow();
    clicks("the window");
  }
  [[nodiscard]] Texts callsOf(const std::function<void()>& click) {
    static_cast<void>(newServiceCalls());
    click();
    return newServiceCalls();
  }
  [[nodiscard]] Texts callsOfNode(const std::string& key) {
    return callsOf([this, &key] { clickNode(key); });
  }
  static Texts with(Texts calls, const Texts& more) {
    calls.insert(calls.end(), more.begin(), more.end());
    return calls;
  }
};

TEST_F(MetadataCalls, EveryNodeFetchesOnceAndTheSourceAsksForTheDefinitionOfTheClient) {
  inBoth([this](const std::string& window) {
    for (int pass = 0; pass < 2; ++pass) {
      for (const std::string key : {"Service", "Image", "ServerProcess"}) {
        EXPECT_EQ(callsOfNode(key), oneFetch) << window << key;
      }
      EXPECT_EQ(callsOfNode("Raster"), with(oneFetch, {"GetDefinition 1"})) << window;
    }
  });
}

TEST_F(MetadataCalls, TabsAndRowsOfTheRastersAskForNothing) {
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    for (const std::string tab : {"Metadata", "Attributes", "Process", "Information", "Information"}) {
      EXPECT_EQ(callsOf([&] { clickRasterTab(tab); }), Texts{}) << window << tab;
      EXPECT_EQ(callsOf([&] { controls->RasterList.userSelects(1); }), Texts{}) << window << tab;
      EXPECT_EQ(callsOf([&] { controls->RasterList.userSelects(1); }), Texts{}) << window << tab;
    }
  });
}

TEST_F(MetadataCalls, TabsOfTheServiceAskForNothingButTheDefinitionsOfItsMetadata) {
  inBoth([this](const std::string& window) {
    clickNode("Service");
    for (const std::string tab : {"Properties", "Information"}) {
      EXPECT_EQ(callsOf([&] { clickServiceTab(tab); }), Texts{}) << window << tab;
    }
    const Texts definitions{"GetDefinition 4", "GetDefinition 3"};
    EXPECT_EQ(callsOf([&] { clickServiceTab("Metadata"); }), definitions) << window;
    EXPECT_EQ(callsOfNode("Service"), with(oneFetch, definitions)) << window;
  });
}

TEST_F(MetadataCalls, AnImageWithoutRastersAsksForNoDefinition) {
  inBoth([this](const std::string& window) {
    service->answers["GetImageMetadata "] = test::imageXml("<Basic/>", "");
    EXPECT_EQ(callsOfNode("Raster"), oneFetch) << window;
    service->answers["GetImageMetadata "] = imageMetadata;
  });
}

TEST_F(MetadataCalls, SavingAsksOnceForTheFullImage) {
  inBoth([this](const std::string& window) {
    enter();
    toolkit->chooseFile("C:\\image.xml");
    service->answers["GetImageMetadata Full"] = "<Vorlane/>";
    EXPECT_EQ(callsOf([&] { controls->Save.userClicks(); }), (Texts{"GetImageMetadata Full"})) << window;
  });
}

TEST_F(MetadataCalls, WithoutAServiceNothingIsAskedForByAnyClick) {
  for (const auto& open : {std::function<void()>([this] { openPageWithoutService(); }),
                           {[this] { openOneWindowWithoutService(); }}}) {
    open();
    for (const std::string key : {"Service", "Image", "ServerProcess", "Raster"}) clickNode(key);
    for (const std::string tab : {"Metadata", "Attributes", "Process"}) clickRasterTab(tab);
    clickNode("Service");
    for (const std::string tab : {"Properties", "Metadata"}) clickServiceTab(tab);
  }
  EXPECT_EQ(newServiceCalls(), Texts{});
}

TEST_F(MetadataCalls, ARefreshOverATabOfARasterFetchesTwiceAndDecidesTheLockOnce) {
  openPage();
  clickNode("Raster");
  clickRasterTab("Process");
  EXPECT_EQ(callsOf([this] { sourceMetadata().RefreshTheForm(); }),
            with(with(oneFetch, oneFetch), {"GetDefinition 1"}));
  EXPECT_EQ(controls->TabStrip1.selectedCaption(), "Process");
}

}  // namespace
}  // namespace vlclientui
