#include "client/network/FileContent.h"

#include <string>

#include <gtest/gtest.h>

namespace vlclientui::client::network {
namespace {

TEST(FileContents, AreToldByTheFirstBytes) {
  for (const std::string& start :
       {std::string("II*\0", 4), std::string("MM\0*", 4), std::string("II+\0", 4), std::string("MM\0+", 4),
        std::string("\x89PNG\r\n\x1a\n"), std::string("\xff\xd8\xff\xe0"), std::string("\0\0\0\x0cjP  ", 8),
        std::string("\xff\x4f\xff\x51"), std::string("GIF89a"), std::string("BM"),
        std::string("RIFF\1\2\3\4WEBPVP8")}) {
    EXPECT_EQ(contentOf(start), FileContent::Image) << start;
  }
  EXPECT_EQ(contentOf("<?xml version=\"1.0\"?>\n<VRTDataset>"), FileContent::Mosaic);
  EXPECT_EQ(contentOf("words before it <VRTDataset"), FileContent::Mosaic) << "as the raster library sees it";
}

TEST(FileContents, OfAnythingElseAreNone) {
  for (const std::string start :
       {"", "II", "II*", "RIFF1234WAVE", "<GDAL_WMS>", "<MRF_META>", "{\"type\":\"x\"}", "%PDF"})
    EXPECT_EQ(contentOf(start), FileContent::Other) << start;
}

TEST(FileNames, TellImagesAndWhatStandsBesideThem) {
  for (const std::string name : {"a.tif", "A.TIFF", "/x/b.vrt", "c.jp2", "d.Jpeg"}) {
    EXPECT_TRUE(isNamedAsImage(name)) << name;
    EXPECT_FALSE(isBesideImages(name)) << name;
  }
  for (const std::string name : {"a.tif.aux.xml", "a.tfw", "a.TIF.OVR", "a.tif.msk", "a.prj"}) {
    EXPECT_TRUE(isBesideImages(name)) << name;
    EXPECT_FALSE(isNamedAsImage(name)) << name;
  }
  EXPECT_FALSE(isNamedAsImage("tif"));
  EXPECT_FALSE(isNamedAsImage("a.tif.txt"));
}

}  // namespace
}  // namespace vlclientui::client::network
