#include "properties/PropertiesDocument.h"

#include "documents/LockDocument.h"
#include "support/PropertiesFixture.h"

namespace vlclientui::test {
namespace {

class PropertiesDocument : public PropertiesFixture {};

TEST_F(PropertiesDocument, TakesTheViewpointIntoItsElements) {
  EXPECT_EQ(
      withViewPoint(propertiesXml("<ViewPointX>1</ViewPointX><A/><ViewPointY>2</ViewPointY>"), "10.5", "20"),
      propertiesXml("<ViewPointX>10.5</ViewPointX><A/><ViewPointY>20</ViewPointY>"));
}

TEST_F(PropertiesDocument, GetsMissingElementsAsLastChildrenYBeforeX) {
  EXPECT_EQ(withViewPoint(propertiesXml("<A/>"), "1", "2"),
            propertiesXml("<A/><ViewPointY>2</ViewPointY><ViewPointX>1</ViewPointX>"));
}

TEST_F(PropertiesDocument, GetsOnlyTheElementThatIsMissing) {
  EXPECT_EQ(withViewPoint(propertiesXml("<ViewPointX>1</ViewPointX><A/>"), "3", "4"),
            propertiesXml("<ViewPointX>3</ViewPointX><A/><ViewPointY>4</ViewPointY>"));
}

TEST_F(PropertiesDocument, TakesAnEmptyViewpointToo) {
  EXPECT_EQ(withViewPoint(propertiesXml("<ViewPointX>1</ViewPointX>"), "", ""),
            propertiesXml("<ViewPointX/><ViewPointY/>"));
}

TEST_F(PropertiesDocument, WithoutPropertiesStaysAsItIs) {
  EXPECT_EQ(withViewPoint("<Vorlane><Other/></Vorlane>", "1", "2"), "<Vorlane><Other/></Vorlane>");
}

TEST_F(PropertiesDocument, BecomesEmptyWhenItIsNone) {
  EXPECT_EQ(withViewPoint("<Vorlane>", "1", "2"), "");
  EXPECT_EQ(withViewPoint("", "1", "2"), "");
}

TEST_F(PropertiesDocument, IsWrittenOnlyWhereItHasTheElement) {
  const auto document = currentPlatform().xml->createDocument();
  ASSERT_TRUE(document->loadXml(propertiesXml("<LockImageID/>")));
  EXPECT_TRUE(writeTextIfPresent(*document, propertiesPath::lockImageId, "7"));
  EXPECT_FALSE(writeTextIfPresent(*document, propertiesPath::mosaicMethod, lockRasterMethod));
  EXPECT_EQ(document->xml(), propertiesXml("<LockImageID>7</LockImageID>"));
}

}  // namespace
}  // namespace vlclientui::test
