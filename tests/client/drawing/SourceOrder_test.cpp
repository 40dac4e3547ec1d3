#include "client/drawing/SourceOrder.h"

#include <gtest/gtest.h>

#include "client/drawing/DrawingProperties.h"

namespace vlclientui::client {
namespace {

using Order = std::vector<std::size_t>;

std::vector<ImageSource> threeSources() {
  return {{"a", "1", {{"Year", "2019"}, {"Name", "b"}}, {}, {0, 0, 10, 10}},
          {"b", "2", {{"Year", "2021"}, {"Name", "a"}}, {}, {10, 0, 20, 10}},
          {"c", "x3", {}, {}, {20, 0, 30, 10}}};
}

TEST(OrderOfSources, IsAsDefinedUnlessTold) {
  EXPECT_EQ(orderedSources(threeSources(), {}), (Order{0, 1, 2}));
}

TEST(OrderOfSources, LockShowsOneRasterAlone) {
  DrawingProperties properties{MosaicMethod::LockRaster};
  properties.lockImageId = "x3";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2}));
  properties.lockImageId = "none";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{0, 1, 2}));
}

TEST(OrderOfSources, ClosestAttributeLiesOnTopAndMissingOnesBelow) {
  DrawingProperties properties{MosaicMethod::ByAttribute};
  properties.orderField = "Year";
  properties.orderBase = "2022";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 0, 1}));
  properties.orderBase = "2018";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 1, 0}));
}

TEST(OrderOfSources, TextsLieInTheirOwnOrder) {
  DrawingProperties properties{MosaicMethod::ByAttribute};
  properties.orderField = "Name";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 0, 1}));
}

TEST(OrderOfSources, NearestCenterLiesOnTop) {
  DrawingProperties properties{MosaicMethod::ClosestToViewpoint};
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{0, 1, 2}));
  properties.viewPointX = 4;
  properties.viewPointY = 5;
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 1, 0}));
}

TEST(OrderOfSources, LockTakesTheWholeIdBeforeThePartBeforeThePoint) {
  auto sources = threeSources();
  sources[0].rasterId = "12.0";
  DrawingProperties properties{MosaicMethod::LockRaster};
  properties.lockImageId = "12";
  EXPECT_EQ(orderedSources(sources, properties), (Order{0}));
  sources[2].rasterId = "12";
  EXPECT_EQ(orderedSources(sources, properties), (Order{2}));
  properties.lockImageId = " ";
  EXPECT_EQ(orderedSources(sources, properties), (Order{0, 1, 2}));
}

std::vector<ImageSource> withValues(const std::vector<std::string>& values) {
  std::vector<ImageSource> sources;
  for (const std::string& value : values) sources.push_back({"f", "1", {{"Value", value}}, {}, {}});
  return sources;
}

DrawingProperties byValue(const std::string& base) {
  DrawingProperties properties{MosaicMethod::ByAttribute};
  properties.orderField = "Value";
  properties.orderBase = base;
  return properties;
}

TEST(OrderOfSources, DatesLieByTheirDistance) {
  const auto sources = withValues({"2019-06-21", "2020-08-09T10:30:00", "2021-07-14"});
  EXPECT_EQ(orderedSources(sources, byValue("2020-09-01")), (Order{0, 2, 1}));
  EXPECT_EQ(orderedSources(sources, byValue("2022")), (Order{0, 1, 2}));
  EXPECT_EQ(orderedSources(sources, byValue("2019-07")), (Order{2, 1, 0}));
  EXPECT_EQ(orderedSources(sources, byValue("")), (Order{2, 1, 0}));
}

TEST(OrderOfSources, NumbersLieAboveTextsAndTheBaseItselfOnTopOfTexts) {
  const auto sources = withValues({"b", "9", "95x", "10", "a"});
  EXPECT_EQ(orderedSources(sources, byValue("9")), (Order{0, 4, 2, 3, 1}));
  EXPECT_EQ(orderedSources(withValues({"a", "b", "c"}), byValue("b")), (Order{2, 0, 1}));
}

TEST(OrderOfSources, ABaseThatIsNoNumberCountsAsNothing) {
  EXPECT_EQ(orderedSources(withValues({"1,5", "-1", "3"}), byValue("much")), (Order{2, 0, 1}));
}

TEST(OrderOfSources, LaterOnesLieOnTopOfTheirEquals) {
  EXPECT_EQ(orderedSources(withValues({"1", "1", "1"}), byValue("1")), (Order{0, 1, 2}));
  EXPECT_EQ(orderedSources(withValues({"2021-02-30", "1"}), byValue("1")), (Order{0, 1}));
}

}  // namespace
}  // namespace vlclientui::client
