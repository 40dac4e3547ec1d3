#include "metadata/RasterRecords.h"

#include "contracts/RuntimeFailure.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageOf;
using test::imageXml;
using Texts = std::vector<std::string>;

class RasterRecordsTest : public test::MetadataFixture {};

TEST_F(RasterRecordsTest, HoldsIdNameMarkAndOuterXmlInDocumentOrder) {
  const RasterRecords records(imageOf({{}, {.id = "2.0", .name = "south", .visible = "0"}}));
  ASSERT_EQ(records.records().size(), 2U);
  EXPECT_EQ(records.records()[0].id, "1");
  EXPECT_EQ(records.records()[1].id, "2.0");
  EXPECT_EQ(records.records()[1].name, "south");
  EXPECT_EQ(records.records()[1].visible, "0");
  EXPECT_EQ(records.records()[0].xml, test::rasterXml({}));
}

TEST_F(RasterRecordsTest, WhatIsMissingIsNothing) {
  const RasterRecords records(imageXml("", "<Detailed><Rasters><Raster/></Rasters></Detailed>"));
  ASSERT_EQ(records.records().size(), 1U);
  EXPECT_FALSE(records.records()[0].id);
  EXPECT_FALSE(records.records()[0].name);
  EXPECT_FALSE(records.records()[0].visible);
  EXPECT_FALSE(records.anyMetadata());
  EXPECT_FALSE(records.processAvailable());
}

TEST_F(RasterRecordsTest, ADocumentThatDoesNotParseHasNone) {
  EXPECT_TRUE(RasterRecords("<Vorlane>").records().empty());
  EXPECT_TRUE(RasterRecords("").records().empty());
  EXPECT_TRUE(RasterRecords().records().empty());
}

TEST_F(RasterRecordsTest, MetadataOfOneRasterAnywhereCounts) {
  EXPECT_TRUE(RasterRecords(imageXml("<Other><Raster><Metadata/></Raster></Other>", "")).anyMetadata());
  EXPECT_FALSE(RasterRecords(imageXml("<Metadata/>", "")).anyMetadata());
}

TEST_F(RasterRecordsTest, ARasterInsideARecordCountsAsPartOfIt) {
  // Cut out and read from its root down, the inner raster's id is the first.
  const RasterRecords records(
      imageXml("",
               "<Detailed><Rasters><Raster><Part><Raster><Info><RasterId>7</RasterId></Info></Raster>"
               "</Part></Raster></Rasters></Detailed>"));
  ASSERT_EQ(records.records().size(), 1U);
  EXPECT_EQ(records.records()[0].id, "7");
}

TEST_F(RasterRecordsTest, TellsWhichTextItWasReadFrom) {
  const RasterRecords records(imageOf({{}}));
  EXPECT_TRUE(records.isOf(imageOf({{}})));
  EXPECT_FALSE(records.isOf(imageOf({{}, {}})));
}

TEST_F(RasterRecordsTest, ACaptionIsTheKeyWithAMarkForWhatDoesNotShow) {
  EXPECT_EQ(rasterKey("north", "1.0"), "north - 1.0");
  EXPECT_EQ(rasterKey("", "1"), " - 1");
  EXPECT_EQ(rasterCaption("north - 1", true), "north - 1");
  EXPECT_EQ(rasterCaption("north - 1", false), "* north - 1");
}

TEST_F(RasterRecordsTest, EveryMarkOfACaptionGoesOnTheWayToTheKey) {
  EXPECT_EQ(keyOfCaption("* north - 1"), "north - 1");
  EXPECT_EQ(keyOfCaption("* a* b - 1"), "ab - 1");
  EXPECT_EQ(keyOfCaption("a*b - 1"), "a*b - 1");
}

TEST_F(RasterRecordsTest, AKeyThatIsTakenIsAFailure) {
  RasterIds ids;
  ids.add("a", "1");
  EXPECT_THROW(ids.add("a", "2"), RuntimeFailure);
  EXPECT_EQ(ids.at("a"), "1");
}

TEST_F(RasterRecordsTest, KeysThatDifferInCaseAreTwo) {
  RasterIds ids;
  ids.add("North - 1", "1");
  ids.add("north - 1", "2");
  EXPECT_EQ(ids.at("North - 1"), "1");
  EXPECT_EQ(ids.at("north - 1"), "2");
}

TEST_F(RasterRecordsTest, AnUnknownKeyIsAFailure) {
  RasterIds ids;
  ids.add("a", "1");
  ids.clear();
  EXPECT_THROW(static_cast<void>(ids.at("a")), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui
