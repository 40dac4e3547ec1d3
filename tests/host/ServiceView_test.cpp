#include "host/ServiceView.h"

#include <cmath>

#include <gtest/gtest.h>

#include "client/drawing/ImageSource.h"
#include "frame/ThreadState.h"
#include "host/Compose.h"
#include "support/EdgeTransform.h"
#include "support/TestFolders.h"

namespace vlclientui::host {
namespace {

constexpr int utm32 = 32632;

class ServiceView : public testing::Test {
 protected:
  ServiceView() {
    HostOptions options;
    options.home = sourceFolder();
    options.catalogue = samplesFolder();
    host_ = composeHeadlessPlatform(options);
  }

  [[nodiscard]] std::unique_ptr<client::CatalogueImageService> service(const std::string& name) const {
    return std::make_unique<client::CatalogueImageService>(host_.catalogue, *host_.platform->xml,
                                                           "ImageService://127.0.0.1/" + name);
  }
  [[nodiscard]] ServiceMarks marksOf(client::CatalogueImageService& service) const {
    return serviceMarks(service);
  }

  ComposedHost host_;
};

TEST_F(ServiceView, APictureHasThePartOfTheServiceThatTheMapShows) {
  const auto geoid = service("World/EGM96_Geoid");
  const auto placed = drawView(*geoid, {-20, 0, 20, 30}, 400, 300);
  ASSERT_TRUE(placed);
  EXPECT_EQ(placed->picture.width, 400);
  EXPECT_EQ(placed->picture.height, 300);
  EXPECT_EQ(placed->corners, (GeographicCorners{{{-20, 30}, {20, 30}, {20, 0}, {-20, 0}}}));
}

TEST_F(ServiceView, APictureIsAsSmallAsTheServiceIsOnTheMap) {
  const auto overlaps = service("Imagery/Overlap_Study");
  const auto own = *overlaps->record().facts.geographicEnvelope;
  const double across = own.xMax - own.xMin;
  const double down = own.yMax - own.yMin;
  const auto placed =
      drawView(*overlaps, {own.xMin - across, own.yMin - down, own.xMax + across, own.yMax + down}, 300, 300);
  ASSERT_TRUE(placed);
  EXPECT_NEAR(placed->picture.width, 100, 3);
  EXPECT_NEAR(placed->picture.height, 100, 3);
}

TEST_F(ServiceView, AMapBesideTheServiceShowsNothing) {
  EXPECT_FALSE(drawView(*service("Imagery/Overlap_Study"), {100, -20, 120, 0}, 100, 100));
}

TEST_F(ServiceView, TheCornersLieWhereTheCoordinatesOfTheServiceHaveThem) {
  const auto overlaps = service("Imagery/Overlap_Study");
  const auto placed = drawView(*overlaps, {}, 360, 180);
  ASSERT_TRUE(placed);
  const client::Bounds& whole = overlaps->record().facts.envelope;
  for (const auto& corner : placed->corners) {
    const auto back = test::boundsOfEdges({corner.x, corner.y, corner.x, corner.y}, utm32);
    EXPECT_TRUE(std::abs(back.xMin - whole.xMin) < 0.01 || std::abs(back.xMin - whole.xMax) < 0.01);
    EXPECT_TRUE(std::abs(back.yMin - whole.yMin) < 0.01 || std::abs(back.yMin - whole.yMax) < 0.01);
  }
}

TEST_F(ServiceView, ADrawnViewIsTheImageLastReturned) {
  const auto geoid = service("World/EGM96_Geoid");
  const auto before = geoid->GetImageMetadata("Basic");
  ASSERT_TRUE(drawView(*geoid, {-20, 0, 20, 30}, 400, 300));
  EXPECT_NE(geoid->GetImageMetadata("Basic"), before);
}

TEST_F(ServiceView, TheMarksHaveEachSourceAndTheViewpointThatCounts) {
  const auto overlaps = service("Imagery/Overlap_Study");
  const auto middle = marksOf(*overlaps);
  EXPECT_EQ(middle.footprints.size(), 3U);
  ASSERT_TRUE(middle.viewPoint);
  const client::Bounds& west = overlaps->record().sources[0].place;
  overlaps->setServiceProperties("<Vorlane><ImageServiceProperties><ViewPointX>" + std::to_string(west.xMin) +
                                 "</ViewPointX><ViewPointY>" + std::to_string(west.yMax) +
                                 "</ViewPointY></ImageServiceProperties></Vorlane>");
  const auto moved = marksOf(*overlaps);
  ASSERT_TRUE(moved.viewPoint);
  EXPECT_NEAR(moved.viewPoint->x, middle.footprints[0][0].x, 1e-7);
  EXPECT_NEAR(moved.viewPoint->y, middle.footprints[0][0].y, 1e-7);
}

TEST_F(ServiceView, AServiceThatIsNoMosaicHasNoMarks) {
  const auto marks = marksOf(*service("World/EGM96_Geoid"));
  EXPECT_TRUE(marks.footprints.empty());
  EXPECT_FALSE(marks.viewPoint);
}

TEST_F(ServiceView, WithoutAViewpointTheMiddleOfTheServiceCounts) {
  const auto overlaps = service("Imagery/Overlap_Study");
  const auto before = marksOf(*overlaps);
  overlaps->setServiceProperties(
      "<Vorlane><ImageServiceProperties><ViewPointX/><ViewPointY/></ImageServiceProperties></Vorlane>");
  EXPECT_EQ(marksOf(*overlaps).viewPoint, before.viewPoint);
}

TEST_F(ServiceView, ABlankViewpointIsTakenOutOfProperties) {
  const auto without = [this](const std::string& text) {
    return withoutBlankViewPoint(text, *host_.platform->xml);
  };
  const std::string none = without(
      "<Vorlane><ImageServiceProperties><ViewPointY/><MosaicMethod>None</MosaicMethod><ViewPointX></"
      "ViewPointX>"
      "</ImageServiceProperties></Vorlane>");
  EXPECT_EQ(none.find("ViewPoint"), std::string::npos) << none;
  EXPECT_NE(none.find("<MosaicMethod>None</MosaicMethod>"), std::string::npos) << none;
  for (const char* kept :
       {"<Vorlane><ImageServiceProperties><ViewPointX>1</ViewPointX></ImageServiceProperties>"
        "</Vorlane>",
        "no document", ""}) {
    EXPECT_EQ(without(kept), kept);
  }
}

}  // namespace
}  // namespace vlclientui::host
