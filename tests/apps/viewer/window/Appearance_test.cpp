#include "viewer/window/Appearance.h"

#include <QPainter>

#include "apps/viewer/ViewerDocksFixture.h"
#include "viewer/map/MapColors.h"
#include "widgets/ReadableColors.h"

namespace vlclientui::test {
namespace {

using viewer::Appearance;

class Appearances : public ViewerDocksFixture {
 protected:
  ~Appearances() override { viewer::useAppearance(Appearance::Desktop); }

  void startAnew() {
    window_ = std::make_unique<viewer::ViewerWindow>(host_, home_.path());
    window_->show();
  }
  [[nodiscard]] static QColor shownWindow() { return QApplication::palette().color(QPalette::Window); }
  /// Pixels of an icon that stand out from a button, of 1,024.
  [[nodiscard]] static int seenIn(const QIcon& icon) {
    const QColor button = QApplication::palette().color(QPalette::Button);
    QImage picture(32, 32, QImage::Format_ARGB32);
    picture.fill(button);
    QPainter painter(&picture);
    icon.paint(&painter, picture.rect());
    painter.end();
    int seen = 0;
    for (int y = 0; y < 32; ++y)
      for (int x = 0; x < 32; ++x)
        if (widgets::contrastOf(picture.pixelColor(x, y), button) >= 3) ++seen;
    return seen;
  }
};

TEST_F(Appearances, AreTheDesktopsUntilAPersonChooses) {
  EXPECT_TRUE(action("AppearanceDesktop").isChecked());
  const QPalette before = QApplication::palette();
  startAnew();
  EXPECT_EQ(QApplication::palette(), before);
}

TEST_F(Appearances, AreKeptForTheNextStartAndGiveTheDesktopsBack) {
  const QColor before = shownWindow();
  action("AppearanceDark").trigger();
  const QColor dark = viewer::paletteOf(Appearance::Dark).color(QPalette::Window);
  EXPECT_EQ(shownWindow(), dark);
  viewer::useAppearance(Appearance::Desktop);
  startAnew();
  EXPECT_EQ(shownWindow(), dark);
  EXPECT_TRUE(action("AppearanceDark").isChecked());
  action("AppearanceDesktop").trigger();
  EXPECT_EQ(shownWindow(), before);
  startAnew();
  EXPECT_TRUE(action("AppearanceDesktop").isChecked());
}

TEST_F(Appearances, ShowEveryIconInEach) {
  for (const auto appearance : {Appearance::Light, Appearance::Dark, Appearance::HighContrast}) {
    viewer::useAppearance(appearance);
    for (const QAction* each : window_->findChildren<QAction*>()) {
      if (each->icon().isNull()) continue;
      EXPECT_GT(seenIn(each->icon()), 40)
          << each->objectName().toStdString() << " in " << static_cast<int>(appearance);
    }
  }
}

TEST_F(Appearances, ShowWhatLiesOnTheMapInEach) {
  pickOverlaps();
  for (const auto appearance : {Appearance::Light, Appearance::Dark, Appearance::HighContrast}) {
    const viewer::MapColors colors = viewer::mapColorsBy(viewer::paletteOf(appearance));
    for (const QColor& behind : {colors.water, colors.sheet, colors.halo})
      EXPECT_GE(widgets::contrastOf(colors.ink, behind), widgets::leastContrast)
          << static_cast<int>(appearance);
    viewer::useAppearance(appearance);
    QCoreApplication::processEvents();
    EXPECT_EQ(map().grab().toImage().pixelColor(1, 1), colors.water) << static_cast<int>(appearance);
    keepPicture(*window_, "appearance-" + QString::number(static_cast<int>(appearance)));
  }
}

TEST_F(Appearances, OfPicturesStayAsTheyAre) {
  pickOverlaps();
  const QColor before = screenColor();
  action("AppearanceHighContrast").trigger();
  EXPECT_EQ(screenColor(), before);
}

}  // namespace
}  // namespace vlclientui::test
