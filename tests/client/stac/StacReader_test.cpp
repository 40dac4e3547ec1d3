#include "client/stac/StacReader.h"

#include <gtest/gtest.h>

namespace vlclientui::client::stac {
namespace {

StacDocument readGood(const std::string& text) {
  StacReader reader;
  auto read = reader.read(text);
  const auto* problem = std::get_if<StacProblem>(&read);
  EXPECT_EQ(problem, nullptr) << problem->text;
  return problem == nullptr ? std::get<StacDocument>(read) : StacDocument();
}

std::string problemOf(const std::string& text) {
  StacReader reader;
  const auto read = reader.read(text);
  const auto* problem = std::get_if<StacProblem>(&read);
  return problem == nullptr ? "(none)" : problem->text;
}

std::string item(const std::string& members) {
  return R"({"type":"Feature","stac_version":"1.0.0","id":"a",)" + members + "}";
}

StacItem readItem(const std::string& members) {
  const StacDocument document = readGood(item(members));
  EXPECT_EQ(document.items.size(), 1U);
  return document.items.empty() ? StacItem() : document.items.front();
}

using Attributes = std::vector<std::pair<std::string, std::string>>;

TEST(StacReader, ReadsACatalogueAndItsLinks) {
  const StacDocument catalogue = readGood(R"({"type":"Catalog","stac_version":"1.1.0","id":"root","title":"T",
      "description":"D","links":[{"rel":"child","href":"./a/catalog.json"},{"rel":"about","href":"x.html"},
      {"rel":"child","href":7},{"rel":"search","href":"/search","method":"POST"}]})");
  EXPECT_EQ(catalogue.kind, StacKind::Catalogue);
  EXPECT_EQ(catalogue.id, "root");
  EXPECT_EQ(catalogue.title, "T");
  ASSERT_EQ(catalogue.links.size(), 2U) << "pages for people and what is no text are no links";
  EXPECT_EQ(catalogue.links[0].address, "./a/catalog.json");
  EXPECT_TRUE(catalogue.links[1].isPosted);
}

TEST(StacReader, ReadsACollectionWithPlaceAndDates) {
  const StacDocument collection =
      readGood(R"({"type":"Collection","stac_version":"1.0.0","id":"c","title":"Ortho",
      "keywords":["a",3,"b"],"license":"CC0-1.0","extent":{"spatial":{"bbox":[[7,46,8,47],[7.5,46,8,46.5]]},
      "temporal":{"interval":[["2019-06-21T00:00:00Z",null]]}},"summaries":{"platform":["P1","P2"],
      "proj:epsg":[32632]},"item_assets":{"red":{"type":"image/tiff","roles":["data"],
      "raster:bands":[{"data_type":"uint16","unit":"1"}]}}})");
  EXPECT_EQ(collection.kind, StacKind::Collection);
  EXPECT_EQ(collection.keywords, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(collection.extent, (Bounds{7, 46, 8, 47}));
  ASSERT_TRUE(collection.interval);
  EXPECT_EQ(collection.interval->from, "2019-06-21T00:00:00Z");
  EXPECT_EQ(collection.interval->to, "");
  EXPECT_EQ(collection.sources, (std::vector<std::string>{"P1", "P2"}));
  EXPECT_EQ(collection.system, "EPSG:32632");
  ASSERT_EQ(collection.itemAssets.size(), 1U);
  ASSERT_EQ(collection.itemAssets[0].kind->bands.size(), 1U);
  EXPECT_EQ(collection.itemAssets[0].kind->bands[0].dataType, "uint16");
}

TEST(StacReader, ReadsAnItemWithItsDateFirstAndScalarsAsTheyAre) {
  const StacItem read =
      readItem(R"("bbox":[8,46,8.5,46.5],"collection":"c","properties":{"eo:cloud_cover":12.5,
      "datetime":"2021-07-14T10:00:00Z","count":3,"good":true,"none":null,"list":[1,{}],"instruments":["a","b"],
      "deep":{"x":1},"a;b=c":"d"},"assets":{})");
  EXPECT_EQ(read.attributes, (Attributes{{"datetime", "2021-07-14T10:00:00Z"},
                                         {"eo:cloud_cover", "12.5"},
                                         {"count", "3"},
                                         {"good", "true"},
                                         {"instruments", "a, b"},
                                         {"a_b_c", "d"}}));
  EXPECT_EQ(read.raster.geographic, (Bounds{8, 46, 8.5, 46.5}));
  EXPECT_EQ(read.collection, "c");
}

TEST(StacReader, TakesTheBeginningOfASpanAsItsDate) {
  const StacItem read = readItem(R"("properties":{"datetime":null,"end_datetime":"2021-02-01T00:00:00Z",
      "start_datetime":"2021-01-01T00:00:00Z"})");
  ASSERT_FALSE(read.attributes.empty());
  EXPECT_EQ(read.attributes.front(),
            (std::pair<std::string, std::string>{"datetime", "2021-01-01T00:00:00Z"}));
}

TEST(StacReader, ReadsThePlaceOfPixelsOfItemsAndAssets) {
  const StacItem read = readItem(R"("properties":{"proj:epsg":32632,"proj:shape":[60,80],
      "proj:transform":[10,0,500000,0,-10,5150000]},
      "assets":{"visual":{"href":"v.tif","type":"image/tiff","proj:code":"EPSG:3035","proj:shape":[6,8]}})");
  EXPECT_EQ(read.raster.system, "EPSG:32632");
  EXPECT_EQ(read.raster.columns, 80);
  EXPECT_EQ(read.raster.rows, 60);
  ASSERT_TRUE(read.raster.transform);
  EXPECT_EQ(*read.raster.transform, (GeoTransform{500000, 10, 0, 5150000, 0, -10}));
  ASSERT_EQ(read.assets.size(), 1U);
  EXPECT_EQ(read.assets[0].raster->system, "EPSG:3035");
  EXPECT_EQ(read.assets[0].raster->rows, 6);
}

TEST(StacReader, TakesTheBoxFromTheShapeWhereNoneIsTold) {
  const StacItem read = readItem(
      R"("properties":{},"geometry":{"type":"MultiPolygon","coordinates":[[[[8,46],[9,46.5],[8.5,47],[8,46]]]]})");
  EXPECT_EQ(read.raster.geographic, (Bounds{8, 46, 9, 47}));
}

TEST(StacReader, TakesNothingFromPlacesThatAreNull) {
  const StacItem read = readItem(R"("geometry":null,"bbox":null,"properties":{"datetime":null,
      "start_datetime":"2021-02-01T00:00:00Z","proj:epsg":null,"proj:projjson":{"type":"GeographicCRS"},
      "proj:shape":null,"proj:transform":null},"assets":{"a":{"href":"./a.tif","type":"image/tiff",
      "proj:epsg":null,"proj:bbox":[0,1,2,3]}},"links":null)");
  EXPECT_FALSE(read.raster.geographic);
  EXPECT_EQ(read.raster.system, "");
  EXPECT_FALSE(read.raster.transform);
  EXPECT_EQ(read.attributes,
            (Attributes{{"datetime", "2021-02-01T00:00:00Z"}, {"start_datetime", "2021-02-01T00:00:00Z"}}));
  ASSERT_EQ(read.assets.size(), 1U);
  EXPECT_EQ(read.assets[0].raster->envelope, (Bounds{0, 1, 2, 3}));
  EXPECT_EQ(read.assets[0].raster->system, "");
}

TEST(StacReader, LetsABoxAcrossTheAntimeridianGoAllAround) {
  EXPECT_EQ(readItem(R"("bbox":[179,-10,-179,10])").raster.geographic, (Bounds{-180, -10, 180, 10}));
  EXPECT_EQ(readItem(R"("bbox":[1,2,0,3,4,9])").raster.geographic, (Bounds{1, 2, 3, 4})) << "with heights";
}

TEST(StacReader, ReadsPagesOfItemsAndHowManyThereAre) {
  const StacDocument page = readGood(R"({"type":"FeatureCollection","numberMatched":12,"features":[
      {"type":"Feature","id":"a"},{"type":"Feature"},7,{"type":"Feature","id":4}],
      "links":[{"rel":"next","href":"?p=2","method":"POST","merge":true,"body":{"token":"x"}}]})");
  EXPECT_EQ(page.kind, StacKind::Items);
  ASSERT_EQ(page.items.size(), 2U);
  EXPECT_EQ(page.items[1].id, "4");
  EXPECT_EQ(page.dropped, 2U);
  EXPECT_EQ(page.matched, 12U);
  ASSERT_NE(page.link("next"), nullptr);
  EXPECT_EQ(page.link("next")->body, R"({"token":"x"})");
  EXPECT_TRUE(page.link("next")->mergesBody);
}

TEST(StacReader, TakesNoMemoryForWhatIsNoItem) {
  constexpr std::size_t count = 500000;
  std::string numbers = "0";
  for (std::size_t i = 1; i < count; ++i) numbers += ",0";
  const StacDocument page = readGood(R"({"type":"FeatureCollection","features":[)" + numbers + "]}");
  EXPECT_EQ(page.dropped, count);
  EXPECT_LE(page.items.capacity(), 1000U);
}

TEST(StacReader, ReadsPagesOfCollections) {
  const StacDocument page = readGood(R"({"collections":[{"id":"a","type":"Collection"},{},3,{"id":"b"}]})");
  EXPECT_EQ(page.kind, StacKind::Collections);
  ASSERT_EQ(page.children.size(), 2U);
  EXPECT_EQ(page.children[1].kind, StacKind::Collection);
}

TEST(StacReader, TellsACatalogueThatDoesNotSayWhatItIs) {
  EXPECT_EQ(readGood(R"({"stac_version":"0.9.0","id":"a","links":[]})").kind, StacKind::Catalogue);
  EXPECT_EQ(readGood(R"({"stac_version":"0.9.0","id":"a","extent":{},"links":[]})").kind,
            StacKind::Collection);
}

TEST(StacReader, KeepsOnlyAssetsWithPixels) {
  const StacItem read = readItem(R"("assets":{"thumbnail":{"href":"t.tif","type":"image/tiff"},
      "preview":{"href":"p.jpg","type":"image/jpeg"},"small":{"href":"s.tif","roles":["overview"]},
      "meta":{"href":"m.xml","type":"application/xml"},"B04":{"href":"b.jp2","type":"image/jp2"},
      "photo":{"href":"f.png","type":"image/png","roles":["data"]},"bare":{"href":"x.tif?k=1"},
      "words":{"href":"x.txt"},"nowhere":{"type":"image/tiff"},"none":3})");
  std::vector<std::string> keys;
  for (const StacAsset& asset : read.assets) keys.push_back(asset.key());
  EXPECT_EQ(keys, (std::vector<std::string>{"B04", "photo", "bare"}));
}

TEST(StacReader, HoldsWhatTheFilesOfManyItemsHaveInCommonOnce) {
  const auto page = [](const std::string& id, const std::string& type) {
    return R"({"type":"FeatureCollection","features":[{"type":"Feature","id":")" + id +
           R"(","assets":{"B04":{"href":"b.tif","type":")" + type + R"(","roles":["data"]}}}]})";
  };
  StacReader reader;
  const auto kindOf = [&](const std::string& id, const std::string& type) {
    const auto read = reader.read(page(id, type));
    return std::get<StacDocument>(read).items.at(0).assets.at(0).kind;
  };
  const auto first = kindOf("1", "image/tiff");
  EXPECT_EQ(kindOf("2", "image/tiff"), first);
  const auto other = kindOf("3", "image/jp2");
  EXPECT_NE(other, first);
  EXPECT_EQ(other->type, "image/jp2");
  EXPECT_EQ(kindOf("4", "image/jp2"), other);
  EXPECT_EQ(first->roles, std::vector<std::string>{"data"});
}

TEST(StacReader, StaysBoundedWhereEveryFileIsOfAKindOfItsOwn) {
  StacReader reader;
  for (int i = 0; i < 20; ++i) {
    const std::string type = "image/tiff; version=" + std::to_string(i);
    const auto read = reader.read(R"({"type":"Feature","id":"a","assets":{"k":{"href":"b.tif","type":")" +
                                  type + R"("}}})");
    EXPECT_EQ(std::get<StacDocument>(read).items.at(0).assets.at(0).kind->type, type);
  }
}

TEST(StacReader, CountsMembersOfWrongTypesAsMissing) {
  const StacDocument document = readGood(R"({"type":"Collection","id":7,"title":[1],"keywords":"x",
      "extent":{"spatial":{"bbox":[["a",1,2,3]]},"temporal":{"interval":[[1,2,3]]}},"summaries":[],"links":{}})");
  EXPECT_EQ(document.id, "");
  EXPECT_EQ(document.title, "");
  EXPECT_FALSE(document.extent);
  EXPECT_FALSE(document.interval);
  const StacItem read =
      readItem(R"("bbox":"x","geometry":{"coordinates":[[[1e300,2],[3,[4]]]]},"properties":[],
      "assets":[])");
  EXPECT_FALSE(read.raster.geographic);
}

TEST(StacReader, LeavesOutPlacesThatAreNone) {
  const StacItem read = readItem(R"("properties":{"proj:shape":[0,-5],"proj:epsg":1e300,
      "proj:transform":[0,0,0,0,0,0],"proj:bbox":[5,5,1,1]},"bbox":[1,50,2,10])");
  EXPECT_FALSE(read.raster.isExact());
  EXPECT_FALSE(read.raster.transform);
  EXPECT_FALSE(read.raster.envelope);
  EXPECT_EQ(read.raster.system, "");
  EXPECT_FALSE(read.raster.geographic);
}

TEST(StacReader, TellsInWordsWhatCannotBeUsed) {
  EXPECT_EQ(problemOf(""), "it is empty");
  EXPECT_EQ(problemOf("<html>"), "it is no JSON document");
  EXPECT_EQ(problemOf("{\"type\":\"Catalog\",\"id\":\"a"), "it is damaged or cut off");
  EXPECT_EQ(problemOf(R"({"a":1})"), "it is no document of a catalogue");
  EXPECT_EQ(problemOf("[1]"), "it is no document of a catalogue");
  EXPECT_EQ(problemOf(R"({"type":"Feature","properties":{}})"), "the item has no id");
  EXPECT_EQ(problemOf(R"({"type":"Catalog","a":99999999999999999999999999})"),
            "it holds a number that is none, or too large");
  EXPECT_EQ(problemOf(std::string(100, '[') + std::string(100, ']')), "it nests too deeply");
  EXPECT_EQ(problemOf("{\"type\":\"Catalog\",\"id\":\"\xFF\"}"), "its text is no UTF-8");
}

TEST(StacReader, ReadsOneDocumentAfterAnother) {
  StacReader reader;
  for (const char* const id : {"a", "b", "c"}) {
    const auto read = reader.read(R"({"type":"Catalog","id":")" + std::string(id) + "\"}");
    ASSERT_TRUE(std::holds_alternative<StacDocument>(read));
    EXPECT_EQ(std::get<StacDocument>(read).id, id);
    EXPECT_TRUE(std::holds_alternative<StacProblem>(reader.read(std::string(100, '['))));
  }
}

}  // namespace
}  // namespace vlclientui::client::stac
