#include "client/raster/NameMark.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

namespace vlclientui::client {
namespace {

TEST(NameMark, HasAsManyDigitsAsWanted) {
  for (const std::size_t digits : {0U, 1U, 8U, 16U}) {
    const std::string mark = nameMark("alps.tif", digits);
    EXPECT_EQ(mark.size(), digits);
    EXPECT_EQ(mark.find_first_not_of("0123456789abcdef"), std::string::npos) << mark;
  }
}

TEST(NameMark, IsTheSameOnEveryMachine) {
  EXPECT_EQ(nameMark("", 16), "523222484ec92fbc");
  EXPECT_EQ(nameMark("a", 16), "c8ce1068c4cd36fa");
}

TEST(NameMark, WithFewerDigitsIsTheBeginningOfAnother) {
  EXPECT_EQ(nameMark("alps.tif", 5), nameMark("alps.tif", 16).substr(0, 5));
}

TEST(NameMark, TellsNamesApart) {
  std::set<std::string> marks;
  for (int i = 0; i < 1000; ++i) marks.insert(nameMark("tile" + std::to_string(i) + ".tif", 16));
  marks.insert(nameMark("Tile0.tif", 16));
  marks.insert(nameMark("tile0.ti\xC3\xA4", 16));
  EXPECT_EQ(marks.size(), 1002U);
}

}  // namespace
}  // namespace vlclientui::client
