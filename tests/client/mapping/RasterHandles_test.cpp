#include "client/mapping/RasterHandles.h"

#include <gtest/gtest.h>

#include "client/mapping/MappingFixture.h"

namespace vlclientui::client {
namespace {

class RasterHandlesOfFiles : public test::MappingFixture {
 protected:
  [[nodiscard]] const OpenRaster* open(const Drawing& drawing) {
    return handles_.raster(*drawing.service, drawing.service->sources.front());
  }

  RasterHandles handles_;
};

TEST_F(RasterHandlesOfFiles, LookAtTheFilesOnceUntilTheyAreToLookAgain) {
  makePlaced("a.tif", 32632, {7.4, 46.9}, 100);
  const Drawing drawing = drawingOf("a");
  EXPECT_NE(open(drawing), nullptr);
  makePlaced("a.tif", 32632, {7.4, 46.9}, 100);
  std::filesystem::last_write_time(folder() / "a.tif",
                                   std::filesystem::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_NE(open(drawing), nullptr);
  EXPECT_EQ(handles_.openings(), 1U);
  handles_.lookAgain();
  EXPECT_NE(open(drawing), nullptr);
  EXPECT_EQ(handles_.openings(), 2U);
}

TEST_F(RasterHandlesOfFiles, TryWhatCouldNotBeOpenedAgainWhenAsked) {
  makePlaced("a.tif", 32632, {7.4, 46.9}, 100);
  const Drawing drawing = drawingOf("a");
  const auto hidden = folder() / "hidden.tif";
  std::filesystem::rename(folder() / "a.tif", hidden);
  EXPECT_EQ(open(drawing), nullptr);
  const std::string problem = handles_.problem(*drawing.service, drawing.service->sources.front());
  EXPECT_TRUE(problem.starts_with("The source raster a.tif cannot be read: ") ||
              problem.starts_with("The source raster a cannot be read: "))
      << problem;
  EXPECT_EQ(open(drawing), nullptr);
  EXPECT_EQ(handles_.openings(), 1U);
  std::filesystem::rename(hidden, folder() / "a.tif");
  handles_.lookAgain();
  handles_.forgetProblems();
  EXPECT_NE(open(drawing), nullptr);
  EXPECT_EQ(handles_.problem(*drawing.service, drawing.service->sources.front()), "");
}

TEST_F(RasterHandlesOfFiles, TakeTheSystemThatARasterToldBeforeWhileItLiesThere) {
  makePlaced("a.tif", 32632, {7.4, 46.9}, 100);
  Drawing drawing = drawingOf("a");
  ImageServiceRecord service = *drawing.service;
  service.sources.front().facts.srsWkt = wktOf(2056);
  const OpenRaster* asTold = handles_.raster(service, service.sources.front());
  ASSERT_NE(asTold, nullptr);
  EXPECT_EQ(asTold->wkt, wktOf(2056));
  RasterHandles others;
  service.sources.front().facts.envelope.xMin -= 1;
  const OpenRaster* moved = others.raster(service, service.sources.front());
  ASSERT_NE(moved, nullptr);
  EXPECT_EQ(moved->wkt, drawing.service->facts.srsWkt);
}

}  // namespace
}  // namespace vlclientui::client
