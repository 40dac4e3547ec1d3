// Large images: their small copies are offered, chosen, made in the cache, and told of; and the window stays
// awake.

#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QThread>
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "apps/viewer/ViewerDocksFixture.h"
#include "support/StandingTime.h"

namespace vlclientui::test {
namespace {

class MapCopies : public ViewerDocksFixture {
 protected:
  /// A large image without overviews, which reads fast.
  void listLarge() {
    const auto large = file("large.vrt");
    std::ofstream(large) << "<VRTDataset rasterXSize=\"20000\" rasterYSize=\"20000\"><SRS>EPSG:4326</SRS>"
                            "<GeoTransform>0, 0.0001, 0, 50, 0, -0.0001</GeoTransform>"
                            "<VRTRasterBand dataType=\"Byte\" band=\"1\"/></VRTDataset>";
    window_->openFile(large);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 60'000));
    window_->zoomToService();
  }
  [[nodiscard]] QWidget& status() const { return *window_->findChild<QWidget*>("CopyStatus"); }
  [[nodiscard]] std::size_t copies() const {
    std::error_code error;
    const std::filesystem::directory_iterator all(home_.path() / ".cache/vlclientui/small-copies", error);
    std::size_t count = 0;
    for (const auto& one : all) count += one.path().filename().string().starts_with("making") ? 0 : 1;
    return count;
  }
  void press(const char* name) { viewer::person::find<QPushButton>(status(), name).click(); }

  EnvironmentKeeper cacheVariable_{"XDG_CACHE_HOME", std::nullopt};
};

TEST_F(MapCopies, AreMadeOnlyWithAPersonsLeave) {
  EXPECT_FALSE(status().isVisible());
  listLarge();
  ASSERT_TRUE(QTest::qWaitFor([this] { return status().isVisible(); }, 60'000));
  EXPECT_TRUE(viewer::person::find<QPushButton>(status(), "MakeCopies").isVisible());
  keepPicture(*window_, "copies-offered");
  seeDrawn();
  EXPECT_EQ(copies(), 0U);
  press("NoCopies");
  EXPECT_FALSE(status().isVisible());
  EXPECT_FALSE(action("SmallCopies").isChecked());
  EXPECT_EQ(QSettings(file("viewer.ini").c_str(), QSettings::IniFormat).value("smallCopies"), "false")
      << "the answer holds for the next start";
  action("SmallCopies").trigger();
  ASSERT_TRUE(QTest::qWaitFor([this] { return copies() == 1; }, 60'000));
  EXPECT_TRUE(std::filesystem::exists(file("large.vrt")));
  EXPECT_FALSE(std::filesystem::exists(file("large.vrt.ovr")));
}

TEST_F(MapCopies, AreToldOfWhileTheyAreMade) {
  listLarge();
  ASSERT_TRUE(QTest::qWaitFor([this] { return status().isVisible(); }, 60'000));
  auto& text = *status().findChild<QLabel*>("CopyText");
  press("MakeCopies");
  EXPECT_TRUE(QTest::qWaitFor([&] { return text.text().startsWith("Small copy of large.vrt: "); }, 60'000));
  keepPicture(*window_, "copies-made");
  ASSERT_TRUE(QTest::qWaitFor([this] { return copies() == 1; }, 60'000));
  EXPECT_TRUE(QTest::qWaitFor([this] { return !status().isVisible(); }, 60'000));
}

// Nothing is read on its thread, nor does it wait for those that read.
TEST_F(MapCopies, KeepTheWindowFromNothingWhileAllIsDrawnAndMade) {
  listLarge();
  action("SmallCopies").trigger();
  double longest = 0;
  int turns = 0;
  for (; window_->isDrawing() || copies() == 0; ++turns) {
    QThread::msleep(1);
    const StandingTime standing;
    QCoreApplication::processEvents();
    longest = std::max(longest, standing.milliseconds());
    if (turns % 7 == 0 && turns < 140) map().zoom(turns % 2 == 0 ? 1.5 : 1 / 1.5);
  }
  EXPECT_GT(turns, 20);
  EXPECT_LT(longest, 50);
}

}  // namespace
}  // namespace vlclientui::test
