// Catalogues of real servers as lists of mosaics.
#include "client/stac/StacServers.h"

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"
#include "contracts/Silence.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using Names = std::vector<std::string>;
using vlclientui::test::StaticServer;

const Names sampleNames = {"Imagery/Overlap_Study", "Imagery/Valley/Ortho_Mosaic"};

class StaticCatalogues : public platform::TemporaryFolder {
 protected:
  [[nodiscard]] static std::string address(const std::string& path = "/catalog.json") {
    return sampleServer().address() + path;
  }
  [[nodiscard]] Names listed(const std::string& server) {
    StacServers servers(access_);
    const auto content = servers.list(server);
    return content ? namesOf(*content) : Names{"(silent)"};
  }
  [[nodiscard]] static StacService service(const Names& folders, const std::string& id) {
    StacService made;
    made.folders = folders;
    made.about.id = id;
    return made;
  }

  NetworkAccess access_{quickSettings()};
};

TEST_F(StaticCatalogues, ListTheirCollectionsInFolders) {
  EXPECT_EQ(listed(address()), sampleNames);
  EXPECT_EQ(listed("  " + address().substr(7) + " "), sampleNames) << "without http://";
}

TEST_F(StaticCatalogues, TellOfACollectionWithoutAskingForItems) {
  StacServers servers(access_);
  const auto content = servers.list(address("/Imagery/Valley/Ortho_Mosaic/collection.json"));
  ASSERT_TRUE(content);
  ASSERT_EQ(content->services.size(), 1U);
  EXPECT_EQ(content->services[0].name, "Ortho_Mosaic");
  const RasterFacts& facts = content->services[0].facts;
  EXPECT_EQ(facts.title, "Orthophoto mosaic 2019-2021, 10 m");
  EXPECT_EQ(facts.region, "46.5 N 8.5 E, 2019-06-21 to 2021-07-14");
  EXPECT_EQ(facts.pixelSource, "Survey cameras A and B (simulated)");
  EXPECT_EQ(facts.srsId, "EPSG:32632");
  ASSERT_TRUE(facts.geographicEnvelope);
  EXPECT_NEAR(facts.geographicEnvelope->xMin, 8.47, 0.01);
}

TEST_F(StaticCatalogues, FindAMosaicAgainAfterARestart) {
  StacServers servers(access_);
  const auto entry = servers.find(address() + "/Imagery/Overlap_Study");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->kind, EntryKind::Mosaic);
  EXPECT_EQ(entry->name, "Imagery/Overlap_Study");
  ASSERT_EQ(entry->definition.sources.size(), 3U);
  Names names;
  for (const MosaicSource& source : entry->definition.sources) names.push_back(source.name);
  EXPECT_EQ(names, (Names{"sheet_green", "sheet_blue", "sheet_red"})) << "the newest on top";
  EXPECT_FALSE(servers.find(address() + "/Imagery/Nowhere"));
  EXPECT_FALSE(servers.find(address("/nowhere.json") + "/Imagery/Overlap_Study"));
}

TEST_F(StaticCatalogues, OfASingleItemAreAServerWithOneMosaic) {
  EXPECT_EQ(listed(address("/Imagery/Overlap_Study/sheet_red.json")), Names{"sheet_red"});
}

TEST_F(StaticCatalogues, OfAFileOfItemsListThemByCollection) {
  write("items.json", R"({"type":"FeatureCollection","features":[
      {"type":"Feature","stac_version":"1.0.0","id":"1","collection":"b","assets":{"visual":{"href":"1.tif"}}},
      {"type":"Feature","id":"2","collection":"a","assets":{"visual":{"href":"2.tif"}}},
      {"type":"Feature","id":"3","assets":{"visual":{"href":"3.tif"}}}]})");
  const StaticServer server(folder_);
  EXPECT_EQ(listed(server.address() + "/items.json"), (Names{"a", "b", "items"}));
}

TEST_F(StaticCatalogues, AreSilentForWhatIsNone) {
  write("page.html", "<html></html>");
  write("other.json", R"({"a":1})");
  const StaticServer server(folder_);
  for (const char* const path : {"/page.html", "/other.json", "/nowhere.json"}) {
    EXPECT_EQ(listed(server.address() + path), Names{"(silent)"}) << path;
  }
  for (const char* const text :
       {"", "/data", "C:\\data", "not a server", "http://me:secret@h/catalog.json"}) {
    EXPECT_EQ(listed(text), Names{"(silent)"}) << text;
  }
}

TEST_F(StaticCatalogues, FollowNoLinkTwiceAndNoneToAnotherServer) {
  write("catalog.json",
        R"({"type":"Catalog","stac_version":"1.0.0","id":"r","links":[{"rel":"child","href":"catalog.json"},
      {"rel":"child","href":"a/catalog.json"},{"rel":"child","href":"http://127.0.0.2:1/catalog.json"},
      {"rel":"child","href":"ftp://h/x.json"}]})");
  std::filesystem::create_directory(path("a"));
  write(
      "a/catalog.json",
      R"({"type":"Catalog","stac_version":"1.0.0","id":"a","links":[{"rel":"child","href":"../catalog.json"},
      {"rel":"child","href":"catalog.json"},{"rel":"child","href":"c.json"}]})");
  write("a/c.json", R"({"type":"Collection","id":"c"})");
  const StaticServer server(folder_);
  StacServers servers(access_);
  const auto content = servers.list(server.address() + "/catalog.json");
  ASSERT_TRUE(content);
  EXPECT_EQ(namesOf(*content), Names{"a/c"});
  ASSERT_EQ(content->problems.size(), 2U);
  EXPECT_EQ(content->problems[0].reason, "the link leads to another server, 127.0.0.2:1");
  EXPECT_NE(content->problems[1].reason.find("is no http or https address"), std::string::npos);
}

TEST_F(StaticCatalogues, EndWhereTheyAreTooDeepOrTooMany) {
  write("catalog.json",
        R"({"type":"Catalog","stac_version":"1.0.0","id":"r","links":[{"rel":"child","href":"a.json"},
      {"rel":"child","href":"b.json"},{"rel":"child","href":"c.json"}]})");
  write("a.json",
        R"({"type":"Catalog","stac_version":"1.0.0","id":"a","links":[{"rel":"child","href":"deep.json"}]})");
  write("b.json", R"({"type":"Collection","id":"b"})");
  write("c.json", R"({"type":"Collection","id":"c"})");
  const StaticServer server(folder_);
  StacLimits limits;
  limits.documents = 2;
  limits.depth = 1;
  StacServers servers(access_, limits);
  const auto content = servers.list(server.address() + "/catalog.json");
  ASSERT_TRUE(content);
  EXPECT_EQ(namesOf(*content), Names{"b"});
  ASSERT_EQ(content->problems.size(), 2U);
  EXPECT_EQ(content->problems[0].reason, "the catalogue has too many documents");
  EXPECT_EQ(content->problems[1].reason, "catalogues are not followed deeper than this");
}

TEST_F(StaticCatalogues, LeaveOutADocumentThatCannotBeReadAndTellIt) {
  write("catalog.json",
        R"({"type":"Catalog","stac_version":"1.0.0","id":"r","links":[{"rel":"child","href":"a.json"},
      {"rel":"child","href":"gone.json"},{"rel":"child","href":"c.json"}]})");
  write("a.json", "{\"type\":\"Cat");
  write("c.json", R"({"type":"Collection","id":"c"})");
  const StaticServer server(folder_);
  StacServers servers(access_);
  const auto content = servers.list(server.address() + "/catalog.json");
  ASSERT_TRUE(content);
  EXPECT_EQ(namesOf(*content), Names{"c"});
  EXPECT_EQ(content->problems.size(), 2U);
}

TEST_F(StaticCatalogues, NameMosaicsAsFilesAreNamed) {
  const Names names = mosaicNames({service({"2021, July"}, "a:b"), service({}, "x"), service({"x"}, "x"),
                                   service({}, "same"), service({}, "same")});
  EXPECT_EQ(names[0], "2021_ July/a_b");
  EXPECT_NE(names[1], "x") << "told apart from the folder beside it";
  EXPECT_EQ(names[2], "x/x");
  EXPECT_NE(names[3], names[4]);
}

class ServedCatalogues : public testing::Test {
 protected:
  [[nodiscard]] Names listed(const std::string& server) {
    StacServers servers(access_);
    const auto content = servers.list(server);
    return content ? namesOf(*content) : Names{"(silent)"};
  }

  StacApi api_;
  NetworkAccess access_{quickSettings()};
};

TEST_F(ServedCatalogues, ListTheirCollections) {
  EXPECT_EQ(listed(api_.address() + "/"), (Names{"Ortho_Mosaic", "Overlap_Study"}));
  EXPECT_EQ(listed(api_.address() + "/collections"), (Names{"Ortho_Mosaic", "Overlap_Study"}));
  EXPECT_EQ(listed(api_.address() + "/collections/Ortho_Mosaic"), Names{"Ortho_Mosaic"});
  for (const std::string& request : api_.requests()) {
    EXPECT_EQ(request.find("/items"), std::string::npos) << "no item is asked for: " << request;
  }
}

TEST_F(ServedCatalogues, OfASearchAreTheCollectionsThatItIsAbout) {
  const std::string search =
      api_.address() + "/search?collections=Overlap_Study,Ortho_Mosaic&datetime=../2030";
  EXPECT_EQ(listed(search), (Names{"Ortho_Mosaic", "Overlap_Study"}));
  StacServers servers(access_);
  const auto entry = servers.find(search + "/Overlap_Study");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->definition.sources.size(), 3U);
  EXPECT_EQ(entry->definition.title, "Three overlapping sheets of plain color, 25 m");
}

TEST_F(ServedCatalogues, OfASearchWithoutCollectionsAreThoseOfItsItems) {
  EXPECT_EQ(listed(api_.address() + "/search?bbox=-180,-90,180,90"),
            (Names{"Ortho_Mosaic", "Overlap_Study"}));
  EXPECT_EQ(listed(api_.address() + "/search?bbox=0,0,1,1"), Names{});
}

TEST_F(ServedCatalogues, TellWhyTheyAreSilent) {
  StacServers servers(access_);
  const vlclientui::test::FaultProxy proxy{sampleCatalogue()};
  const std::string address = proxy.address("/catalog.json?token=verysecret");
  ASSERT_TRUE(servers.list(address));
  proxy.always("status=404");
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  EXPECT_FALSE(servers.list(address));
  EXPECT_NE(told.find("does not answer: the server answers with status 404"), std::string::npos) << told;
  EXPECT_EQ(told.find("verysecret"), std::string::npos) << told;
}

TEST_F(ServedCatalogues, TellWhyAMosaicOfThemCannotBeFound) {
  const vlclientui::test::FaultProxy proxy{sampleCatalogue()};
  const std::string address = proxy.address("/catalog.json");
  ASSERT_TRUE(StacServers(access_).list(address));
  proxy.always("reset");
  StacServers servers(access_);
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  EXPECT_FALSE(servers.find(address + "/Overlap_Study"));
  EXPECT_NE(told.find("the catalogue '" + address + "' does not answer: "), std::string::npos) << told;
}

}  // namespace
}  // namespace vlclientui::client::stac
