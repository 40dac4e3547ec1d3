#include "client/ImageSource.h"

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/ServiceProperties.h"

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
  ServiceProperties properties{MosaicMethod::LockRaster};
  properties.lockImageId = "x3";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2}));
  properties.lockImageId = "none";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{0, 1, 2}));
}

TEST(OrderOfSources, ClosestAttributeLiesOnTopAndMissingOnesBelow) {
  ServiceProperties properties{MosaicMethod::ByAttribute, "Year", "2022"};
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 0, 1}));
  properties.orderBase = "2018";
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 1, 0}));
}

TEST(OrderOfSources, TextsLieInTheirOwnOrder) {
  const ServiceProperties properties{MosaicMethod::ByAttribute, "Name", ""};
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 0, 1}));
}

TEST(OrderOfSources, NearestCentreLiesOnTop) {
  ServiceProperties properties{MosaicMethod::ClosestToViewpoint};
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{0, 1, 2}));
  properties.viewPointX = 4;
  properties.viewPointY = 5;
  EXPECT_EQ(orderedSources(threeSources(), properties), (Order{2, 1, 0}));
}

class PropertiesDocument : public test::RasterFixture {};

TEST_F(PropertiesDocument, MayHaveCommasAndEmptyViewpoints) {
  const auto read = [this](const std::string& content) {
    return readServiceProperties(
        "<Vorlane><ImageServiceProperties>" + content + "</ImageServiceProperties></Vorlane>", xml());
  };
  EXPECT_EQ(read("<ViewPointX>12,5</ViewPointX>").viewPointX, 12.5);
  EXPECT_EQ(read("<ViewPointX/>").viewPointX, std::nullopt);
  EXPECT_EQ(read("<MosaicMethod>Lock Raster</MosaicMethod>").method, MosaicMethod::LockRaster);
  EXPECT_EQ(read("<MosaicMethod>LockRaster</MosaicMethod>").method, MosaicMethod::LockRaster);
  EXPECT_EQ(read("<MosaicMethod>Closest to Viewpoint</MosaicMethod>").method,
            MosaicMethod::ClosestToViewpoint);
  EXPECT_EQ(readServiceProperties("", xml()).method, MosaicMethod::AsDefined);
}

}  // namespace
}  // namespace vlclientui::client
