#include "widgets/SymbolIcons.h"

#include <QImage>

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

TEST(SymbolIcons, FolderAndServiceLookDifferent) {
  EXPECT_NE(drawn(folderIcon(), 16), drawn(serviceIcon(), 16));
}

}  // namespace
}  // namespace vlclientui::widgets
