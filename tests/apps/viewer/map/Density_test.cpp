// The viewer on a screen of twice the density: what is drawn has a pixel for each of the screen's.

#include <QApplication>
#include <QFont>
#include <QStyleFactory>
#include <QToolButton>

#include "apps/viewer/ViewerDocksFixture.h"
#include "widgets/SymbolIcons.h"

namespace vlclientui::test {
namespace {

constexpr double density = 2;

/// Whether a picture has more detail than one of half the size, drawn twice as large.
bool hasFineDetail(const QImage& picture) {
  for (int y = 0; y + 1 < picture.height(); y += 2) {
    for (int x = 0; x + 1 < picture.width(); x += 2) {
      if (picture.pixel(x, y) != picture.pixel(x + 1, y) || picture.pixel(x, y) != picture.pixel(x, y + 1))
        return true;
    }
  }
  return false;
}

class AtTwiceTheDensity : public ViewerDocksFixture {};

TEST_F(AtTwiceTheDensity, TheMapAsksForAPixelOfEachOfTheScreens) {
  ASSERT_EQ(map().devicePixelRatioF(), density);
  pickSample("Elevation/Shaded_Relief_30m");
  seeDrawn();
  window_->zoomToService();
  seeDrawn();
  const QImage picture = map().picture(map().image().reference);
  EXPECT_EQ(picture.size(), map().size() * density);
  EXPECT_TRUE(hasFineDetail(picture));
  keepPicture(*window_, "viewer-twice");
}

TEST_F(AtTwiceTheDensity, ThePicturesOfTheListHaveAPixelForEachOfTheScreens) {
  pickSample("Elevation/Shaded_Relief_30m");
  const auto icon = window_->services().index(0).data(Qt::DecorationRole).value<QIcon>();
  const QPixmap picture = icon.pixmap(QSize(72, 72), density);
  EXPECT_EQ(picture.size(), QSize(144, 144));
  EXPECT_EQ(picture.devicePixelRatio(), density);
  EXPECT_TRUE(hasFineDetail(picture.toImage()));
}

TEST_F(AtTwiceTheDensity, TheIconsAreDrawnForTheScreen) {
  for (const char* const name : {"PropertiesDock", "ViewPointDock", "MetadataDock"}) {
    const QPixmap picture = dock(name).toggleViewAction()->icon().pixmap(QSize(24, 24), density);
    EXPECT_EQ(picture.size(), QSize(48, 48)) << name;
    EXPECT_TRUE(hasFineDetail(picture.toImage())) << name;
  }
  for (const char* const name : {"lock", "up", "service"}) {
    const QPixmap picture = widgets::symbolIcon(name).pixmap(QSize(24, 24), density);
    EXPECT_EQ(picture.size(), QSize(48, 48)) << name;
    EXPECT_TRUE(hasFineDetail(picture.toImage())) << name;
  }
}

}  // namespace
}  // namespace vlclientui::test

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_SCALE_FACTOR", "2");
  testing::InitGoogleTest(&argc, argv);
  const QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 10));
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
