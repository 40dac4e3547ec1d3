#include "widgets/SymbolIcons.h"

#include <QImage>
#include <vector>

#include <gtest/gtest.h>

namespace vlclientui::widgets {
namespace {

QImage drawn(const QIcon& icon, int side) { return icon.pixmap(QSize(side, side)).toImage(); }

TEST(SymbolIcons, CornersAreTransparentAndTheMiddleIsNot) {
  for (const QIcon& icon : {folderIcon(), serviceIcon()}) {
    for (const int side : {16, 24, 64}) {
      const QImage picture = drawn(icon, side);
      ASSERT_EQ(picture.size(), QSize(side, side));
      EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0);
      EXPECT_EQ(qAlpha(picture.pixel(side / 2, side / 2)), 255);
    }
  }
}

TEST(SymbolIcons, EveryNamedPictureShowsSomethingOfItsOwn) {
  std::vector<QImage> pictures;
  for (const char* const name : {"service", "image", "process", "sources", "lock"}) {
    const QImage picture = drawn(symbolIcon(QLatin1String(name)), 32);
    EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0) << name;
    EXPECT_EQ(qAlpha(picture.pixel(16, 16)), 255) << name;
    for (const QImage& other : pictures) EXPECT_NE(picture, other) << name;
    pictures.push_back(picture);
  }
}

TEST(SymbolIcons, AnUnknownNameHasNoPicture) {
  EXPECT_TRUE(symbolIcon("elsewhere").isNull());
  EXPECT_TRUE(symbolIcon({}).isNull());
}

TEST(SymbolIcons, FolderAndServiceLookDifferent) {
  EXPECT_NE(drawn(folderIcon(), 16), drawn(serviceIcon(), 16));
}

}  // namespace
}  // namespace vlclientui::widgets
