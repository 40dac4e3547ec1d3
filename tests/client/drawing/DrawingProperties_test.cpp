#include "client/drawing/DrawingProperties.h"

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

std::string document(const std::string& content) {
  return "<Vorlane><ImageServiceProperties>" + content + "</ImageServiceProperties></Vorlane>";
}

class DrawingPropertiesDocument : public test::RasterFixture {
 protected:
  [[nodiscard]] DrawingProperties read(const std::string& content) const {
    return readDrawingProperties(document(content), xml());
  }
  [[nodiscard]] MosaicMethod methodOf(const std::string& word) const {
    return read("<MosaicMethod>" + word + "</MosaicMethod>").method;
  }
};

TEST_F(DrawingPropertiesDocument, NamesItsMethodInAnyCaseWithOrWithoutBlanks) {
  EXPECT_EQ(methodOf("Lock Raster"), MosaicMethod::LockRaster);
  EXPECT_EQ(methodOf("LockRaster"), MosaicMethod::LockRaster);
  EXPECT_EQ(methodOf("closest to viewpoint"), MosaicMethod::ClosestToViewpoint);
  EXPECT_EQ(methodOf("Viewpoint"), MosaicMethod::ClosestToViewpoint);
  EXPECT_EQ(methodOf("By Attribute"), MosaicMethod::ByAttribute);
}

TEST_F(DrawingPropertiesDocument, WithoutAMethodOrWithAnUnknownOneIsDrawnAsDefined) {
  for (const char* word : {"", "None", "Random"}) EXPECT_EQ(methodOf(word), MosaicMethod::AsDefined) << word;
  EXPECT_EQ(readDrawingProperties("", xml()).method, MosaicMethod::AsDefined);
  EXPECT_EQ(read("<MosaicMethod>Random</MosaicMethod>").methodText, "Random");
}

TEST_F(DrawingPropertiesDocument, HasItsViewpointWithPointOrComma) {
  EXPECT_EQ(read("<ViewPointX>12,5</ViewPointX>").viewPointX, 12.5);
  EXPECT_EQ(read("<ViewPointX>12.5</ViewPointX>").viewPointX, 12.5);
  EXPECT_EQ(read("<ViewPointY> -3 </ViewPointY>").viewPointY, -3);
  EXPECT_EQ(read("<ViewPointY>+3</ViewPointY>").viewPointY, 3);
}

TEST_F(DrawingPropertiesDocument, HasNoViewpointInATextThatIsNoNumber) {
  for (const char* text : {"", "here", "1.234,5", "1e", "--3", "+-3", "nan", "inf"}) {
    EXPECT_EQ(read("<ViewPointX>" + std::string(text) + "</ViewPointX>").viewPointX, std::nullopt) << text;
  }
}

TEST_F(DrawingPropertiesDocument, TellsHowPixelsAreTaken) {
  EXPECT_EQ(read("<Resampling>bilinear</Resampling>").resampling, Resampling::Bilinear);
  EXPECT_EQ(read("<Resampling>Nearest</Resampling>").resampling, Resampling::Nearest);
  EXPECT_EQ(read("<Resampling>Average</Resampling>").resampling, Resampling::Average);
  EXPECT_EQ(read("<Resampling>Automatic</Resampling>").resampling, std::nullopt);
  EXPECT_EQ(read("<NoData>255</NoData>").noData, 255);
  EXPECT_EQ(read("<NoData/>").noData, std::nullopt);
  EXPECT_EQ(read("<Srs><Prj>EPSG:4326</Prj></Srs>").systemText, "EPSG:4326");
}

TEST_F(DrawingPropertiesDocument, ThatLacksNothingStaysByteForByte) {
  const std::string whole = "<Vorlane> <ImageServiceProperties><A/></ImageServiceProperties></Vorlane>";
  EXPECT_EQ(completedProperties(whole, document("<A>1</A>"), xml()), whole);
}

TEST_F(DrawingPropertiesDocument, KeepsWhatItDoesNotTell) {
  const std::string lock = document("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>7</LockImageID>");
  const std::string held =
      document("<MosaicMethod>None</MosaicMethod><NoData>3</NoData><Srs><Prj>X</Prj></Srs>");
  EXPECT_EQ(completedProperties(lock, held, xml()),
            document("<MosaicMethod>LockRaster</MosaicMethod><LockImageID>7</LockImageID><NoData>3</NoData>"
                     "<Srs><Prj>X</Prj></Srs>"));
}

TEST_F(DrawingPropertiesDocument, KeepsWhatItDoesNotTellInsideOfAGroup) {
  EXPECT_EQ(completedProperties(document("<Srs><Prj>Y</Prj></Srs>"),
                                document("<Srs><Name>N</Name><Prj>X</Prj></Srs>"), xml()),
            document("<Srs><Prj>Y</Prj><Name>N</Name></Srs>"));
}

TEST_F(DrawingPropertiesDocument, IsRefusedWhenItIsNone) {
  for (const char* text : {"", "<Vorlane>", "<Vorlane/>", "<ImageServiceProperties/>"}) {
    EXPECT_THROW((void)completedProperties(text, document("<A/>"), xml()), RuntimeFailure) << text;
  }
}

}  // namespace
}  // namespace vlclientui::client
