// Items by pages and by documents, within limits.
#include "client/stac/StacItems.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"
#include "client/stac/StacMosaic.h"
#include "platform/TemporaryFolder.h"

namespace vlclientui::client::stac {
namespace {

using Names = std::vector<std::string>;
using vlclientui::test::StaticServer;

StacService serviceAt(Transport& transport, const std::string& address) {
  auto tree = readStacTree(transport, address);
  auto* found = std::get_if<StacTree>(&tree);
  if (found == nullptr || found->services.empty()) return {};
  return std::move(found->services.front());
}

StacItems good(OrStacProblem<StacItems>&& read) {
  const auto* problem = std::get_if<StacProblem>(&read);
  EXPECT_EQ(problem, nullptr) << problem->text;
  return problem == nullptr ? std::get<StacItems>(std::move(read)) : StacItems();
}

class ServedItems : public testing::Test {
 protected:
  [[nodiscard]] StacService orthos(const StacApi& api) {
    return serviceAt(transport_, api.address() + "/collections/Ortho_Mosaic");
  }
  [[nodiscard]] static Names allOrthos() {
    Names names;
    for (int number = 1; number <= 12; ++number) {
      names.push_back("ortho_" + std::string(number < 10 ? "0" : "") + std::to_string(number));
    }
    return names;
  }
  [[nodiscard]] static std::size_t pagesAsked(const StacApi& api) {
    const Names requests = api.requests();
    return static_cast<std::size_t>(std::ranges::count_if(requests, [](const std::string& request) {
      return request.find("/items?") != std::string::npos || request.find("/search") != std::string::npos;
    }));
  }

  Transport transport_{quickSettings()};
};

TEST_F(ServedItems, ComePageByPageInTheirOrder) {
  const StacApi api({"--page=5"});
  const StacItems items = good(readStacItems(transport_, orthos(api)));
  EXPECT_EQ(idsOf(items.items), allOrthos());
  EXPECT_TRUE(items.isWhole);
  EXPECT_EQ(pagesAsked(api), 3U);
}

TEST_F(ServedItems, ComeByPostWhereTheServerWantsThat) {
  const StacApi api({"--page=5", "--posted"});
  const StacService search =
      serviceAt(transport_, api.address() + "/search?collections=Ortho_Mosaic&bbox=8,46,9,47");
  EXPECT_EQ(idsOf(good(readStacItems(transport_, search)).items), allOrthos());
  const Names requests = api.requests();
  EXPECT_TRUE(std::ranges::any_of(requests,
                                  [](const std::string& request) {
                                    return request.find("\"bbox\": [\"8\"") != std::string::npos &&
                                           request.find("\"token\": \"10\"") != std::string::npos;
                                  }))
      << "what the next page does not tell stays: " << requests.back();
}

TEST_F(ServedItems, ComeAlsoFromAServerThatRefusesLongPages) {
  const StacApi api({"--page=5", "--strict"});
  EXPECT_EQ(idsOf(good(readStacItems(transport_, orthos(api))).items), allOrthos());
}

TEST_F(ServedItems, OfMoreThanTheLimitAreTheFirstPageAndIsTold) {
  const StacApi api({"--page=5"});
  StacLimits limits;
  limits.items = 10;
  const StacItems items = good(readStacItems(transport_, orthos(api), limits));
  EXPECT_EQ(items.items.size(), 5U);
  EXPECT_FALSE(items.isWhole);
  ASSERT_EQ(items.problems.size(), 1U);
  EXPECT_EQ(items.problems[0].reason, "there are more items than are used at a time; these are the first 5");
}

TEST_F(ServedItems, OfAnAreaAreAskedForByItsBox) {
  const StacApi api({"--page=5"});
  const StacService service = orthos(api);
  const StacItems all = good(readStacItems(transport_, service));
  const Bounds corner = *all.items.front().item.raster.geographic;
  const double x = corner.xMin + (corner.xMax - corner.xMin) / 10;
  const double y = corner.yMax - (corner.yMax - corner.yMin) / 10;
  const StacItems some = good(readStacItemsWithin(transport_, service, {x - 1e-4, y - 1e-4, x, y}));
  EXPECT_LT(some.items.size(), all.items.size());
  EXPECT_GT(some.items.size(), 0U);
  EXPECT_NE(api.requests().back().find("bbox="), std::string::npos);
}

TEST_F(ServedItems, OfAnAreaStayWithinTheBoxOfTheirSearch) {
  const StacApi api;
  const StacService search =
      serviceAt(transport_, api.address() + "/search?collections=Ortho_Mosaic&bbox=8,46,9,47");
  const auto before = api.requests().size();
  EXPECT_TRUE(good(readStacItemsWithin(transport_, search, {20, 20, 21, 21})).items.empty());
  EXPECT_EQ(api.requests().size(), before) << "nothing is asked where both do not meet";
  EXPECT_EQ(good(readStacItemsWithin(transport_, search, {0, 0, 50, 50})).items.size(), 12U);
  EXPECT_NE(api.requests()[before].find("bbox=8%2C46%2C9%2C47"), std::string::npos) << api.requests()[before];
}

TEST_F(ServedItems, AreLearntWhereAMosaicHoldsOnlySomeOfThem) {
  const StacApi api({"--page=3"});
  StacLimits limits;
  limits.items = 8;
  const StacService service = orthos(api);
  StacMosaic mosaic(transport_, service, limits);
  auto first = mosaic.definition({});
  ASSERT_TRUE(std::holds_alternative<MosaicDefinition>(first));
  EXPECT_EQ(std::get<MosaicDefinition>(first).sources.size(), 3U);
  const StacItems all = good(readStacItems(transport_, service));
  const Bounds place = *all.items.back().item.raster.geographic;
  const double x = (place.xMin + place.xMax) / 2;
  const double y = (place.yMin + place.yMax) / 2;
  EXPECT_TRUE(mosaic.learn({x, y, x + 1e-6, y + 1e-6}));
  const auto requests = api.requests().size();
  EXPECT_FALSE(mosaic.learn({x, y, x + 1e-6, y + 1e-6})) << "nothing new";
  EXPECT_EQ(api.requests().size(), requests) << "nor is it asked for again";
  const auto sources = std::get<MosaicDefinition>(mosaic.definition({})).sources;
  EXPECT_GT(sources.size(), 3U);
  EXPECT_TRUE(
      std::ranges::any_of(sources, [](const MosaicSource& source) { return source.name == "ortho_12"; }));
}

class LinkedItems : public platform::TemporaryFolder {
 protected:
  [[nodiscard]] static std::string itemText(const std::string& id, const std::string& date = {}) {
    return R"({"type":"Feature","id":")" + id + R"(","bbox":[8,46,8.1,46.1],"properties":{"datetime":")" +
           date + R"("},"assets":{"visual":{"href":")" + id + R"(.tif"}}})";
  }
  void writeCollection(const Names& links) const {
    std::string all;
    for (const std::string& link : links) all += (all.empty() ? "" : ",") + link;
    write("collection.json", R"({"type":"Collection","id":"c","links":[)" + all + "]}");
  }
  [[nodiscard]] static std::string link(const std::string& relation, const std::string& address) {
    return R"({"rel":")" + relation + R"(","href":")" + address + "\"}";
  }
  [[nodiscard]] StacItems read(const StacLimits& limits = {}) {
    const StaticServer server(folder_);
    const StacService service = serviceAt(transport_, server.address() + "/collection.json");
    return good(readStacItems(transport_, service, limits));
  }

  Transport transport_{quickSettings()};
};

TEST_F(LinkedItems, AlsoStandInCataloguesBelowTheirCollection) {
  writeCollection({link("child", "2020.json"), link("item", "a.json"), link("child", "collection.json")});
  write("2020.json", R"({"type":"Catalog","id":"2020","links":[)" + link("item", "b.json") + "," +
                         link("child", "2020.json") + "]}");
  write("a.json", itemText("a"));
  write("b.json", itemText("b"));
  EXPECT_EQ(idsOf(read().items), (Names{"a", "b"}));
}

TEST_F(LinkedItems, ThatCannotBeReadAreLeftOutAndTold) {
  writeCollection({link("item", "a.json"), link("item", "gone.json"), link("item", "cut.json"),
                   link("item", "collection2.json"), link("item", "s3://bucket/i.json")});
  write("a.json", itemText("a"));
  write("cut.json", "{\"type\":\"Feature\"");
  write("collection2.json", R"({"type":"Collection","id":"x"})");
  const StacItems items = read();
  EXPECT_EQ(idsOf(items.items), Names{"a"});
  ASSERT_EQ(items.problems.size(), 4U);
  Names reasons;
  for (const LeftOut& problem : items.problems) reasons.push_back(problem.reason);
  std::ranges::sort(reasons);
  EXPECT_EQ(reasons, (Names{"\"s3://bucket/i.json\" is no http or https address", "it is damaged or cut off",
                            "it is no item", "the server answers with status 404"}));
}

TEST_F(LinkedItems, AreNoMoreThanTheLimit) {
  writeCollection({link("item", "a.json"), link("item", "b.json"), link("item", "c.json")});
  for (const char* const id : {"a", "b", "c"}) write(std::string(id) + ".json", itemText(id));
  StacLimits limits;
  limits.items = 2;
  const StacItems items = read(limits);
  EXPECT_EQ(idsOf(items.items), (Names{"a", "b"}));
  EXPECT_EQ(items.problems.size(), 1U);
}

// The limit counts documents of all levels together, and one problem tells all that lies beyond.
TEST_F(LinkedItems, StayWithinTheLimitOfDocumentsOfAllLevels) {
  const auto below = [](int number) { return "c" + std::to_string(number) + ".json"; };
  writeCollection({link("child", below(0)), link("child", below(1)), link("item", "a.json")});
  write("a.json", itemText("a"));
  for (int number = 0; number < 2; ++number) {
    std::string links = link("child", below(2 * number + 2)) + "," + link("child", below(2 * number + 3));
    write(below(number), R"({"type":"Catalog","id":"x","links":[)" + links + "]}");
  }
  for (int number = 2; number < 6; ++number) {
    const std::string id = "i" + std::to_string(number);
    write(below(number), R"({"type":"Catalog","id":"x","links":[)" + link("item", id + ".json") + "]}");
    write(id + ".json", itemText(id));
  }
  StacLimits limits;
  limits.documents = 4;
  const StacItems items = read(limits);
  EXPECT_EQ(idsOf(items.items), (Names{"a", "i2", "i3"}));
  ASSERT_EQ(items.problems.size(), 1U);
  EXPECT_EQ(items.problems[0].reason, "the catalogue has too many documents");
}

TEST_F(LinkedItems, LieInTheOrderOfTheirDates) {
  std::vector<StacFound> items;
  const auto base = std::make_shared<const std::string>("http://h/c.json");
  for (const auto& [id, date] :
       {std::pair("new", "2021-01-01T00:00:00Z"), std::pair("old", "2019-01-01T00:00:00Z"),
        std::pair("also.new", "2021-01-01T00:00:00Z"), std::pair("none", "")}) {
    StacReader reader;
    auto document = reader.read(itemText(id, date));
    items.push_back({std::get<StacDocument>(document).items.front(), base});
  }
  std::vector<LeftOut> problems;
  const auto sources = mosaicSources(items, {}, problems);
  Names names;
  Names rasterIds;
  for (const MosaicSource& source : sources) {
    names.push_back(source.name);
    rasterIds.push_back(source.rasterId);
  }
  EXPECT_EQ(names, (Names{"none", "old", "new", "also.new"}));
  EXPECT_EQ(rasterIds, (Names{"none", "old", "new", "also_new"})) << "a lock ends at the first dot";
  EXPECT_TRUE(problems.empty());
}

TEST(StacMosaic, OffersTheImagesThatMostItemsHave) {
  const auto base = std::make_shared<const std::string>("http://h/c.json");
  const StacAsset visual = assetOfKind({"visual", "image/tiff"}, "v.tif");
  const StacAsset red = assetOfKind({"red", "image/tiff"}, "v.tif");
  const StacAsset rare = assetOfKind({"rare", "image/tiff"}, "v.tif");
  std::vector<StacFound> items(3, StacFound{{}, base});
  items[0].item = {"a", "", {}, {}, {red, visual, rare}, {}};
  items[1].item = {"b", "", {}, {}, {red, visual}, {}};
  items[2].item = {"c", "", {}, {}, {visual}, {}};
  EXPECT_EQ(assetNames(items), (Names{"visual", "red"}));
  std::vector<LeftOut> problems;
  EXPECT_EQ(mosaicSources(items, "red", problems).size(), 2U);
  ASSERT_EQ(problems.size(), 1U);
  EXPECT_EQ(problems[0], (LeftOut{"c", "it has no image \"red\""}));
}

}  // namespace
}  // namespace vlclientui::client::stac
