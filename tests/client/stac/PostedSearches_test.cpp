// Services that take searches by POST alone, and tell items by searches alone.
#include <algorithm>

#include <gtest/gtest.h>

#include "client/stac/SearchQuestion.h"
#include "client/stac/StacFixture.h"
#include "client/stac/StacItems.h"

namespace vlclientui::client::stac {
namespace {

TEST(SearchQuestions, AreDocumentsOfTheirParameters) {
  const SearchQuestion question = searchQuestion(
      "http://h/"
      "search?collections=a%2Cb&bbox=8%2C46%2C9.5%2C-47&limit=100&datetime=2020%2F..&x=%22y%22&ids=7");
  EXPECT_EQ(question.address, "http://h/search");
  EXPECT_EQ(
      question.body,
      R"({"collections":["a","b"],"bbox":[8,46,9.5,-47],"limit":100,"datetime":"2020/..","x":"\"y\"","ids":["7"]})");
  EXPECT_EQ(searchQuestion("http://h/search?intersects=%7B%22a%22%3A1%7D").body, R"({"intersects":{"a":1}})");
  EXPECT_EQ(searchQuestion("http://h/search").body, "{}");
}

TEST(SearchQuestions, AreAskedOfSearchesAlone) {
  EXPECT_TRUE(isSearchAddress("http://h/stac/search?limit=1"));
  EXPECT_FALSE(isSearchAddress("http://h/collections/a/items?search=1"));
  EXPECT_FALSE(isSearchAddress("search"));
}

class PostedSearches : public testing::Test {
 protected:
  [[nodiscard]] StacService serviceOf(const StacApi& api, const std::string& id) {
    auto tree = readStacTree(transport_, api.address() + "/");
    auto* found = std::get_if<StacTree>(&tree);
    EXPECT_NE(found, nullptr);
    if (found == nullptr) return {};
    const auto service =
        std::ranges::find(found->services, id, [](const StacService& each) { return each.about.id; });
    EXPECT_NE(service, found->services.end());
    return service == found->services.end() ? StacService() : *service;
  }
  static std::size_t countOf(OrStacProblem<StacItems>&& read) {
    const auto* problem = std::get_if<StacProblem>(&read);
    EXPECT_EQ(problem, nullptr) << problem->text;
    return problem == nullptr ? std::get<StacItems>(read).items.size() : 0;
  }

  Transport transport_{quickSettings()};
};

TEST_F(PostedSearches, TellTheItemsOfCollectionsThatListNone) {
  for (const std::string option : {"--postonly", "--searchonly"}) {
    const StacApi api({option, "--page=5", "--posted"});
    const StacService service = serviceOf(api, "Ortho_Mosaic");
    EXPECT_EQ(countOf(readStacItems(transport_, service)), 12U) << option;
    EXPECT_EQ(countOf(readStacItemsWithin(transport_, service, {20, 20, 21, 21})), 0U) << option;
    EXPECT_EQ(countOf(readStacItemsWithin(transport_, service, {8, 46, 9, 47})), 12U) << option;
  }
}

TEST_F(PostedSearches, AreAskedAgainWithoutAWishWhereLongPagesAreRefused) {
  const StacApi api({"--postonly", "--page=5", "--posted", "--strict"});
  EXPECT_EQ(countOf(readStacItems(transport_, serviceOf(api, "Ortho_Mosaic"))), 12U);
}

TEST_F(PostedSearches, AreServersWhenAPersonTypesTheirAddress) {
  const StacApi api({"--postonly", "--page=5", "--posted"});
  NetworkAccess access(quickSettings());
  StacServers servers(access);
  const std::string server = api.address() + "/search?collections=Ortho_Mosaic";
  const auto content = servers.list(server);
  ASSERT_TRUE(content);
  EXPECT_EQ(namesOf(*content), std::vector<std::string>{"Ortho_Mosaic"});
  const auto found = servers.find(server + "/Ortho_Mosaic");
  ASSERT_TRUE(found);
  EXPECT_TRUE(found->origin);
  const auto all = servers.list(api.address() + "/search");
  ASSERT_TRUE(all);
  EXPECT_EQ(all->services.size(), 2U) << "one of the items of each collection";
}

TEST_F(PostedSearches, AreNoServersWhereNobodyTakesThem) {
  const StacApi api;
  NetworkAccess access(quickSettings());
  StacServers servers(access);
  EXPECT_FALSE(servers.list(api.address() + "/nowhere/search"));
  EXPECT_EQ(std::ranges::count_if(api.requests(),
                                  [](const std::string& request) { return request.starts_with("POST"); }),
            0);
}

}  // namespace
}  // namespace vlclientui::client::stac
