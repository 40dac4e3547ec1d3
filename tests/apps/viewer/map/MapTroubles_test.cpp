// What the map tells of rasters that cannot be drawn, and how it goes on.

#include <QSignalSpy>
#include <filesystem>

#include "apps/viewer/ViewerDocksFixture.h"

namespace vlclientui::test {
namespace {

class MapTroubles : public ViewerDocksFixture {
 protected:
  /// Of a sample: its header is whole, most of its pixels are gone.
  [[nodiscard]] std::filesystem::path cutRaster() const {
    const auto cut = file("cut.tif");
    std::filesystem::copy_file(sampleFile(), cut, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(cut, std::filesystem::file_size(cut) / 3);
    return cut;
  }
  [[nodiscard]] static std::filesystem::path sampleFile() {
    return std::filesystem::path(samplesFolder()) / "World/EGM96_Geoid.tif";
  }
  [[nodiscard]] QString data(const QString& reference, int role) const {
    const auto& services = window_->services();
    return services.data(services.index(services.rowOf(reference)), role).toString();
  }
  void list(const std::filesystem::path& raster) {
    window_->openFile(raster);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  }
};

TEST_F(MapTroubles, ARasterThatCannotBeDrawnIsToldAndDrawnOnceItIsMended) {
  const auto cut = cutRaster();
  const QString reference = QString::fromStdString(cut.string());
  QSignalSpy told(&map(), &viewer::MapView::problemChanged);
  list(cut);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !map().problem(reference).isEmpty(); }, 30'000));
  EXPECT_TRUE(map().problem(reference).contains("cannot be read")) << map().problem(reference).toStdString();
  ASSERT_FALSE(told.isEmpty());
  EXPECT_EQ(told.front().at(0).toString(), reference);
  const auto tip = [&] { return data(reference, Qt::ToolTipRole); };
  const auto text = [&] { return data(reference, Qt::DisplayRole); };
  EXPECT_TRUE(tip().contains(map().problem(reference))) << tip().toStdString();
  EXPECT_TRUE(text().endsWith("not all of it can be drawn")) << text().toStdString();
  std::filesystem::copy_file(sampleFile(), cut, std::filesystem::copy_options::overwrite_existing);
  action("ReloadMap").trigger();
  EXPECT_TRUE(QTest::qWaitFor([&] { return map().problem(reference).isEmpty(); }, 30'000));
  EXPECT_EQ(told.back().at(1).toString(), "");
  EXPECT_EQ(window_->services().rows().front().mapProblem, "");
  EXPECT_TRUE(QTest::qWaitFor([&] { return tip() == reference; }, 30'000)) << tip().toStdString();
  EXPECT_TRUE(text().endsWith(window_->services().rows().front().service.details)) << text().toStdString();
  EXPECT_FALSE(window_->services().rows().front().service.picture.isNull());
}

TEST_F(MapTroubles, ARasterThatCouldNotBeReadAtAllIsReadWhenTheMapIsDrawnAnew) {
  const auto broken = file("broken.tif");
  std::ofstream(broken) << "II*";
  const QString reference = QString::fromStdString(broken.string());
  list(broken);
  const auto text = [&] { return data(reference, Qt::DisplayRole); };
  EXPECT_TRUE(text().endsWith("cannot be read")) << text().toStdString();
  seeDrawn();
  EXPECT_EQ(window_->pickedService(), nullptr);
  std::filesystem::copy_file(sampleFile(), broken, std::filesystem::copy_options::overwrite_existing);
  action("ReloadMap").trigger();
  ASSERT_TRUE(QTest::qWaitFor([this] { return !window_->services().isLoading(); }, 30'000));
  const auto& row = window_->services().rows().front();
  EXPECT_TRUE(text().endsWith(row.service.details)) << text().toStdString();
  EXPECT_EQ(data(reference, Qt::ToolTipRole), reference);
  seeDrawn();
  EXPECT_NE(window_->pickedService(), nullptr) << "the picked one is opened";
  const QImage drawn = map().picture(reference);
  EXPECT_NE(qAlpha(drawn.pixel(drawn.width() / 2, drawn.height() / 2)), 0);
}

TEST_F(MapTroubles, NeighboringTilesLeaveNoSeam) {
  pickSample("World/EGM96_Geoid");
  for (const int width : {641, 642, 643}) {
    window_->resize(width + 400, 701);
    map().showExtent({-20, -20, 20, 20});
    seeDrawn();
    const QImage picture = map().picture(window_->services().rows().front().reference);
    for (int y = 1; y + 1 < picture.height(); ++y) {
      for (int x = 1; x + 1 < picture.width(); ++x) {
        ASSERT_EQ(qAlpha(picture.pixel(x, y)), 255) << width << ": " << x << ", " << y;
      }
    }
  }
}

TEST_F(MapTroubles, AnotherSystemKeepsAViewThatWasShownWithoutMargin) {
  map().showView({0, 40, 10, 50});
  const double pixel = map().frame().pixel();
  for (int i = 0; i < 3; ++i) map().setSystem(map().frame().system());
  EXPECT_NEAR(map().frame().pixel(), pixel, pixel * 1e-6);
}

}  // namespace
}  // namespace vlclientui::test
