// What a list shows of collections.
#include "client/stac/StacFacts.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "client/stac/StacFixture.h"

namespace vlclientui::client::stac {
namespace {

using Items = std::vector<std::pair<std::string, std::string>>;

StacDocument collectionWith(std::optional<Bounds> extent, std::optional<StacInterval> interval) {
  StacDocument collection;
  collection.id = "c";
  collection.extent = extent;
  collection.interval = std::move(interval);
  return collection;
}

TEST(StacFacts, TellDatesByTheirDays) {
  const std::vector<std::pair<StacInterval, std::string>> cases = {
      {{"2019-06-21T10:00:00Z", "2021-07-14T00:00:00Z"}, "2019-06-21 to 2021-07-14"},
      {{"2019-06-21T10:00:00Z", "2019-06-21T23:00:00Z"}, "2019-06-21"},
      {{"2019-06-21T10:00:00Z", ""}, "since 2019-06-21"},
      {{"", "2021-07-14T00:00:00Z"}, "until 2021-07-14"},
      {{"2019", "2021"}, "2019 to 2021"},
      {{"", ""}, ""}};
  for (const auto& [interval, text] : cases)
    EXPECT_EQ(collectionRegion(collectionWith(std::nullopt, interval)), text);
}

TEST(StacFacts, TellPlaceAndDatesTogetherOrWhatThereIsOfThem) {
  const StacInterval dates{"2019-06-21T00:00:00Z", ""};
  EXPECT_EQ(collectionRegion(collectionWith(Bounds{8, 46, 9, 47}, dates)), "46.5 N 8.5 E, since 2019-06-21");
  EXPECT_EQ(collectionRegion(collectionWith(Bounds{-9, -47, -8, -46}, std::nullopt)), "46.5 S 8.5 W");
  EXPECT_EQ(collectionRegion(collectionWith(Bounds{-180, -90, 180, 90}, dates)), "World, since 2019-06-21");
  EXPECT_EQ(collectionRegion(collectionWith(std::nullopt, std::nullopt)), "");
}

TEST(StacFacts, BearTheTitleOrTheId) {
  StacDocument collection = collectionWith(std::nullopt, std::nullopt);
  EXPECT_EQ(collectionFacts(collection).title, "c");
  collection.title = "Title";
  collection.sources = {"P1", "P2"};
  EXPECT_EQ(collectionFacts(collection).title, "Title");
  EXPECT_EQ(collectionFacts(collection).pixelSource, "P1, P2");
}

TEST(StacFacts, TellPixelsByTheTypeOfTheirValues) {
  const std::vector<std::pair<std::string, std::pair<std::string, int>>> cases = {
      {"uint8", {"Byte", 8}},       {"uint16", {"UInt16", 16}},    {"int16", {"Int16", 16}},
      {"uint32", {"UInt32", 32}},   {"int32", {"Int32", 32}},      {"float32", {"Float32", 32}},
      {"float64", {"Float64", 64}}, {"cfloat32", {"CFloat32", 64}}};
  for (const auto& [told, expected] : cases) {
    StacDocument collection = collectionWith(std::nullopt, std::nullopt);
    collection.itemAssets = {assetOfKind({"data", "", {}, {{told, "m"}, {"uint8", ""}, {"uint8", ""}}})};
    const RasterFacts facts = collectionFacts(collection);
    EXPECT_EQ(facts.pixelType, expected.first);
    EXPECT_EQ(facts.bitDepth, expected.second) << told;
    EXPECT_EQ(facts.bandCount, 3);
    EXPECT_EQ(facts.pixelUnit, "m");
  }
}

TEST(StacFacts, LeaveUnknownWhatIsNotTold) {
  const RasterFacts nothing;
  StacDocument collection = collectionWith(std::nullopt, std::nullopt);
  collection.itemAssets = {assetOfKind({"data", "", {}, {{"other", ""}}})};
  const RasterFacts facts = collectionFacts(collection);
  EXPECT_EQ(facts.pixelType, "");
  EXPECT_EQ(facts.bitDepth, nothing.bitDepth);
  EXPECT_EQ(facts.bandCount, 1);
  EXPECT_EQ(facts.srsWkt, "");
  EXPECT_EQ(facts.columns, nothing.columns);
  EXPECT_FALSE(facts.geographicEnvelope);
}

TEST(StacFacts, TakeCodesOfCoordinateSystemsAndNoFilesOrAddresses) {
  StacDocument collection = collectionWith(Bounds{8, 46, 9, 47}, std::nullopt);
  collection.system = "EPSG:32632";
  EXPECT_NE(collectionFacts(collection).srsWkt.find("UTM zone 32N"), std::string::npos);
  EXPECT_EQ(collectionFacts(collection).geographicEnvelope, (Bounds{8, 46, 9, 47}));
  for (const std::string system : {"EPSG:999999", "/etc/passwd", "http://127.0.0.1:1/x.prj", "nothing", ""}) {
    collection.system = system;
    EXPECT_EQ(collectionFacts(collection).srsWkt, "") << system;
  }
}

TEST(StacFacts, TellForPeopleWhatThereIsAndNoSecret) {
  StacDocument collection = collectionWith(std::nullopt, StacInterval{"2019-01-01T00:00:00Z", ""});
  collection.keywords = {"a", "b"};
  collection.license = "CC0-1.0";
  const FileMetadata metadata = collectionMetadata(collection, "https://me:geheim@h/c.json?token=geheim");
  ASSERT_EQ(metadata.size(), 1U);
  EXPECT_EQ(metadata[0].name, "Collection");
  EXPECT_EQ(metadata[0].items, (Items{{"Id", "c"},
                                      {"Keywords", "a, b"},
                                      {"Dates", "since 2019-01-01"},
                                      {"License", "CC0-1.0"},
                                      {"Address", "https://h/c.json?token=***"}}));
}

}  // namespace
}  // namespace vlclientui::client::stac
