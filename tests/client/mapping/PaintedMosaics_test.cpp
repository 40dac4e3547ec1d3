#include <string>

#include <gtest/gtest.h>

#include "client/ColorMosaicFixture.h"
#include "client/facade/ServiceLoading.h"
#include "client/mapping/ServicePainter.h"
#include "client/mapping/StretchChoice.h"

namespace vlclientui::client {
namespace {

class PaintedMosaics : public test::ColorMosaicFixture {
 protected:
  [[nodiscard]] Drawing drawingBy(const std::string& content) const {
    const auto record = loadImageService(*server_, "ImageService://localhost/m");
    return drawingOf(record, readDrawingProperties(properties(content), xml()));
  }

  /// The first row, one letter a pixel.
  [[nodiscard]] std::string rowBy(const std::string& content) {
    const Drawing drawing = drawingBy(content);
    const auto stretch = chosenStretch(drawing, handles_);
    const MapGrid map{drawing.service->facts.srsWkt, {whole, 14, 6}};
    const auto picture = ServicePainter(drawing, *stretch, handles_).paint(map);
    std::string row;
    for (std::size_t i = 0; i < 14; ++i) row += letterAt(*picture, i * 4);
    return row;
  }

  static char letterAt(const ServicePicture& picture, std::size_t at) {
    if (picture.rgba[at + 3] == 0) return '.';
    if (picture.rgba[at] == 200) return 'R';
    return picture.rgba[at + 1] == 180 ? 'G' : picture.rgba[at + 2] == 220 ? 'B' : '?';
  }

  RasterHandles handles_;
};

TEST_F(PaintedMosaics, LayTheirSourcesByTheirMethod) {
  EXPECT_EQ(rowBy(""), "RRRGGGBBBBBBBB");
  EXPECT_EQ(rowBy("<MosaicMethod>ByAttribute</MosaicMethod>"), rowBy(""));
  EXPECT_EQ(rowBy("<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField>"
                  "<TileOrderBase>2021</TileOrderBase>"),
            "RRRRRRRRBBBBBB");
  EXPECT_EQ(rowBy("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>2</LockImageID>"), "...GGGGGGGG...");
  EXPECT_EQ(rowBy("<MosaicMethod>Viewpoint</MosaicMethod><ViewPointX>500100</ViewPointX>"
                  "<ViewPointY>5149700</ViewPointY>"),
            "RRRRRRRRGGGBBB");
}

TEST_F(PaintedMosaics, OpenOnlyWhatTheViewTouches) {
  const Drawing drawing = drawingBy("");
  const MapGrid east{drawing.service->facts.srsWkt, {{501300, 5149400, 501400, 5149500}, 10, 10}};
  EXPECT_TRUE(ServicePainter(drawing, {}, handles_).paint(east));
  // The first one tells the bands of all, the last one lies there.
  EXPECT_EQ(handles_.openings(), 2U);
  EXPECT_TRUE(ServicePainter(drawing, {}, handles_).paint(east));
  EXPECT_EQ(handles_.openings(), 2U);
}

TEST_F(PaintedMosaics, TellWhichSourceCannotBeRead) {
  const Drawing drawing = drawingBy("");
  std::filesystem::remove(folder() / "m.sources/c2.tif");
  const MapGrid map{drawing.service->facts.srsWkt, {whole, 14, 6}};
  const auto picture = ServicePainter(drawing, {}, handles_).paint(map);
  ASSERT_TRUE(picture);
  ASSERT_EQ(picture->missing.size(), 1U);
  EXPECT_EQ(picture->missing.begin()->first, "c2");
  EXPECT_NE(picture->missing.begin()->second, "");
}

TEST_F(PaintedMosaics, KeepAFewRastersOpenAndNotAll) {
  const Drawing drawing = drawingBy("");
  RasterHandles two(2);
  const MapGrid map{drawing.service->facts.srsWkt, {whole, 14, 6}};
  EXPECT_TRUE(ServicePainter(drawing, {}, two).paint(map));
  EXPECT_EQ(two.count(), 2U);
}

}  // namespace
}  // namespace vlclientui::client
