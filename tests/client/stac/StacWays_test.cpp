// Ways from document to document: which links are followed, and where pages lead.
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"
#include "client/stac/StacItems.h"
#include "platform/TemporaryFolder.h"
#include "servers/FaultProxy.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::FaultProxy;
using Names = std::vector<std::string>;

std::string followed(const std::string& server, const std::string& base, const std::string& reference) {
  Transport transport{quickSettings()};
  const auto way = StacFetcher(transport, server, {}).followed(base, reference);
  const auto* problem = std::get_if<StacProblem>(&way);
  return problem != nullptr ? "!" + problem->text : std::get<std::string>(way);
}

TEST(StacWay, LeadsToDocumentsOfTheSameServer) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"a.json", "http://h/c/a.json"},
      {"../a.json", "http://h/a.json"},
      {"/a.json", "http://h/a.json"},
      {"?page=2", "http://h/c/catalog.json?page=2"},
      {"https://h/a.json", "https://h/a.json"},
      {"http://h:80/a.json", "http://h:80/a.json"},
      {"//h/a.json", "http://h/a.json"},
      {"a.json#part", "http://h/c/a.json"},
      {"a.json?t=1%2C2", "http://h/c/a.json?t=1%2C2"}};
  for (const auto& [reference, expected] : cases)
    EXPECT_EQ(followed("http://h/", "http://h/c/catalog.json", reference), expected) << reference;
}

TEST(StacWay, ToOtherServersIsRefusedByName) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"http://other/a.json", "other:80"},        {"//other/a.json", "other:80"},
      {"http://h:8080/a.json", "h:8080"},         {"https://h:8443/a.json", "h:8443"},
      {"http://h.evil/a.json", "h.evil:80"},      {"http://h@other/a.json", "other:80"},
      {"http://127.0.0.1/a.json", "127.0.0.1:80"}};
  for (const auto& [reference, host] : cases)
    EXPECT_EQ(followed("http://h/", "http://h/c/catalog.json", reference),
              "!the link leads to another server, " + host);
}

TEST(StacWay, ToNoAddressIsRefusedWithoutItsSecrets) {
  for (const std::string reference : {"s3://b/a.json", "file:///etc/passwd", "mailto:a@h", "a b.json",
                                      "a.json\n", "ftp://h/a.json?token=geheim"}) {
    const std::string text = followed("http://h/", "http://h/c/catalog.json", reference);
    EXPECT_TRUE(text.starts_with("!\"") && text.ends_with("\" is no http or https address")) << text;
    EXPECT_EQ(text.find("geheim"), std::string::npos) << text;
  }
}

TEST(PageLengths, AreWishedForWhereNobodyToldOne) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"http://h/items", "http://h/items?limit=1000"},
      {"http://h/items?a=1", "http://h/items?a=1&limit=1000"},
      {"http://h/items?limit=5", "http://h/items?limit=5"},
      {"http://h/items?a=1&limit=5", "http://h/items?a=1&limit=5"},
      {"http://h/items?mylimit=5", "http://h/items?mylimit=5&limit=1000"},
      {"http://h/items?limits=5", "http://h/items?limits=5&limit=1000"},
      {"http://h/limit=5/items", "http://h/limit=5/items?limit=1000"}};
  for (const auto& [address, expected] : cases) EXPECT_EQ(withPageLength(address), expected);
}

TEST(LeftOutDocuments, AreShownWithoutSecrets) {
  EXPECT_EQ(leftOut("http://me:geheim@h/a.json?sig=geheim", "why"),
            (LeftOut{"http://h/a.json?sig=***", "why"}));
}

class StacFolder : public platform::TemporaryFolder {
 protected:
  void writePage(const std::string& name, const std::string& ids, const std::string& next) {
    std::string features;
    for (const char id : ids)
      features +=
          (features.empty() ? "" : ",") + (R"({"type":"Feature","id":")" + std::string(1, id) + "\"}");
    const std::string link = next.empty() ? "" : R"({"rel":"next","href":")" + next + "\"}";
    write(name, R"({"type":"FeatureCollection","features":[)" + features + "],\"links\":[" + link + "]}");
  }
  [[nodiscard]] StacService paged(const FaultProxy& proxy, const std::string& first) const {
    StacService service;
    service.address = proxy.address("/collection.json");
    service.pages = proxy.address(first);
    return service;
  }
  [[nodiscard]] std::string outcome(const FaultProxy& proxy, const std::string& first,
                                    const StacLimits& limits = {}) {
    const auto read = readStacItems(transport_, paged(proxy, first), limits);
    if (const auto* problem = std::get_if<StacProblem>(&read)) return "!" + problem->text;
    std::string ids;
    for (const std::string& id : idsOf(std::get<StacItems>(read).items)) ids += id;
    return ids + (std::get<StacItems>(read).isWhole ? "" : "+");
  }

  Transport transport_{quickSettings()};
};

TEST_F(StacFolder, HasPagesThatAreReadOneBehindTheOther) {
  std::filesystem::create_directory(path("more"));
  writePage("1.json", "ab", "more/2.json?t=x%2Fy");
  writePage("more/2.json", "", "../3.json");
  writePage("3.json", "c", "");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  EXPECT_EQ(outcome(proxy, "/1.json"), "abc");
  EXPECT_EQ(proxy.requests(), (Names{"GET /1.json?limit=1000", "GET /more/2.json?t=x%2Fy", "GET /3.json"}));
}

TEST_F(StacFolder, HasPagesUpToALimitOfItems) {
  writePage("1.json", "abc", "2.json");
  writePage("2.json", "de", "");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  for (const auto& [limit, ids] : {std::pair<std::size_t, std::string>{2, "ab+"},
                                   {3, "abc+"},
                                   {4, "abcd+"},
                                   {5, "abcde"},
                                   {6, "abcde"}}) {
    StacLimits limits;
    limits.items = limit;
    EXPECT_EQ(outcome(proxy, "/1.json", limits), ids) << limit;
  }
}

TEST_F(StacFolder, HasPagesUpToALimitOfPages) {
  writePage("1.json", "a", "2.json");
  writePage("2.json", "b", "3.json");
  writePage("3.json", "c", "");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  StacLimits limits;
  limits.pages = 2;
  EXPECT_EQ(outcome(proxy, "/1.json", limits), "!its pages never end");
  limits.pages = 3;
  EXPECT_EQ(outcome(proxy, "/1.json", limits), "abc");
}

TEST_F(StacFolder, IsAskedAgainWithoutAWishWhenItRefusesLongPages) {
  writePage("1.json", "a", "");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  proxy.arm(1, "status=400");
  EXPECT_EQ(outcome(proxy, "/1.json"), "a");
  EXPECT_EQ(proxy.requests(), (Names{"GET /1.json?limit=1000", "GET /1.json"}));
  proxy.always("status=400");
  EXPECT_TRUE(outcome(proxy, "/1.json").starts_with("!")) << "refused with and without";
}

TEST_F(StacFolder, TellsOfItemsThatHaveNoId) {
  write("1.json",
        R"({"type":"FeatureCollection","features":[{"type":"Feature"},{"type":"Feature","id":"a"},7]})");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  const auto read = readStacItems(transport_, paged(proxy, "/1.json"));
  ASSERT_TRUE(std::holds_alternative<StacItems>(read));
  EXPECT_EQ(idsOf(std::get<StacItems>(read).items), Names{"a"});
  ASSERT_EQ(std::get<StacItems>(read).problems.size(), 1U);
  EXPECT_EQ(std::get<StacItems>(read).problems[0].reason, "2 of its items have no id");
}

TEST_F(StacFolder, WithoutPagesTakesNoQuestionsAboutAreas) {
  StacService service;
  service.address = "http://127.0.0.1:1/c.json";
  const auto read = readStacItemsWithin(transport_, service, {0, 0, 1, 1});
  ASSERT_TRUE(std::holds_alternative<StacItems>(read));
  EXPECT_TRUE(std::get<StacItems>(read).items.empty());
}

TEST_F(StacFolder, IsAskedForTheAreaThatASearchIsAbout) {
  writePage("s.json", "a", "");
  const FaultProxy proxy{std::filesystem::path(folder_)};
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"/s.json", "GET /s.json?bbox=8%2C46%2C10%2C48&limit=1000"},
      {"/s.json?bbox=9,40,20,47", "GET /s.json?bbox=9%2C46%2C10%2C47&limit=1000"},
      {"/s.json?limit=7&x=1", "GET /s.json?limit=7&x=1&bbox=8%2C46%2C10%2C48"}};
  for (const auto& [pages, request] : cases) {
    proxy.clear();
    EXPECT_TRUE(std::holds_alternative<StacItems>(
        readStacItemsWithin(transport_, paged(proxy, pages), {8, 46, 10, 48})));
    EXPECT_EQ(proxy.requests(), Names{request});
  }
  proxy.clear();
  for (const std::string pages : {"/s.json?bbox=20,46,30,48", "/s.json?bbox=1,2,3", "/s.json?bbox=a,b,c,d",
                                  "/s.json?intersects=%7B%7D", "/s.json?bbox=0,0,0,5,5,5"}) {
    const auto read = readStacItemsWithin(transport_, paged(proxy, pages), {8, 46, 10, 48});
    ASSERT_TRUE(std::holds_alternative<StacItems>(read)) << pages;
    EXPECT_TRUE(std::get<StacItems>(read).items.empty()) << pages;
  }
  EXPECT_EQ(proxy.requests(), Names{}) << "where areas do not meet, or nobody can tell";
}

/// Two services below one catalogue; the first alone has a search.
class NestedLandingPages : public platform::TemporaryFolder {
 protected:
  NestedLandingPages() {
    const auto link = [](const std::string& relation, const std::string& to) {
      return R"({"rel":")" + relation + R"(","href":")" + to + R"("})";
    };
    const auto catalogue = [](const std::string& id, const std::string& links) {
      return R"({"type":"Catalog","stac_version":"1.0.0","id":")" + id + R"(","description":"","links":[)" +
             links + "]}";
    };
    write("catalog.json", catalogue("all", link("child", "one.json") + "," + link("child", "two.json")));
    write("one.json", catalogue("one", link("data", "first.json") + "," + link("search", "search")));
    write("two.json", catalogue("two", link("data", "second.json")));
    for (const std::string id : {"first", "second"}) {
      write(id + ".json", R"({"collections":[{"type":"Collection","stac_version":"1.0.0","id":")" + id +
                              R"(","description":"","license":"x","extent":{},"links":[]}],"links":[]})");
    }
  }
};

TEST_F(NestedLandingPages, AreAskedForTheirOwnCollectionsAlone) {
  const FaultProxy server{std::filesystem::path(folder_)};
  Transport transport{quickSettings()};
  const auto read = readStacTree(transport, server.address("/catalog.json"), {}, {});
  const auto* const tree = std::get_if<StacTree>(&read);
  ASSERT_NE(tree, nullptr) << std::get<StacProblem>(read).text;
  ASSERT_EQ(tree->services.size(), 2U);
  for (const StacService& service : tree->services) {
    const bool isFirst = service.about.id == "first";
    EXPECT_EQ(service.pages, isFirst ? server.address("/search?collections=first") : "") << service.about.id;
  }
}

}  // namespace
}  // namespace vlclientui::client::stac
