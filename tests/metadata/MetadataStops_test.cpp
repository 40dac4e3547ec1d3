// Where each page stops when a document is malformed at one place or one call fails, what shows then, and
// what the status says; in both windows of the viewer.

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "contracts/RuntimeFailure.h"
#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageXml;
using test::rasterXml;
using Texts = std::vector<std::string>;

const Texts everyNode{"Service", "Image", "ServerProcess", "Raster"};

/// All that the viewer reads of an image.
std::string wholeImage() {
  return imageXml("<Basic><NRows>10</NRows><BufferSize>2048</BufferSize><Status>3</Status></Basic>",
                  "<Detailed><Rasters>" + rasterXml({}) + rasterXml({.id = "2", .name = "south"}) +
                      "</Rasters><ProcessMetadata><Resampling>cubic</Resampling></ProcessMetadata>"
                      "<ProcessMetadataAvailable>True</ProcessMetadataAvailable></Detailed>");
}

/// What a person sees behind the nodes.
struct Seen {
  bool image = false;       ///< a page behind the image's node
  bool process = false;     ///< a tree behind that of the server process
  std::size_t rasters = 0;  ///< rows of the raster list
  bool rasterTabs = false;  ///< the tabs of a raster, and with them the list
  bool rasterPage = false;  ///< the page of the first raster
  bool operator==(const Seen&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Seen& seen) {
  return out << "image " << seen.image << ", process " << seen.process << ", rasters " << seen.rasters
             << ", tabs " << seen.rasterTabs << ", raster page " << seen.rasterPage;
}

constexpr Seen everything{
    .image = true, .process = true, .rasters = 2, .rasterTabs = true, .rasterPage = true};

class FailingStatus : public ClientStatus {
 public:
  std::string GetText(const std::string&) override { throw RuntimeFailure("no text for the status"); }
};

/// A client library for tests whose status objects fail, or which has none.
class LibraryWithBadStatus : public test::FakeClientLibrary {
 public:
  explicit LibraryWithBadStatus(bool hasStatus) : hasStatus_(hasStatus) {}
  std::unique_ptr<ClientStatus> createClientStatus() override {
    return hasStatus_ ? std::make_unique<FailingStatus>() : nullptr;
  }

 private:
  bool hasStatus_;
};

class MetadataStops : public test::MetadataFixture {
 protected:
  /// Runs it in the page and in the window, each opened anew.
  void inBoth(const std::function<void(const std::string& window)>& check) {
    openPage();
    check("the page");
    openOneWindow();
    check("the window");
  }
  [[nodiscard]] bool hasNode(const std::string& key) const {
    const Texts keys = nodeKeys();
    return std::ranges::find(keys, key) != keys.end();
  }
  [[nodiscard]] bool shows(const std::function<void()>& click) {
    static_cast<void>(newEngineCalls());
    click();
    for (const std::string& call : newEngineCalls()) {
      if (call.ends_with(".Show")) return true;
    }
    return false;
  }
  /// Clicks the nodes one by one; each of them leaves the status clear.
  Seen look() {
    Seen seen;
    seen.image = shows([this] { clickNode("Image"); }) && fields->myPlexa;
    EXPECT_EQ(threadState().gStatus, "");
    seen.process = shows([this] { clickNode("ServerProcess"); });
    EXPECT_EQ(threadState().gStatus, "");
    if (!hasNode("Raster")) return seen;
    clickNode("Raster");
    EXPECT_EQ(threadState().gStatus, "");
    seen.rasters = controls->RasterList.count();
    seen.rasterTabs = controls->TabStrip1.visible();
    EXPECT_EQ(controls->RasterList.visible(), seen.rasterTabs);
    EXPECT_EQ(controls->Label1.visible(), seen.rasterTabs);
    EXPECT_EQ(controls->Command7.visible(), seen.rasterTabs && seen.rasters > 0);
    seen.rasterPage = controls->InfoFrame.visible() && fields->myPlexa;
    EXPECT_TRUE(toolkit->messages().empty());
    EXPECT_TRUE(toolkit->failures().empty());
    return seen;
  }
  void useLibrary(std::shared_ptr<ClientLibrary> library) {
    auto changed = std::make_shared<Platform>(currentPlatform());
    changed->clientLibrary = std::move(library);
    setPlatform(changed);
  }
};

TEST_F(MetadataStops, AWholeImageShowsEverywhere) {
  imageMetadata = wholeImage();
  inBoth([this](const std::string& window) { EXPECT_EQ(look(), everything) << window; });
}

TEST_F(MetadataStops, ATextThatIsNoNumberAndNoTruthStopsThePageThatReadsItAndNoOther) {
  const std::map<std::string, Seen> stopped{
      {"BufferSize", {.process = true, .rasters = 2, .rasterTabs = true, .rasterPage = true}},
      {"Visible", {.image = true, .process = true}},
      {"ProcessMetadataAvailable", {.image = true, .process = true, .rasters = 2}}};
  std::set<std::string> met;
  const std::size_t count = parsedDocument(wholeImage())->selectNodes("//text()").size();
  for (std::size_t index = 0; index < count; ++index) {
    const auto document = parsedDocument(wholeImage());
    const XmlNodePtr text = document->selectNodes("//text()")[index];
    const std::string name = text->parentNode()->name();
    text->setText("neither number nor truth");
    imageMetadata = document->xml();
    met.insert(name);
    const Seen wanted = stopped.contains(name) ? stopped.at(name) : everything;
    inBoth([&](const std::string& window) { EXPECT_EQ(look(), wanted) << name << " in " << window; });
  }
  for (const auto& [name, seen] : stopped) EXPECT_TRUE(met.contains(name)) << name;
}

TEST_F(MetadataStops, AnElementThatIsMissingStopsNoPage) {
  constexpr Seen withoutSource{.image = true, .process = true};
  constexpr Seen oneRaster{
      .image = true, .process = true, .rasters = 1, .rasterTabs = true, .rasterPage = true};
  const std::map<std::string, Seen> seen{{"Client", withoutSource},   {"ImageMetadata", withoutSource},
                                         {"Detailed", withoutSource}, {"Rasters", withoutSource},
                                         {"Raster", oneRaster},       {"Info", oneRaster},
                                         {"RasterId", oneRaster}};
  std::set<std::string> met;
  const std::size_t count = parsedDocument(wholeImage())->selectNodes("//*").size();
  // The root stays; whole documents that are malformed have their own test.
  for (std::size_t index = 1; index < count; ++index) {
    const auto document = parsedDocument(wholeImage());
    const XmlNodePtr element = document->selectNodes("//*")[index];
    const std::string name = element->name();
    element->parentNode()->removeChild(element);
    imageMetadata = document->xml();
    met.insert(name);
    const Seen wanted = seen.contains(name) ? seen.at(name) : everything;
    inBoth([&](const std::string& window) { EXPECT_EQ(look(), wanted) << name << " in " << window; });
  }
  for (const auto& [name, wanted] : seen) EXPECT_TRUE(met.contains(name)) << name;
}

TEST_F(MetadataStops, AClientThatCannotTellTheStatusLeavesTheImagePageOfThePageBlank) {
  imageMetadata = wholeImage();
  for (const bool hasStatus : {true, false}) {
    useLibrary(std::make_shared<LibraryWithBadStatus>(hasStatus));
    openPage();
    Seen wanted = everything;
    wanted.image = false;
    EXPECT_EQ(look(), wanted);
    // The window shows the status as it came and asks nobody.
    openOneWindow();
    EXPECT_EQ(look(), everything);
  }
}

TEST_F(MetadataStops, NobodyIsAskedForAStatusThatIsEmpty) {
  useLibrary(std::make_shared<LibraryWithBadStatus>(true));
  for (const std::string status : {"", "<Status/>", "<Status>  </Status>"}) {
    imageMetadata = imageXml("<Basic><NRows>10</NRows>" + status + "</Basic>", "");
    openPage();
    clickNode("Image");
    EXPECT_TRUE(fields->myPlexa) << status;
  }
}

// Calls of the service.

TEST_F(MetadataStops, EachFailedCallOfAFetchKeepsWhatItWouldHaveBroughtAndThePagesShow) {
  imageMetadata = wholeImage();
  const Texts fetch{"GetImageMetadata ", "ServiceInfo", "GetMetaData "};
  inBoth([&](const std::string& window) {
    for (std::size_t call = 0; call < fetch.size(); ++call) {
      clickNode("Service");
      const MetadataFields before = *fields;
      service->failAt = fetch[call];
      static_cast<void>(newServiceCalls());
      clickNode("Service");
      const std::string what = window + " " + fetch[call];
      EXPECT_EQ(newServiceCalls(),
                Texts(fetch.begin(), fetch.begin() + static_cast<std::ptrdiff_t>(call) + 1))
          << what;
      EXPECT_TRUE(fields->myPlexa) << what;
      EXPECT_EQ(fields->myImageMetaDataXml, before.myImageMetaDataXml) << what;
      EXPECT_EQ(fields->myServiceInfoXml, before.myServiceInfoXml) << what;
      EXPECT_EQ(fields->myMetaDataXml, before.myMetaDataXml) << what;
      EXPECT_EQ(look(), everything) << what;
      service->failAt = "";
    }
  });
}

TEST_F(MetadataStops, AFailedDefinitionOfTheClientLeavesTheListAndItsFirstRaster) {
  inBoth([this](const std::string& window) {
    service->failAt = "GetDefinition 1";
    EXPECT_TRUE(shows([this] { clickNode("Raster"); })) << window;
    EXPECT_EQ(controls->RasterList.text(), "north - 1") << window;
    EXPECT_TRUE(controls->TabStrip1.visible()) << window;
    EXPECT_TRUE(controls->InfoFrame.visible()) << window;
    EXPECT_FALSE(controls->Command7.visible()) << window;
    EXPECT_EQ(threadState().gStatus, "") << window;
    service->failAt = "";
  });
}

TEST_F(MetadataStops, AFailedDefinitionOfTheServiceMetadataLeavesThePageThatShows) {
  inBoth([this](const std::string& window) {
    for (const std::string call : {"GetDefinition 4", "GetDefinition 3"}) {
      clickServiceTab("Information");
      clickNode("Service");
      const auto shown = fields->myPlexa;
      service->failAt = call;
      static_cast<void>(newEngineCalls());
      clickServiceTab("Metadata");
      EXPECT_EQ(fields->myPlexa, shown) << window << call;
      EXPECT_EQ(newEngineCalls(), Texts{}) << window << call;
      // A click on the node has dropped that page before.
      clickNode("Service");
      EXPECT_FALSE(fields->myPlexa) << window << call;
      EXPECT_TRUE(controls->TabStrip2.visible()) << window << call;
      EXPECT_TRUE(controls->FirstPageFrame.visible()) << window << call;
      EXPECT_EQ(threadState().gStatus, "") << window << call;
      service->failAt = "";
    }
  });
}

TEST_F(MetadataStops, EachCallOfTheServiceMayFailInTheWindowToo) {
  for (const std::string type : {"IImageService", "IOVLImageService"}) {
    service->type = type;
    for (const std::string call : {"GetImageMetadata ", "ServiceInfo", "GetMetaData ", "GetDefinition 1",
                                   "GetDefinition 3", "GetDefinition 4", "getProperty ClientXADef",
                                   "getProperty ServiceMetadataXADef", "getProperty ServiceMetadataXFDef"}) {
      openOneWindow();
      service->failAt = call;
      for (const std::string& key : everyNode) {
        clickNode(key);
        EXPECT_EQ(threadState().gStatus, "") << call << key;
        for (const std::string tab : {"Information", "Properties", "Metadata"}) clickServiceTab(tab);
      }
      service->failAt = "";
      EXPECT_EQ(toolkit->pointers().back(), Pointer::Default) << call;
      EXPECT_TRUE(toolkit->failures().empty()) << call;
    }
  }
}

// The click rule itself.

TEST_F(MetadataStops, APageThatCannotBeDroppedEndsTheClickAfterTheFetchAndStays) {
  inBoth([this](const std::string& window) {
    clickNode("Service");
    static_cast<void>(newServiceCalls());
    static_cast<void>(newEngineCalls());
    plexa->record->failAt = "ParentWindow";
    clickNode("Image");
    EXPECT_EQ(newServiceCalls().size(), 3U) << window;
    EXPECT_TRUE(fields->myPlexa) << window;
    EXPECT_TRUE(controls->TabStrip2.visible()) << window;
    EXPECT_TRUE(controls->FirstPageFrame.visible()) << window;
    for (const std::string& call : newEngineCalls()) EXPECT_FALSE(call.ends_with(".Visible false")) << window;
    EXPECT_EQ(threadState().gStatus, "the engine fails at ParentWindow") << window;
    plexa->record->failAt = "";
  });
}

TEST_F(MetadataStops, AnEngineThatCannotBeHiddenEndsTheClickWhenTheControlsAreHidden) {
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    clickRasterTab("Attributes");
    plexa->record->failAt = "Visible";
    clickNode("Service");
    for (const Control* const control :
         {static_cast<const Control*>(&controls->TabStrip1),
          static_cast<const Control*>(&controls->RasterList),
          static_cast<const Control*>(&controls->ListView1), static_cast<const Control*>(&controls->Command7),
          static_cast<const Control*>(&controls->TabStrip2)}) {
      EXPECT_FALSE(control->visible()) << window << control->name();
    }
    EXPECT_FALSE(fields->myPlexa) << window;
    EXPECT_EQ(threadState().gStatus, "the engine fails at Visible") << window;
    plexa->record->failAt = "";
  });
}

TEST_F(MetadataStops, EachEngineCallOfTheWindowsRuleIsTheStatusAndNoneOfItsPages) {
  for (const std::string& key : everyNode) {
    openOneWindow();
    clickNode("Image");
    const std::size_t before = plexa->record->calls.size();
    clickNode(key);
    const std::size_t calls = plexa->record->calls.size() - before;
    // The commit of the old page, its detaching and release, three trees hidden and the first once more.
    constexpr std::size_t callsOfTheClick = 7;
    constexpr std::size_t release = 3;  // no call that can fail
    for (std::size_t call = 1; call <= calls; ++call) {
      openOneWindow();
      clickNode("Image");
      plexa->record->failAtCall = plexa->record->calls.size() + call;
      clickNode(key);
      EXPECT_EQ(threadState().gStatus.empty(), call == release || call > callsOfTheClick) << key << call;
      EXPECT_EQ(toolkit->pointers().back(), Pointer::Default) << key << call;
      EXPECT_TRUE(toolkit->failures().empty()) << key << call;
      plexa->record->failAtCall = 0;
      clickNode("Service");
      EXPECT_TRUE(fields->myPlexa) << key << call;
      EXPECT_EQ(threadState().gStatus, "");
    }
  }
}

TEST_F(MetadataStops, ThePointerIsTheHourglassWhileAPageIsBuilt) {
  inBoth([this](const std::string& window) {
    for (const std::string& key : everyNode) {
      std::vector<Pointer> whileShown;
      plexa->record->onCall = [&](const std::string& call) {
        if (call.ends_with(".Show")) whileShown.push_back(toolkit->pointers().back());
      };
      static_cast<void>(newPointers());
      clickNode(key);
      plexa->record->onCall = {};
      ASSERT_FALSE(whileShown.empty()) << window << key;
      for (const Pointer pointer : whileShown) EXPECT_EQ(pointer, Pointer::Hourglass) << window << key;
    }
  });
}

TEST_F(MetadataStops, NoPointerIsSetWhilePagesAreHidden) {
  inBoth([this](const std::string& window) {
    clickNode("ServerProcess");
    static_cast<void>(newPointers());
    plexa->record->failAt = "Visible";
    clickNode("Image");
    EXPECT_EQ(newPointers(), (std::vector{Pointer::Default})) << window;
    plexa->record->failAt = "";
  });
}

// Rasters.

TEST_F(MetadataStops, ARasterWhosePageFailsDoesNotKeepTheNextOfItsIdFromShowing) {
  imageMetadata = imageXml(
      "", "<Detailed><Rasters>" + rasterXml({}) + rasterXml({.name = "south"}) + "</Rasters></Detailed>");
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    bool failed = false;
    plexa->record->onCall = [&failed](const std::string& call) {
      if (failed || !call.ends_with(".EmbeddedMode true")) return;
      failed = true;
      throw RuntimeFailure("the first page fails");
    };
    controls->RasterList.userSelects(0);
    plexa->record->onCall = {};
    ASSERT_TRUE(failed && fields->myPlexa) << window;
    EXPECT_NE(page().DataXml().find("south"), std::string::npos) << window;
  });
}

TEST_F(MetadataStops, TheHiddenBoxesHaveTheirCopyAlsoWhenTheTreeFails) {
  imageMetadata = wholeImage();
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    plexa->record->failAt = "Show";
    clickRasterTab("Process");
    EXPECT_NE(controls->ProcessMetadata.text().find("warp"), std::string::npos) << window;
    clickRasterTab("Metadata");
    EXPECT_NE(controls->MetadataText.text().find("Sensor"), std::string::npos) << window;
    clickNode("ServerProcess");
    EXPECT_NE(controls->MDRichText.text().find("cubic"), std::string::npos) << window;
    plexa->record->failAt = "";
  });
}

TEST_F(MetadataStops, TheFrameOfARasterStandsBeforeItsPageIsBuilt) {
  inBoth([this](const std::string& window) {
    bool stood = false;
    plexa->record->onCall = [this, &stood](const std::string& call) {
      if (call.ends_with(".Show")) stood = controls->InfoFrame.visible();
    };
    clickNode("Raster");
    plexa->record->onCall = {};
    EXPECT_TRUE(stood) << window;
  });
}

TEST_F(MetadataStops, TheTabOfTheMetadataGoesBeforeTheRastersAreRead) {
  imageMetadata = test::imageOf({{.metadata = ""}, {.metadata = ""}});
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    EXPECT_EQ(controls->RasterList.count(), 0U) << window;
    EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Attributes", "Process"})) << window;
  });
}

TEST_F(MetadataStops, AMarkThatNobodyCouldReadIsNothingInARecordWithoutAnId) {
  imageMetadata = imageXml("", "<Detailed><Rasters>" + rasterXml({.id = "", .visible = "maybe"}) +
                                   rasterXml({}) + "</Rasters></Detailed>");
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    EXPECT_EQ(controls->RasterList.entries(), (Texts{"north - 1"})) << window;
  });
}

TEST_F(MetadataStops, SavingHasNoGuardInEither) {
  inBoth([this](const std::string& window) {
    const std::size_t before = toolkit->failures().size();
    service->failAt = "GetImageMetadata Full";
    toolkit->chooseFile("C:\\image.xml");
    controls->Save.userClicks();
    EXPECT_EQ(toolkit->failures().size(), before + 1) << window;
    service->failAt = "";
    service->answers["GetImageMetadata Full"] = "<Vorlane/>";
    toolkit->chooseFile("C:\\no\\such\\folder\\image.xml");
    controls->Save.userClicks();
    EXPECT_EQ(toolkit->failures().size(), before + 2) << window;
    controls->Save.userClicks();
    EXPECT_EQ(toolkit->saveDialogs().back().fileName, "C:\\no\\such\\folder\\image.xml") << window;
  });
}

}  // namespace
}  // namespace vlclientui
