// Anything that the metadata viewer asks for may be missing, malformed or fail: the page stops there, what
// was shown stays, and at most the status tells of it.

#include <algorithm>

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageOf;
using Texts = std::vector<std::string>;

const Texts everyNode{"Service", "Image", "ServerProcess", "Raster"};

class MetadataFailures : public test::MetadataFixture {
 protected:
  /// Nothing reached a person and the pointer is back.
  void expectSilence(const std::string& what) {
    EXPECT_TRUE(toolkit->messages().empty()) << what;
    EXPECT_TRUE(toolkit->failures().empty()) << what;
    EXPECT_EQ(toolkit->pointers().back(), Pointer::Default) << what;
  }
  /// The documents with one element taken out, for each element.
  [[nodiscard]] static Texts withoutEach(const std::string& xml) {
    Texts variants;
    for (std::size_t index = 0;; ++index) {
      const auto document = parsedDocument(xml);
      const auto elements = document->selectNodes("//*");
      if (index >= elements.size()) return variants;
      if (const XmlNodePtr parent = elements[index]->parentNode()) {
        if (parent->kind() == XmlNodeKind::Element) parent->removeChild(elements[index]);
      }
      variants.push_back(document->xml());
    }
  }
  /// The documents with one text made unreadable as number and truth value, for each text.
  [[nodiscard]] static Texts withBadEach(const std::string& xml) {
    Texts variants;
    for (std::size_t index = 0;; ++index) {
      const auto document = parsedDocument(xml);
      const auto texts = document->selectNodes("//text()");
      if (index >= texts.size()) return variants;
      texts[index]->setText("neither number nor truth");
      variants.push_back(document->xml());
    }
  }
  [[nodiscard]] static Texts malformed(const std::string& xml) {
    return {"", "   ", "no xml", xml.substr(0, xml.size() / 2), xml + xml, "<Other/>", "<Vorlane/>"};
  }

  void clickEverything() {
    for (const std::string& key : nodeKeys()) {
      clickNode(key);
      EXPECT_EQ(threadState().gStatus, "") << key;
      for (TabStrip* const strip : {&controls->TabStrip1, &controls->TabStrip2}) {
        for (std::size_t tab = 0; tab < strip->count(); ++tab) strip->userSelects(tab);
      }
      for (std::size_t row = 0; row < controls->RasterList.count(); ++row) {
        controls->RasterList.userSelects(row);
      }
    }
  }

  void survivesAsImage(const Texts& documents) {
    for (const std::string& document : documents) {
      imageMetadata = document;
      openPage();
      clickEverything();
      expectSilence(document);
      openOneWindow();
      clickEverything();
      expectSilence(document);
    }
  }

  const std::string fullImage_ = imageOf({{}, {.id = "2", .name = "south"}});
};

TEST_F(MetadataFailures, EachElementOfTheImageMayBeMissing) { survivesAsImage(withoutEach(fullImage_)); }

TEST_F(MetadataFailures, EachTextOfTheImageMayBeUnreadable) { survivesAsImage(withBadEach(fullImage_)); }

TEST_F(MetadataFailures, TheImageMayBeMalformed) { survivesAsImage(malformed(fullImage_)); }

TEST_F(MetadataFailures, AMalformedImageHasNoSourceAndEmptyPages) {
  for (const std::string& document : malformed(fullImage_)) {
    imageMetadata = document;
    for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
      open();
      EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess"})) << document;
      clickNode("Image");
      ASSERT_TRUE(fields->myPlexa) << document;
      EXPECT_EQ(page().DataXml(), "") << document;
      EXPECT_NE(page().FormDefinition(), "") << document;
      clickNode("ServerProcess");
      EXPECT_EQ(lastEngineValue("DataXml"), "<ServerProcess/>") << document;
    }
  }
}

TEST_F(MetadataFailures, AnImageThatComesMalformedLaterLeavesTheSourceEmptyAndWithoutItsMetadataTab) {
  for (const std::string& document : malformed(fullImage_)) {
    for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
      service->answers.erase("GetImageMetadata ");
      open();
      clickNode("Raster");
      service->answers["GetImageMetadata "] = document;
      clickNode("Raster");
      EXPECT_EQ(controls->RasterList.count(), 0U) << document;
      EXPECT_TRUE(controls->TabStrip1.visible()) << document;
      EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Attributes", "Process"})) << document;
      EXPECT_FALSE(controls->InfoFrame.visible()) << document;
      EXPECT_FALSE(fields->myPlexa) << document;
      expectSilence(document);
    }
  }
}

TEST_F(MetadataFailures, MalformedDocumentsOfTheServiceReachTheirPagesAsTheyCame) {
  for (const std::string document : {"", "   ", "no xml", "<Vorlane>", "<Vorlane/><Vorlane/>", "<Other/>"}) {
    serviceInfo = document;
    serviceMetadata = document;
    for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
      open();
      clickNode("Service");
      EXPECT_EQ(page().DataXml(), "") << document;
      for (const std::string tab : {"Properties", "Metadata"}) {
        clickServiceTab(tab);
        EXPECT_EQ(page().DataXml(), document) << tab;
      }
      expectSilence(document);
    }
  }
}

TEST_F(MetadataFailures, ServiceInfoAndServiceMetadataMayBeMalformedOrLackElements) {
  const auto variants = [this] {
    Texts all = malformed(serviceInfo);
    for (const Texts& more : {withoutEach(serviceInfo), withoutEach(serviceMetadata)}) {
      all.insert(all.end(), more.begin(), more.end());
    }
    return all;
  }();
  for (const std::string& document : variants) {
    serviceInfo = document;
    serviceMetadata = document;
    openPage();
    clickEverything();
    expectSilence(document);
    clickNode("Service");
    EXPECT_TRUE(fields->myPlexa) << document;
  }
}

TEST_F(MetadataFailures, DefinitionFilesMayBeMalformedOrLackSections) {
  for (const std::string file : {"C:\\Program\\VLClient.XADef", "C:\\Program\\VLClient.Xfdef"}) {
    const std::string whole = system->readFile(file);
    Texts variants = malformed(whole);
    for (const std::string& lacking : withoutEach(whole)) variants.push_back(lacking);
    for (const std::string& text : variants) {
      system->writeFile(file, text);
      openPage();
      clickEverything();
      expectSilence(text);
    }
    system->writeFile(file, whole);
  }
}

TEST_F(MetadataFailures, DefinitionsOfTheServiceMayBeMalformed) {
  for (const std::string call : {"GetDefinition 1", "GetDefinition 3", "GetDefinition 4"}) {
    for (const std::string& text : malformed("<XADef><Vorlane><A/></Vorlane></XADef>")) {
      service->answers[call] = text;
      openPage();
      clickEverything();
      expectSilence(call + " " + text);
    }
  }
}

TEST_F(MetadataFailures, EachCallOfTheServiceMayFail) {
  for (const std::string type : {"IImageService", "IOVLImageService"}) {
    service->type = type;
    for (const std::string call : {"GetImageMetadata ", "ServiceInfo", "GetMetaData ", "GetDefinition 1",
                                   "GetDefinition 3", "GetDefinition 4", "getProperty ClientXADef",
                                   "getProperty ServiceMetadataXADef", "getProperty ServiceMetadataXFDef"}) {
      openPage();
      service->failAt = call;
      clickEverything();
      expectSilence(call);
      service->failAt = "";
      openPage();
      clickNode("Image");
      EXPECT_TRUE(fields->myPlexa) << call;
    }
  }
}

TEST_F(MetadataFailures, EachCallOfAnEngineMayFailWithTheStatusOnlyForTheClickRuleItself) {
  for (const std::string& key : everyNode) {
    openPage();
    clickNode("Image");
    const std::size_t before = plexa->record->calls.size();
    clickNode(key);
    const std::size_t calls = plexa->record->calls.size() - before;
    // Detaching the old page and hiding the three trees belong to the click, all else to the page.
    constexpr std::size_t callsOfTheClick = 5;
    for (std::size_t call = 1; call <= calls; ++call) {
      openPage();
      clickNode("Image");
      static_cast<void>(newPointers());
      plexa->record->failAtCall = plexa->record->calls.size() + call;
      const bool isRelease = call == 2;  // no call that can fail
      clickNode(key);
      EXPECT_EQ(threadState().gStatus.empty(), isRelease || call > callsOfTheClick) << key << call;
      expectSilence(key);
      plexa->record->failAtCall = 0;
      clickNode("Service");
      EXPECT_TRUE(fields->myPlexa) << key << call;
      EXPECT_EQ(threadState().gStatus, "");
    }
  }
}

TEST_F(MetadataFailures, AFailureOfTheClickThatIsNoExceptionHasAStatusToo) {
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    open();
    clickNode("Image");
    plexa->record->onCall = [](const std::string&) { throw 42; };
    clickNode("Service");
    plexa->record->onCall = {};
    EXPECT_FALSE(threadState().gStatus.empty());
    expectSilence("a number thrown");
  }
}

TEST_F(MetadataFailures, AnEngineThatShowsNothingIsNoFailure) {
  plexa->record->showAnswer = false;
  openPage();
  clickEverything();
  expectSilence("Show answers false");
  clickNode("Image");
  EXPECT_TRUE(fields->myPlexa);
}

TEST_F(MetadataFailures, ClicksOnTabsAndRowsLeaveTheStatusAloneWhetherTheyFailOrNot) {
  for (const auto& open : {std::function<void()>([this] { openPage(); }), {[this] { openOneWindow(); }}}) {
    for (const std::string failing : {"", "Show", "EmbeddedMode", "Visible"}) {
      open();
      clickNode("Raster");
      threadState().gStatus = "before";
      plexa->record->failAt = failing;
      for (const std::string tab : {"Metadata", "Attributes", "Process", "Information"}) clickRasterTab(tab);
      controls->RasterList.userSelects(1);
      for (const std::string tab : {"Metadata", "Properties", "Information"}) clickServiceTab(tab);
      EXPECT_EQ(threadState().gStatus, "before") << failing;
      plexa->record->failAt = "";
      expectSilence(failing);
    }
  }
}

TEST_F(MetadataFailures, WhatWasShownBeforeAFailureStays) {
  openPage();
  plexa->record->failAt = "FormDefinition";
  clickNode("Service");
  EXPECT_TRUE(controls->TabStrip2.visible());
  EXPECT_TRUE(controls->FirstPageFrame.visible());
  EXPECT_TRUE(fields->myPlexa);
  plexa->record->failAt = "";
  clickServiceTab("Properties");
  EXPECT_EQ(page().FormDefinition(), "<Vorlane><F_Properties/></Vorlane>");
}

TEST_F(MetadataFailures, AStrangerAsServiceLeavesThePagesOnTheTexts) {
  openPage();
  fields->myImageServiceObject = std::make_shared<test::FakeStranger>();
  clickNode("Raster");
  EXPECT_EQ(controls->RasterList.count(), 2U);
  EXPECT_FALSE(controls->Command7.visible());
  expectSilence("a stranger");
}

}  // namespace
}  // namespace vlclientui
