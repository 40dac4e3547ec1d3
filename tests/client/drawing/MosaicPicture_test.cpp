#include <string>

#include <gtest/gtest.h>

#include "client/ColorMosaicFixture.h"

namespace vlclientui::client {
namespace {

class MosaicPicture : public test::ColorMosaicFixture {
 protected:
  // Drawing and export must give the same pixels.
  [[nodiscard]] std::string pictureOf(const std::string& content) const {
    const auto made = mosaic(content);
    const std::string onScreen = drawn(*made);
    const std::string inFile = exported(*made);
    return onScreen == inFile ? onScreen : "screen " + onScreen + ", file " + inFile;
  }
};

TEST_F(MosaicPicture, IsInTheOrderOfTheDefinitionAtFirst) { EXPECT_EQ(pictureOf(""), "RRRGGGBBBBBBBB"); }

TEST_F(MosaicPicture, StaysInThatOrderWithoutAMethodOrWithAnUnknownOne) {
  EXPECT_EQ(pictureOf("<MosaicMethod/>"), "RRRGGGBBBBBBBB");
  EXPECT_EQ(pictureOf("<MosaicMethod>Random</MosaicMethod>"), "RRRGGGBBBBBBBB");
}

TEST_F(MosaicPicture, HasTheSourceNearestToTheViewpointOnTop) {
  const std::string method = "<MosaicMethod>Closest to Viewpoint</MosaicMethod>";
  EXPECT_EQ(pictureOf(method + "<ViewPointX>500400</ViewPointX><ViewPointY>5149700</ViewPointY>"),
            "RRRRRRRRGGGBBB");
  EXPECT_EQ(pictureOf(method + "<ViewPointX>500700,5</ViewPointX><ViewPointY>5149700,0</ViewPointY>"),
            "RRRGGGGGGGGBBB");
  EXPECT_EQ(pictureOf(method + "<ViewPointX>501000</ViewPointX><ViewPointY>5149700</ViewPointY>"),
            "RRRGGGBBBBBBBB");
  EXPECT_EQ(pictureOf("<MosaicMethod>Viewpoint</MosaicMethod><ViewPointX>0</ViewPointX><ViewPointY>5149700"
                      "</ViewPointY>"),
            "RRRRRRRRGGGBBB");
}

TEST_F(MosaicPicture, TakesTheMiddleWhereTheViewpointIsNone) {
  const std::string method = "<MosaicMethod>Closest to Viewpoint</MosaicMethod>";
  for (const char* text : {"", "here", "1.000,5"}) {
    const std::string x = "<ViewPointX>" + std::string(text) + "</ViewPointX>";
    EXPECT_EQ(pictureOf(method + x + "<ViewPointY>5149700</ViewPointY>"), "RRRGGGGGGGGBBB") << text;
  }
}

TEST_F(MosaicPicture, HasTheAttributeNearestToTheBaseOnTop) {
  const std::string method = "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField>";
  EXPECT_EQ(pictureOf(method + "<TileOrderBase>2021</TileOrderBase>"), "RRRRRRRRBBBBBB");
  EXPECT_EQ(pictureOf(method + "<TileOrderBase>2019</TileOrderBase>"), "RRRGGGGGGGGBBB");
  EXPECT_EQ(pictureOf(method + "<TileOrderBase/>"), "RRRGGGGGGGGBBB");
}

TEST_F(MosaicPicture, StaysInTheOrderOfTheDefinitionForAnAttributeThatNoSourceHas) {
  EXPECT_EQ(pictureOf("<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Cloud</TileOrderField>"),
            "RRRGGGBBBBBBBB");
}

TEST_F(MosaicPicture, ShowsALockedRasterAlone) {
  EXPECT_EQ(pictureOf("<MosaicMethod>Lock Raster</MosaicMethod><LockImageID>2</LockImageID>"),
            "...GGGGGGGG...");
  EXPECT_EQ(pictureOf("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"),
            "RRRRRRRR......");
}

TEST_F(MosaicPicture, ShowsAllForALockToNothing) {
  EXPECT_EQ(pictureOf("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>9</LockImageID>"),
            "RRRGGGBBBBBBBB");
  EXPECT_EQ(pictureOf("<MosaicMethod>LockRaster</MosaicMethod><LockImageID/>"), "RRRGGGBBBBBBBB");
}

TEST_F(MosaicPicture, LetsLowerSourcesShineThroughAChosenNoDataValue) {
  for (const char* name : {"c2", "c3"}) {
    test::RasterRecipe recipe = recipeOf(static_cast<std::size_t>(name[1] - '1'));
    recipe.finish = [](GDALDataset& dataset) {
      for (int band = 1; band <= 3; ++band) ASSERT_EQ(dataset.GetRasterBand(band)->Fill(77), CE_None);
    };
    makeRaster(std::string("m.sources/") + name + ".tif", recipe);
  }
  EXPECT_EQ(drawn(*mosaic("<NoData>77</NoData>")), "RRRRRRRR......");
}

TEST_F(MosaicPicture, KeepsColorsThatHoldAChosenNoDataValueInOneBandOnly) {
  EXPECT_EQ(pictureOf("<NoData>220</NoData>"), "RRRGGGBBBBBBBB");
  EXPECT_EQ(pictureOf("<NoData>10</NoData>"), "RRRGGGBBBBBBBB");
}

TEST_F(MosaicPicture, ChangesWithTheProperties) {
  const auto made = mosaic();
  EXPECT_EQ(drawn(*made), "RRRGGGBBBBBBBB");
  made->setServiceProperties(
      properties("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"));
  EXPECT_EQ(drawn(*made), "RRRRRRRR......");
  made->setServiceProperties(properties("<MosaicMethod>None</MosaicMethod>"));
  EXPECT_EQ(drawn(*made), "RRRGGGBBBBBBBB");
}

TEST_F(MosaicPicture, LiesInTheSystemOfTheProperties) {
  const auto made = mosaic("<Srs><Prj>EPSG:4326</Prj></Srs>");
  const Bounds place = made->record().facts.envelope;
  EXPECT_NEAR(place.xMin, 9.0, 0.001);
  EXPECT_NEAR(place.yMin, 46.5, 0.05);
  const Thumbnail picture = made->drawImage(place, 28, 12);
  const std::uint8_t* middle = picture.rgba.data() + (6 * 28 + 20) * 4;
  EXPECT_EQ(middle[2], colors[2][2]);
  const std::uint8_t* left = picture.rgba.data() + (6 * 28 + 2) * 4;
  EXPECT_EQ(left[0], colors[0][0]);
}

TEST_F(MosaicPicture, IsResampledAsThePropertiesTell) {
  makeNumbered("n.tif");
  const auto made = service("ImageService://localhost/n");
  const auto shifted = [&](const std::string& word) {
    made->setServiceProperties(properties("<Resampling>" + word + "</Resampling>"));
    return made->drawImage({500050, 5149450, 500750, 5149950}, 7, 5).rgba;
  };
  EXPECT_EQ(shifted("Automatic"), shifted("Bilinear"));
  EXPECT_NE(shifted("Nearest"), shifted("Bilinear"));
}

}  // namespace
}  // namespace vlclientui::client
