#include <string>

#include "client/RasterFixture.h"
#include "client/drawing/DrawingProperties.h"

namespace vlclientui::client {
namespace {

std::string document(const std::string& content) {
  return "<Vorlane><ImageServiceProperties>" + content + "</ImageServiceProperties></Vorlane>";
}

class PropertiesText : public test::RasterFixture {
 protected:
  [[nodiscard]] DrawingProperties read(const std::string& content) const {
    return readDrawingProperties(document(content), xml());
  }
  [[nodiscard]] std::string replaced(const std::string& content, const std::string& path,
                                     const std::string& text) const {
    return replacedProperties(document(content), {{path, text}}, xml());
  }
};

TEST_F(PropertiesText, HasAWordForEachMethodThatReadsBack) {
  for (const MosaicMethod method : {MosaicMethod::AsDefined, MosaicMethod::ByAttribute,
                                    MosaicMethod::ClosestToViewpoint, MosaicMethod::LockRaster}) {
    const std::string word = methodName(method);
    EXPECT_EQ(read("<MosaicMethod>" + word + "</MosaicMethod>").method, method) << word;
  }
  EXPECT_EQ(methodName(MosaicMethod::AsDefined), "None");
}

TEST_F(PropertiesText, HasAWordForEachResamplingThatReadsBack) {
  for (const Resampling resampling : {Resampling::Nearest, Resampling::Average, Resampling::Bilinear}) {
    const std::string word = resamplingName(resampling);
    EXPECT_EQ(read("<Resampling>" + word + "</Resampling>").resampling, resampling) << word;
  }
}

TEST_F(PropertiesText, TellsOrderLockAndAssetAsWritten) {
  const DrawingProperties properties = read(
      "<TileOrderField>Year</TileOrderField><TileOrderBase>1990</TileOrderBase>"
      "<LockImageID>a/b.tif</LockImageID><Asset>red</Asset>");
  EXPECT_EQ(properties.orderField, "Year");
  EXPECT_EQ(properties.orderBase, "1990");
  EXPECT_EQ(properties.lockImageId, "a/b.tif");
  EXPECT_EQ(properties.asset, "red");
}

TEST_F(PropertiesText, OfAnotherKindTellsNothing) {
  for (const char* text : {"", "no document", "<Vorlane/>",
                           "<Vorlane><MosaicMethod>LockRaster</MosaicMethod>"
                           "</Vorlane>"}) {
    const DrawingProperties properties = readDrawingProperties(text, xml());
    EXPECT_EQ(properties.method, MosaicMethod::AsDefined) << text;
    EXPECT_EQ(properties.methodText, "") << text;
    EXPECT_FALSE(properties.noData) << text;
    EXPECT_FALSE(properties.resampling) << text;
  }
}

TEST_F(PropertiesText, IsReplacedByPath) {
  EXPECT_EQ(replaced("<NoData>1</NoData><Srs><Prj>X</Prj></Srs>", "NoData", "2"),
            document("<NoData>2</NoData><Srs><Prj>X</Prj></Srs>"));
  EXPECT_EQ(replaced("<NoData>1</NoData><Srs><Prj>X</Prj></Srs>", "Srs/Prj", "a<b"),
            document("<NoData>1</NoData><Srs><Prj>a&lt;b</Prj></Srs>"));
}

TEST_F(PropertiesText, IsNotAddedWhereItsElementIsMissing) {
  EXPECT_EQ(replaced("<NoData>1</NoData>", "Srs/Prj", "X"), document("<NoData>1</NoData>"));
}

TEST_F(PropertiesText, ThatIsNoDocumentIsNotReplaced) {
  EXPECT_EQ(replacedProperties("no document", {{"NoData", "2"}}, xml()), "no document");
}

TEST_F(PropertiesText, IsNotCompletedFromWhatHoldsNoProperties) {
  const std::string own = document("<NoData>1</NoData>");
  for (const char* otherwise : {"", "no document", "<Vorlane/>"}) {
    EXPECT_EQ(completedProperties(own, otherwise, xml()), own) << otherwise;
  }
}

}  // namespace
}  // namespace vlclientui::client
