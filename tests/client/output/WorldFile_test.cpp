#include "client/output/WorldFile.h"

#include <gtest/gtest.h>

#include "client/RasterFixture.h"

namespace vlclientui::client {
namespace {

TEST(WorldFile, IsNamedAfterTheExtension) {
  EXPECT_EQ(worldFileOf("/x/a.b.Tif"), "/x/a.b.tfw");
  EXPECT_EQ(worldFileOf("/x/a.JPEG"), "/x/a.jgw");
  EXPECT_EQ(worldFileOf("/x/a.JP2"), "/x/a.j2w");
  EXPECT_EQ(worldFileOf("/x/a"), "/x/a.wld");
}

TEST(WorldFile, HoldsPixelSizesAndTheMiddleOfTheFirstPixel) {
  EXPECT_EQ(worldFileText({{500000, 5149400, 500800, 5150000}, 8, 6}), "100\n0\n0\n-100\n500050\n5149950\n");
}

class WorldFiles : public test::RasterFixture {};

TEST_F(WorldFiles, AreToldByTheirNames) {
  const auto image = folder() / "a.tif";
  for (const char* const name : {"a.tfw", "a.TFW", "a.tifw", "a.wld"}) {
    EXPECT_TRUE(isWorldFileOf(image, folder() / name)) << name;
  }
  for (const char* const name : {"b.tfw", "a.jgw", "a.tif", "a.tif.xml", "a"}) {
    EXPECT_FALSE(isWorldFileOf(image, folder() / name)) << name;
  }
  EXPECT_TRUE(isWorldFileOf(folder() / "a", folder() / "a.wld"));
  EXPECT_TRUE(isWorldFileOf("a.tif", "a.tfw"));
}

TEST_F(WorldFiles, OfOtherFoldersAreThoseOfOtherImages) {
  std::filesystem::create_directories(folder() / "other");
  std::filesystem::create_directory_symlink(folder(), folder() / "link");
  EXPECT_FALSE(isWorldFileOf(folder() / "a.tif", folder() / "other/a.tfw"));
  EXPECT_TRUE(isWorldFileOf(folder() / "a.tif", folder() / "link/a.tfw"));
}

}  // namespace
}  // namespace vlclientui::client
