#include "documents/LockDocument.h"

#include <gtest/gtest.h>

#include "platform/LibXmlService.h"

namespace vlclientui {
namespace {

TEST(LockDocument, HoldsMethodAndId) {
  EXPECT_EQ(lockDocument("123"),
            "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod>"
            "<LockImageID>123</LockImageID></ImageServiceProperties></Vorlane>");
}

TEST(LockDocument, AnIdWithMarkupStaysText) {
  const auto document = platform::LibXmlService{platform::PathTranslation("/")}.createDocument();
  ASSERT_TRUE(document->loadXml(lockDocument("a&b<c")));
  EXPECT_EQ(document->selectSingleNode("//LockImageID")->text(), "a&b<c");
}

TEST(LockDocument, TheLockIdIsThePartBeforeTheFirstPoint) {
  EXPECT_EQ(lockIdOf("123.0"), "123");
  EXPECT_EQ(lockIdOf("1.2.3"), "1");
  EXPECT_EQ(lockIdOf("123"), "123");
  EXPECT_EQ(lockIdOf(".5"), "");
  EXPECT_EQ(lockIdOf(""), "");
}

TEST(LockDocument, AMethodIsAllowedWhereTheListContainsItInAnyCase) {
  EXPECT_TRUE(allowsMosaicMethod("By Attribute,LOCK RASTER", "Lock Raster"));
  EXPECT_TRUE(allowsMosaicMethod("Deadlock Rasters", "Lock Raster"));
  EXPECT_FALSE(allowsMosaicMethod("LockRaster", "Lock Raster"));
  EXPECT_FALSE(allowsMosaicMethod("", "Lock Raster"));
}

}  // namespace
}  // namespace vlclientui
