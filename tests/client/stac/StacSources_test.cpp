// Items as sources of a mosaic: their order, their names, what is told of them, and what is left out.
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"
#include "client/stac/StacMosaic.h"

namespace vlclientui::client::stac {
namespace {

using Names = std::vector<std::string>;

StacAsset asset(const std::string& key, const std::string& address = {}) {
  return assetOfKind({key, "image/tiff"}, address.empty() ? key + ".tif" : address);
}

StacFound found(const std::string& id, const std::string& date, const std::vector<StacAsset>& assets) {
  static const auto base = std::make_shared<const std::string>("https://h/c/items.json");
  StacItem item;
  item.id = id;
  item.assets = assets;
  if (!date.empty()) item.attributes = {{"datetime", date}};
  return {item, base};
}

struct Made {
  std::vector<MosaicSource> sources;
  std::vector<LeftOut> problems;
};

Made madeOf(const std::vector<StacFound>& items, const std::string& chosen = {}) {
  Made made;
  made.sources = mosaicSources(items, chosen, made.problems);
  return made;
}

Names namesIn(const Made& made) {
  Names names;
  for (const MosaicSource& source : made.sources) names.push_back(source.name);
  return names;
}

Names filesIn(const Made& made) {
  Names files;
  for (const MosaicSource& source : made.sources) files.push_back(source.file);
  return files;
}

TEST(StacSources, LieOldestFirstAndOtherwiseInTheOrderOfTheCatalogue) {
  const auto image = std::vector{asset("a")};
  EXPECT_EQ(
      namesIn(madeOf({found("3", "2021-05-01T00:00:00Z", image), found("1", "2020-05-01T00:00:00Z", image),
                      found("4", "2021-05-01T00:00:00Z", image), found("0", "", image),
                      found("2", "2020-05-01T00:00:01Z", image)})),
      (Names{"0", "1", "2", "3", "4"}));
}

TEST(StacSources, HaveRasterIdsOfTheirOwnWithoutDots) {
  const auto image = std::vector{asset("a")};
  const Made made = madeOf({found("a.b", "", image), found("a_b", "", image), found("a_b_2", "", image),
                            found("a.b", "", image), found(".", "", image)});
  Names ids;
  for (const MosaicSource& source : made.sources) ids.push_back(source.rasterId);
  EXPECT_EQ(ids, (Names{"a_b", "a_b_2", "a_b_2_2", "a_b_3", "_"}));
}

// An id may stand for any number of items, and a numbered one may be somebody's own.
TEST(StacSources, OfOneIdAreNumbered) {
  const auto image = std::vector{asset("a")};
  std::vector<StacFound> items(3000, found("same", "", image));
  items.push_back(found("same_2", "", image));
  items.push_back(found("same", "", image));
  const std::vector<MosaicSource> sources = madeOf(items).sources;
  ASSERT_EQ(sources.size(), items.size());
  std::set<std::string> ids;
  for (const MosaicSource& source : sources) ids.insert(source.rasterId);
  EXPECT_EQ(ids.size(), items.size());
  EXPECT_EQ(sources[1].rasterId, "same_2");
  EXPECT_EQ(sources[2999].rasterId, "same_3000");
  EXPECT_EQ(sources[3000].rasterId, "same_2_2");
  EXPECT_EQ(sources[3001].rasterId, "same_3001");
}

TEST(StacSources, AreFilesOfTheWebSeenFromTheirItem) {
  const Made made =
      madeOf({found("1", "", {asset("a", "../i/a b.tif")}), found("2", "", {asset("a", "../i/a%20b.tif")}),
              found("3", "", {asset("a", "http://other:81/x.tif")})});
  EXPECT_EQ(filesIn(made), (Names{"/vsivlrange/https/h/i/a b.tif", "/vsivlrange/http/other%3A81/x.tif"}));
  ASSERT_EQ(made.problems.size(), 1U);
  EXPECT_EQ(made.problems[0], (LeftOut{"1", "\"../i/a b.tif\" is no http or https address"}));
}

TEST(StacSources, ShowTheSameImageWhereverItIsThere) {
  const StacAsset visual = assetOfKind({"own", "image/tiff", {"visual"}}, "own.tif");
  const Made made = madeOf({found("1", "", {asset("a"), asset("b")}), found("2", "", {visual, asset("a")}),
                            found("3", "", {asset("c")})});
  EXPECT_EQ(filesIn(made), (Names{"/vsivlrange/https/h/c/a.tif", "/vsivlrange/https/h/c/a.tif",
                                  "/vsivlrange/https/h/c/c.tif"}));
}

TEST(StacSources, WithoutAnImageOrWithoutTheChosenOneAreToldById) {
  const std::vector<StacFound> items = {found("1", "", {asset("a")}), found("2", "", {})};
  EXPECT_EQ(madeOf(items).problems, (std::vector<LeftOut>{{"2", "it has no image"}}));
  EXPECT_EQ(madeOf(items, "b").problems,
            (std::vector<LeftOut>{{"1", "it has no image \"b\""}, {"2", "it has no image \"b\""}}));
  EXPECT_EQ(namesIn(madeOf(items, "a")), Names{"1"});
}

TEST(StacSources, TellOfAnImageFirstWhatItTellsItself) {
  StacFound item = found("1", "", {asset("a"), asset("b")});
  item.item.raster.geographic = Bounds{1, 2, 3, 4};
  item.item.raster.system = "EPSG:32632";
  item.item.raster.columns = 10;
  item.item.raster.rows = 20;
  item.item.raster.transform = GeoTransform{0, 1, 0, 0, 0, -1};
  ToldRaster own;
  own.system = "EPSG:3035";
  own.columns = 30;
  own.rows = 40;
  own.envelope = Bounds{5, 6, 7, 8};
  item.item.assets[1].raster = std::make_shared<const ToldRaster>(own);
  const ToldRaster shared = madeOf({item}, "a").sources.at(0).told.value();
  EXPECT_EQ(shared.system, "EPSG:32632");
  EXPECT_EQ(shared.columns, 10);
  EXPECT_FALSE(shared.envelope);
  const ToldRaster told = madeOf({item}, "b").sources.at(0).told.value();
  EXPECT_EQ(told.geographic, (Bounds{1, 2, 3, 4}));
  EXPECT_EQ(told.system, "EPSG:3035");
  EXPECT_EQ(told.columns, 30);
  EXPECT_EQ(told.rows, 40);
  EXPECT_EQ(told.envelope, (Bounds{5, 6, 7, 8}));
  EXPECT_TRUE(told.transform) << "that of its item";
}

TEST(StacChoices, AreImagesOfHalfTheItemsAtLeast) {
  EXPECT_EQ(assetNames({found("1", "", {asset("a"), asset("b"), asset("c")}),
                        found("2", "", {asset("b"), asset("a")}), found("3", "", {asset("a")}),
                        found("4", "", {asset("a")})}),
            (Names{"a", "b"}));
  EXPECT_EQ(assetNames({}), Names{});
  EXPECT_EQ(assetNames({found("1", "", {})}), Names{});
}

TEST(StacChoices, AreNoneWhereTheUsualImageCannotBeNamed) {
  EXPECT_EQ(assetNames({found("1", "", {asset("a;b"), asset("c")})}), Names{});
  EXPECT_EQ(assetNames({found("1", "", {asset("c"), asset("a=b")})}), Names{"c"});
}

TEST(StacChoices, HaveABound) {
  std::vector<StacAsset> assets;
  for (int i = 0; i < 80; ++i) assets.push_back(asset("a" + std::to_string(i)));
  const Names names = assetNames({found("1", "", assets)});
  ASSERT_EQ(names.size(), 50U);
  EXPECT_EQ(names.front(), "a0");
  EXPECT_EQ(names.back(), "a49");
}

}  // namespace
}  // namespace vlclientui::client::stac
