// Parts of documents one by one, as they should be and as they should not.
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacReader.h"

namespace vlclientui::client::stac {
namespace {

using Names = std::vector<std::string>;
using Attributes = std::vector<std::pair<std::string, std::string>>;

StacDocument documentOf(const std::string& text) {
  StacReader reader;
  auto read = reader.read(text);
  const auto* problem = std::get_if<StacProblem>(&read);
  EXPECT_EQ(problem, nullptr) << text << ": " << problem->text;
  return problem == nullptr ? std::get<StacDocument>(std::move(read)) : StacDocument();
}

StacDocument collectionOf(const std::string& members) {
  return documentOf(R"({"type":"Collection","id":"c",)" + members + "}");
}

StacItem itemWith(const std::string& members) {
  const StacDocument document = documentOf(R"({"type":"Feature","id":"i",)" + members + "}");
  return document.items.empty() ? StacItem() : document.items.front();
}

struct Box {
  std::string label;
  std::string members;
  std::optional<Bounds> box;
};

void PrintTo(const Box& box, std::ostream* out) { *out << box.members; }

class FootprintBox : public testing::TestWithParam<Box> {};

TEST_P(FootprintBox, IsInDegreesOrNone) {
  EXPECT_EQ(itemWith(GetParam().members).raster.geographic, GetParam().box);
}

constexpr auto none = std::nullopt;
const Bounds allAround{-180, -10, 180, 10};

INSTANTIATE_TEST_SUITE_P(
    Each, FootprintBox,
    testing::Values(
        Box{"Plain", R"("bbox":[8,46,9,47])", Bounds{8, 46, 9, 47}},
        Box{"WithHeights", R"("bbox":[8,46,-100,9,47,4000])", Bounds{8, 46, 9, 47}},
        Box{"OfAPoint", R"("bbox":[8,46,8,46])", Bounds{8, 46, 8, 46}},
        Box{"WholeWorld", R"("bbox":[-180,-90,180,90])", Bounds{-180, -90, 180, 90}},
        Box{"AcrossTheDateLine", R"("bbox":[170,-10,-170,10])", allAround},
        Box{"AcrossTheDateLineWithHeights", R"("bbox":[170,-10,0,-170,10,5])", allAround},
        Box{"BehindTheDateLine", R"("bbox":[170,-10,190,10])", allAround},
        Box{"BeforeTheDateLine", R"("bbox":[-190,-10,-170,10])", allAround},
        Box{"BehindThePoles", R"("bbox":[0,-100,1,100])", Bounds{0, -90, 1, 90}},
        Box{"UpsideDown", R"("bbox":[8,47,9,46])", none}, Box{"OfThreeNumbers", R"("bbox":[8,46,9])", none},
        Box{"OfFiveNumbers", R"("bbox":[8,46,9,47,1])", none}, Box{"Empty", R"("bbox":[])", none},
        Box{"OfTexts", R"("bbox":["8","46","9","47"])", none},
        Box{"WithNothing", R"("bbox":[8,46,null,47])", none}, Box{"Nested", R"("bbox":[[8,46,9,47]])", none},
        Box{"Null", R"("bbox":null)", none},
        Box{"BesideAShape", R"("bbox":[8,46,9,47],"geometry":{"coordinates":[1,2]})", Bounds{8, 46, 9, 47}},
        Box{"WrongBesideAShape", R"("bbox":"x","geometry":{"coordinates":[1,2]})", Bounds{1, 2, 1, 2}},
        Box{"ShapeBeforeABox", R"("geometry":{"coordinates":[1,2]},"bbox":[8,46,9,47])",
            Bounds{8, 46, 9, 47}},
        Box{"OfAPolygon", R"("geometry":{"type":"Polygon","coordinates":[[[8,46],[9,46],[8.5,47],[8,46]]]})",
            Bounds{8, 46, 9, 47}},
        Box{"OfBothSidesOfTheDateLine",
            R"("geometry":{"coordinates":[[[[170,-10],[180,10]]],[[[-180,-10],[-170,10]]]]})", allAround},
        Box{"WithHeightsInItsShape", R"("geometry":{"coordinates":[[[8,46,500],[9,47,900]]]})",
            Bounds{8, 46, 9, 47}},
        Box{"OfMetres", R"("geometry":{"coordinates":[[[500000,5000000],[500010,5000010]]]})", none},
        Box{"OfNoPositions", R"("geometry":{"type":"Polygon","coordinates":[]})", none},
        Box{"OfSinglesOnly", R"("geometry":{"coordinates":[[8],[46]]})", none},
        Box{"OfNoShape", R"("geometry":null)", none}, Box{"OfANumber", R"("geometry":7)", none},
        Box{"OfAGroup", R"("geometry":{"type":"GeometryCollection","geometries":[]})", none}),
    [](const auto& each) { return each.param.label; });

struct System {
  std::string label;
  std::string properties;
  std::string system;
};

void PrintTo(const System& system, std::ostream* out) { *out << system.properties; }

class ItemSystem : public testing::TestWithParam<System> {};

TEST_P(ItemSystem, IsTheOneThatIsToldBest) {
  EXPECT_EQ(itemWith(R"("properties":{)" + GetParam().properties + "}").raster.system, GetParam().system);
}

INSTANTIATE_TEST_SUITE_P(
    Each, ItemSystem,
    testing::Values(System{"Code", R"("proj:code":"EPSG:3035")", "EPSG:3035"},
                    System{"Epsg", R"("proj:epsg":32632)", "EPSG:32632"},
                    System{"EpsgAsWholeDecimal", R"("proj:epsg":32632.0)", "EPSG:32632"},
                    System{"Definition", R"("proj:wkt2":"PROJCRS[]")", "PROJCRS[]"},
                    System{"CodeBeforeEpsg", R"("proj:code":"EPSG:3035","proj:epsg":32632)", "EPSG:3035"},
                    System{"CodeBehindEpsg", R"("proj:epsg":32632,"proj:code":"EPSG:3035")", "EPSG:3035"},
                    System{"EpsgBeforeDefinition", R"("proj:epsg":32632,"proj:wkt2":"X[]")", "EPSG:32632"},
                    System{"NothingAsEpsg", R"("proj:epsg":null,"proj:wkt2":"X[]")", "X[]"},
                    System{"NothingAsCodeBehindEpsg", R"("proj:epsg":32632,"proj:code":null)", "EPSG:32632"},
                    System{"NumberAsCodeBehindDefinition", R"("proj:wkt2":"X[]","proj:code":7)", "X[]"},
                    System{"NothingAsCodeBeforeEpsg", R"("proj:code":null,"proj:epsg":32632)", "EPSG:32632"},
                    System{"TextAsEpsg", R"("proj:epsg":"32632")", ""},
                    System{"BrokenEpsg", R"("proj:epsg":32632.5)", ""},
                    System{"NegativeEpsg", R"("proj:epsg":-1)", ""}, System{"NoEpsg", R"("proj:epsg":0)", ""},
                    System{"DefinitionAsObject", R"("proj:wkt2":{})", ""}, System{"Nothing", R"("a":1)", ""}),
    [](const auto& each) { return each.param.label; });

TEST(ItemPlaces, TakeTransformsOfSixOrNineNumbers) {
  const GeoTransform expected{500000, 10, 0, 5000000, 0, -10};
  for (const std::string numbers : {"10,0,500000,0,-10,5000000", "10,0,500000,0,-10,5000000,0,0,1"}) {
    const StacItem item = itemWith(R"("properties":{"proj:transform":[)" + numbers + "]}");
    ASSERT_TRUE(item.raster.transform) << numbers;
    EXPECT_EQ(*item.raster.transform, expected);
  }
  for (const std::string numbers :
       {"", "10,0,500000,0,-10", "0,0,500000,0,-10,5000000", "10,0,\"x\",0,-10,5000000", "10,10,0,10,10,0",
        "1,0,0,0,1,0,0,0,1,0,0,0,1,0,0,0,1"})
    EXPECT_FALSE(itemWith(R"("properties":{"proj:transform":[)" + numbers + "]}").raster.transform)
        << numbers;
}

TEST(ItemPlaces, TakeShapesOfWholeRowsAndColumns) {
  const StacItem good = itemWith(R"("properties":{"proj:shape":[60,80.0]})");
  EXPECT_EQ(good.raster.rows, 60);
  EXPECT_EQ(good.raster.columns, 80);
  for (const std::string shape : {"[60]", "[60,80,3]", "[60,0]", "[60.5,80]", "[-60,80]", "[60,3e9]",
                                  "[\"60\",\"80\"]", "null", "60", "{}"}) {
    const StacItem item = itemWith(R"("properties":{"proj:shape":)" + shape + "}");
    EXPECT_EQ(item.raster.rows, 0) << shape;
    EXPECT_EQ(item.raster.columns, 0) << shape;
  }
}

TEST(ItemPlaces, TakeBoxesOfTheirSystemThatSpanAnArea) {
  EXPECT_EQ(itemWith(R"("properties":{"proj:bbox":[5,10,6,20]})").raster.envelope, (Bounds{5, 10, 6, 20}));
  for (const std::string box : {"[5,10,5,20]", "[6,10,5,20]", "[5,20,6,10]", "[5,10,6]", "[]", "null"})
    EXPECT_FALSE(itemWith(R"("properties":{"proj:bbox":)" + box + "}").raster.envelope) << box;
}

TEST(ItemPlaces, AreNoAttributes) {
  const StacItem item =
      itemWith(R"("properties":{"proj:epsg":32632,"proj:shape":[1,2],"proj:bbox":[],"proj:code":7,
      "proj:transform":null,"proj:wkt2":"X[]","proj:centroid":"c","a":1})");
  EXPECT_EQ(item.attributes, (Attributes{{"proj:centroid", "c"}, {"a", "1"}}));
}

TEST(ItemAttributes, AreScalarsAsTexts) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"\"text\"", "text"},
      {"-7", "-7"},
      {"18446744073709551615", "18446744073709551615"},
      {"0.25", "0.25"},
      {"true", "true"},
      {"false", "false"},
      {"[\"a\"]", "a"},
      {"[\"a\",1,\"b\"]", "a, b"},
      {"\"\\u00e9\"", "\xC3\xA9"}};
  for (const auto& [value, text] : cases)
    EXPECT_EQ(itemWith(R"("properties":{"x":)" + value + "}").attributes, (Attributes{{"x", text}})) << value;
  for (const std::string value : {"null", "{}", "[]", "[1,2]", "\"\"", "[[\"a\"]]"})
    EXPECT_EQ(itemWith(R"("properties":{"x":)" + value + "}").attributes, Attributes{}) << value;
}

TEST(ItemAttributes, OfGreatLengthAreLeftOut) {
  const auto with = [](std::size_t name, std::size_t value) {
    return itemWith(R"("properties":{")" + std::string(name, 'n') + "\":\"" + std::string(value, 'v') +
                    "\"}");
  };
  EXPECT_EQ(with(1000, 1000).attributes.size(), 1U);
  EXPECT_TRUE(with(1001, 1).attributes.empty());
  EXPECT_TRUE(with(1, 1001).attributes.empty());
}

TEST(ItemAttributes, HaveTheDateFirst) {
  const std::vector<std::pair<std::string, Attributes>> cases = {
      {R"("a":1,"datetime":"D")", {{"datetime", "D"}, {"a", "1"}}},
      {R"("a":1,"datetime":null,"start_datetime":"S")",
       {{"datetime", "S"}, {"a", "1"}, {"start_datetime", "S"}}},
      {R"("start_datetime":"S","datetime":"D")", {{"datetime", "D"}, {"start_datetime", "S"}}},
      {R"("a":1,"end_datetime":"E")", {{"a", "1"}, {"end_datetime", "E"}}},
      {R"("a":1,"datetime":{})", {{"a", "1"}}}};
  for (const auto& [properties, expected] : cases)
    EXPECT_EQ(itemWith("\"properties\":{" + properties + "}").attributes, expected) << properties;
}

TEST(CollectionParts, OfWrongShapesAreMissing) {
  for (const std::string extent :
       {"7", "{}", R"({"spatial":7,"temporal":7})", R"({"spatial":{},"temporal":{}})",
        R"({"spatial":{"bbox":[]},"temporal":{"interval":[]}})",
        R"({"spatial":{"bbox":[8,46,9,47]},"temporal":{"interval":["a","b"]}})",
        R"({"spatial":{"bbox":[[8]]},"temporal":{"interval":[["a"]]}})"}) {
    const StacDocument collection = collectionOf("\"extent\":" + extent);
    EXPECT_FALSE(collection.extent) << extent;
    EXPECT_FALSE(collection.interval) << extent;
  }
}

TEST(CollectionParts, GoAllAroundAcrossTheDateLine) {
  EXPECT_EQ(collectionOf(R"("extent":{"spatial":{"bbox":[[170,-10,-170,10],[1,2,3,4]]}})").extent, allAround);
}

TEST(CollectionParts, NameTheirSourcesByTheFirstListThatHoldsAny) {
  const std::vector<std::pair<std::string, Names>> cases = {
      {R"("platform":["P"],"instruments":["I"])", {"P"}},
      {R"("instruments":["I"],"constellation":["C"])", {"C"}},
      {R"("platform":[],"instruments":["I","J"])", {"I", "J"}},
      {R"("platform":"P","instruments":[1,"I"])", {"I"}},
      {R"("gsd":[10])", {}}};
  for (const auto& [summaries, sources] : cases)
    EXPECT_EQ(collectionOf("\"summaries\":{" + summaries + "}").sources, sources) << summaries;
}

TEST(CollectionParts, HaveASystemWhereTheirItemsShareOne) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {R"("proj:epsg":[32632])", "EPSG:32632"},
      {R"("proj:code":["EPSG:3035"])", "EPSG:3035"},
      {R"("proj:epsg":[32632,32633])", ""},
      {R"("proj:epsg":{"minimum":1,"maximum":2})", ""},
      {R"("proj:code":["EPSG:3035"],"proj:epsg":[null])", "EPSG:3035"},
      {R"("proj:code":["EPSG:3035"],"proj:epsg":[32632])", "EPSG:3035"},
      {R"("proj:code":[null],"proj:epsg":[32632])", "EPSG:32632"}};
  for (const auto& [summaries, system] : cases)
    EXPECT_EQ(collectionOf("\"summaries\":{" + summaries + "}").system, system) << summaries;
}

TEST(DocumentLinks, AreThoseThatAreFollowed) {
  const StacDocument document = collectionOf(
      R"("links":[{"rel":"item","href":"a"},{"rel":"parent","href":"b"},{"rel":"license","href":"c"},
      {"rel":"Item","href":"d"},{"href":"e"},{"rel":"next"},{"rel":"next","href":""},null,7,["item","f"],
      {"rel":"next","href":"g","method":"GET","merge":1,"body":"text"},
      {"rel":"search","href":"h","method":"POST","merge":true,"body":{"x":[1, 2]}}])");
  ASSERT_EQ(document.links.size(), 3U);
  EXPECT_EQ(document.links[0].address, "a");
  EXPECT_FALSE(document.links[1].isPosted || document.links[1].mergesBody);
  EXPECT_EQ(document.links[1].body, "");
  EXPECT_TRUE(document.links[2].isPosted && document.links[2].mergesBody);
  EXPECT_EQ(document.links[2].body, R"({"x":[1,2]})");
  EXPECT_EQ(document.link("items"), nullptr);
}

TEST(PagesOfItems, TellHowManyThereAreInTwoWays) {
  const auto matched = [](const std::string& member) {
    return documentOf(R"({"type":"FeatureCollection","features":[],)" + member + "}").matched;
  };
  EXPECT_EQ(matched(R"("numberMatched":12)"), 12U);
  EXPECT_EQ(matched(R"("context":{"matched":0})"), 0U);
  for (const std::string member :
       {R"("numberMatched":-1)", R"("numberMatched":"12")", R"("numberMatched":1e16)",
        R"("context":{"matched":null})", R"("context":12)", R"("numberReturned":3)"})
    EXPECT_FALSE(matched(member)) << member;
}

TEST(Documents, AreToldByTheirTypeOrTheirParts) {
  const std::vector<std::pair<std::string, StacKind>> cases = {
      {R"({"type":"Catalog"})", StacKind::Catalogue},
      {R"({"type":"Collection"})", StacKind::Collection},
      {R"({"type":"Feature","id":"a"})", StacKind::Item},
      {R"({"type":"FeatureCollection","features":[]})", StacKind::Items},
      {R"({"collections":[]})", StacKind::Collections},
      {R"({"type":7,"stac_version":"1.0.0","links":[]})", StacKind::Catalogue},
      {"\xEF\xBB\xBF \r\n{\"type\":\"Catalog\"}\n", StacKind::Catalogue}};
  for (const auto& [text, kind] : cases) EXPECT_EQ(documentOf(text).kind, kind) << text;
}

TEST(Documents, OfOtherKindsAreRefusedInWords) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {R"({"type":"FeatureCollection","features":{}})", "it is no document of a catalogue"},
      {R"({"stac_version":"1.0.0"})", "it is no document of a catalogue"},
      {R"({"type":"catalog"})", "it is no document of a catalogue"},
      {R"({"collections":{}})", "it is no document of a catalogue"},
      {R"({"type":"Feature","id":null})", "the item has no id"},
      {R"({"type":"Feature","id":""})", "the item has no id"},
      {R"({"type":"Catalog"} {})", "it is damaged or cut off"},
      {" ", "it is no JSON document"},
      {"null", "it is no JSON document"},
      {"\xEF\xBB\xBF", "it is empty"}};
  for (const auto& [text, words] : cases) {
    StacReader reader;
    const auto read = reader.read(text);
    ASSERT_TRUE(std::holds_alternative<StacProblem>(read)) << text;
    EXPECT_EQ(std::get<StacProblem>(read).text, words) << text;
  }
}

}  // namespace
}  // namespace vlclientui::client::stac
