// Folders and files of real web servers, as servers of the catalogue.
#include "client/ranges/WebServers.h"

#include <algorithm>
#include <thread>

#include "client/QuickTransport.h"
#include "client/catalogue/Catalogue.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/NetworkServers.h"
#include "client/network/NetworkAccess.h"
#include "client/ranges/RangeFixture.h"
#include "contracts/Silence.h"
#include "platform/LibXmlService.h"
#include "servers/MapServer.h"
#include "support/TestFolders.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;
using vlclientui::test::StaticServer;

std::vector<std::string> namesOf(const CatalogueContent& content) {
  std::vector<std::string> names;
  for (const ServiceRecord& service : content.services) names.push_back(service.name);
  return names;
}

class WebServer : public RangeFixture {
 protected:
  /// Two folders with an image each, and one beside them.
  void makeTree() {
    for (const std::string name : {"North", "North/Far away", "South"}) fs::create_directory(path(name));
    make("top.tif", "GTiff", 64);
    make("North/a.tif", "COG", 300);
    make("North/Far away/b.png", "PNG", 32);
    make("South/a.tif", "GTiff", 16);
  }

  NetworkAccess access_{vlclientui::test::quickSettings()};
  WebServers servers_{access_, client::RemoteFiles::shared()};
};

TEST_F(WebServer, ThatListsAFolderHasItsImagesAndFoldersAsServices) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(" " + server.address("/") + " ");
  ASSERT_TRUE(listed);
  EXPECT_EQ(namesOf(*listed), (std::vector<std::string>{"North/Far away/b", "North/a", "South/a", "top"}));
  EXPECT_EQ(listed->services.at(1).facts.columns, 300);
  EXPECT_EQ(listed->services.at(1).facts.srsId, "");
  EXPECT_EQ(listed->services.at(0).entry.folder, "North/Far away");
  EXPECT_TRUE(listed->problems.empty());
}

TEST_F(WebServer, HasTheFactsOfTheSameFolderOfThisMachine) {
  const auto remote = servers_.list(StaticServer::samples().address());
  const platform::LibXmlService xml{platform::PathTranslation("/home/u")};
  RasterCache cache;
  const CatalogueContent local = readCatalogue(samplesFolder(), xml, cache);
  ASSERT_TRUE(remote);
  int compared = 0;
  for (const ServiceRecord& here : local.services) {
    const auto there = std::ranges::find(remote->services, here.name, &ServiceRecord::name);
    ASSERT_NE(there, remote->services.end()) << here.name;
    EXPECT_EQ(there->facts.title, here.facts.title);
    EXPECT_EQ(there->facts.envelope, here.facts.envelope);
    EXPECT_EQ(there->facts.srsWkt, here.facts.srsWkt);
    EXPECT_EQ(there->facts.columns, here.facts.columns);
    EXPECT_EQ(there->facts.pixelType, here.facts.pixelType);
    EXPECT_EQ(there->facts.region, here.facts.region);
    ++compared;
  }
  EXPECT_GE(compared, 7);
  EXPECT_EQ(remote->services.size(), local.services.size());
  EXPECT_TRUE(remote->problems.empty());
}

// Signs that mean something in addresses are spelled for the raster library in the names that it gets.
TEST_F(WebServer, TitlesFilesByTheirNamesWhateverTheseHold) {
  for (const std::string name : {"salt & pepper", "50% off", "a#b", "naïve [1]"})
    make(name + ".tif", "GTiff", 8);
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  std::vector<std::string> titles;
  for (const ServiceRecord& service : listed->services) titles.push_back(service.facts.title);
  std::ranges::sort(titles);
  EXPECT_EQ(titles, (std::vector<std::string>{"50% off", "a#b", "naïve [1]", "salt & pepper"}));
  const auto single = servers_.list(server.address("/salt%20%26%20pepper.tif"));
  ASSERT_TRUE(single);
  EXPECT_EQ(single->services.front().facts.title, "salt & pepper");
}

TEST_F(WebServer, ThatIsASingleFileHasOneService) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/North/Far%20away/b.png"));
  ASSERT_TRUE(listed);
  EXPECT_EQ(namesOf(*listed), std::vector<std::string>{"b"});
  const auto found = servers_.find(server.address("/North/Far%20away/b.png") + "/b");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->file, listed->services.front().entry.file);
  EXPECT_FALSE(servers_.find(server.address("/North/Far%20away/b.png") + "/c"));
}

TEST_F(WebServer, IsFoundByAReferenceWithoutAListBefore) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  for (const std::string name : {"top", "North/a", "North/Far away/b", "North//a"}) {
    const auto found = servers_.find(server.address("/" + name));
    ASSERT_TRUE(found) << name;
    EXPECT_TRUE(opened(found->file.string())) << name;
  }
  for (const std::string name : {"none", "North", "North/b", "North/a.tif", "North/", ""})
    EXPECT_FALSE(servers_.find(server.address("/" + name))) << name;
}

TEST_F(WebServer, ListsNoFurtherThanItsBounds) {
  std::string folder;
  for (int depth = 0; depth < WebServers::deepest + 3; ++depth) {
    folder += "deeper/";
    fs::create_directory(path(folder));
    make(folder + "a.tif", "GTiff", 8);
  }
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  EXPECT_EQ(listed->services.size(), static_cast<std::size_t>(WebServers::deepest));
  ASSERT_EQ(listed->problems.size(), 1U);
  EXPECT_EQ(listed->problems.front().reason, "it lies more than 8 folders deep, and is not listed");
}

TEST_F(WebServer, ThatIsGivenUpInTheMiddleIsNoListOfWhatHadCome) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  for (const std::string part : {"only=.tif;hang", "only=North;hang"}) {
    client::RemoteFiles::shared().forget();
    server.always(part);
    CancelToken token;
    std::optional<CatalogueContent> listed = CatalogueContent();
    std::jthread waiting([&] {
      const WaitScope scope(nullptr, token);
      listed = servers_.list(server.address("/"));
    });
    while (server.counts().open == 0) std::this_thread::yield();
    token.cancel();
    waiting.join();
    EXPECT_FALSE(listed) << part;
    server.clear();
    const auto again = servers_.list(server.address("/"));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->services.size(), 4U);
  }
}

TEST_F(WebServer, KeepsImagesWhoseHeadersCannotBeHadJustNow) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  server.always("only=top.tif;status=503");
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  ASSERT_EQ(namesOf(*listed), (std::vector<std::string>{"North/Far away/b", "North/a", "South/a", "top"}));
  EXPECT_EQ(listed->services.at(3).facts.columns, 0);
  EXPECT_EQ(listed->services.at(3).facts.title, "top");
  EXPECT_EQ(listed->services.at(2).facts.columns, 16);
}

TEST_F(WebServer, TellsFoldersThatAreTooManyFromThoseThatLieTooDeep) {
  make("top.tif", "GTiff", 8);
  for (std::size_t i = 0; i <= WebServers::mostFolders; ++i)
    fs::create_directory(path("folder" + std::to_string(i)));
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  ASSERT_EQ(listed->problems.size(), 2U) << "the server itself is one of them";
  for (const LeftOut& problem : listed->problems)
    EXPECT_EQ(problem.reason, "500 folders were listed before it, and no more are");
}

TEST_F(WebServer, WithManyImagesIsListedBeforeTheyAreOpened) {
  for (std::size_t i = 0; i <= WebServers::mostRead; ++i) write(std::to_string(i) + ".tif", "II*");
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  EXPECT_EQ(listed->services.size(), WebServers::mostRead + 1);
  EXPECT_LE(server.counts().requests, 2U);
  EXPECT_EQ(listed->services.front().facts.title, "0");
}

TEST_F(WebServer, ReadsHeadersSideBySideAndRemembersThem) {
  for (int i = 0; i < 12; ++i) make(std::to_string(i) + ".tif", "GTiff", 8);
  const FaultProxy server{fs::path(folder_)};
  server.always("delay=30");
  ASSERT_TRUE(servers_.list(server.address("/")));
  EXPECT_GE(server.counts().together, 3U);
  const std::size_t before = server.counts().requests;
  ASSERT_TRUE(servers_.list(server.address("/")));
  EXPECT_EQ(server.counts().requests, before + 1) << "the list alone";
}

TEST_F(WebServer, TellsWhatCannotBeRead) {
  makeTree();
  write("broken.tif", "II*\0nothing behind it");
  write("page.tif", "<html>Not today</html>");
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  EXPECT_EQ(listed->services.size(), 4U);
  ASSERT_EQ(listed->problems.size(), 2U);
  EXPECT_EQ(listed->problems.front().path, server.address("/broken.tif"));
  EXPECT_NE(listed->problems.back().reason.find("is no image"), std::string::npos);
}

TEST_F(WebServer, ReadsWhatLiesBesideAnImageAndAsksForNothingInVain) {
  make("a.jpg", "JPEG", 100, {"WORLDFILE=YES"});
  const FaultProxy server{fs::path(folder_)};
  const auto listed = servers_.list(server.address("/"));
  ASSERT_TRUE(listed);
  ASSERT_EQ(listed->services.size(), 1U);
  EXPECT_EQ(listed->services.front().facts.envelope, (Bounds{500000, 4999000, 501000, 5000000}));
  const std::vector<std::string> requests = server.requests();
  const auto asked = [&](const std::string& line) { return std::ranges::count(requests, line) > 0; };
  EXPECT_TRUE(asked("GET /a.jpg") && (asked("GET /a.wld") || asked("GET /a.jpg.aux.xml")));
  for (const std::string& line : requests) {
    if (line == "GET /") continue;
    EXPECT_TRUE(fs::exists(folder_ + line.substr(4))) << line;
  }
}

TEST_F(WebServer, ThatIsNoneIsLeftToOtherKinds) {
  write("a.txt", "text");
  const FaultProxy server{fs::path(folder_)};
  for (const std::string& text : {std::string("/data"), std::string("two words"), server.address("/a.txt"),
                                  server.address("/none/"), server.address("/wcs"), std::string()}) {
    EXPECT_FALSE(servers_.list(text)) << text;
    EXPECT_FALSE(servers_.find(text + "/a")) << text;
  }
}

TEST_F(WebServer, ThatFallsSilentSaysWhy) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  ASSERT_TRUE(servers_.list(server.address("/")));
  for (const std::string fault : {"reset", "status=500", "status=404", "truncate", "endless", "notgzip"}) {
    server.always(fault);
    told.clear();
    EXPECT_FALSE(servers_.list(server.address("/"))) << fault;
    EXPECT_NE(told.find("does not answer: "), std::string::npos) << fault << ": " << told;
  }
  server.clear();
  EXPECT_EQ(servers_.list(server.address("/"))->services.size(), 4U);
}

TEST_F(WebServer, ThatFallsSilentSaysWhyAServiceCannotBeFound) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  ASSERT_TRUE(servers_.list(server.address("/")));
  server.always("reset");
  std::string told;
  const SilenceListener listener([&](const SilentEnd& end) { told = end.reason; });
  WebServers others(access_, client::RemoteFiles::shared());
  EXPECT_FALSE(others.find(server.address("/") + "/North/a"));
  EXPECT_NE(told.find("does not answer: "), std::string::npos) << told;
}

TEST_F(WebServer, IsOneOfTheServersOfTheCatalogue) {
  makeTree();
  const FaultProxy server{fs::path(folder_)};
  const platform::LibXmlService xml{platform::PathTranslation("/home/u")};
  CatalogueServer catalogue(xml, CatalogueSettings());
  addNetworkServers(catalogue);
  EXPECT_EQ(catalogue.factsByName(server.address("/")).size(), 4U);
  const RasterFacts facts = catalogue.factsOf("ImageService://" + server.address("/") + "/North/a");
  EXPECT_EQ(facts.columns, 300);
  for (const std::string& line : server.requests())
    EXPECT_EQ(line.find("GetCapabilities"), std::string::npos) << line;
}

}  // namespace
}  // namespace vlclientui::client::ranges
