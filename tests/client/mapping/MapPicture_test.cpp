#include "client/mapping/MapPicture.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "client/mapping/MappingFixture.h"
#include "client/waiting/Wait.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::test {
namespace {

using client::MapFrame;
using client::MapPoint;

constexpr MapPoint thun{7.63, 46.76};

class MapPictures : public MappingFixture {
 protected:
  [[nodiscard]] static client::DrawingSource given(const client::Drawing& drawing) {
    return [kept = std::make_shared<const client::Drawing>(drawing)](const auto&) { return kept; };
  }
  [[nodiscard]] static MapFrame frameOf(const client::MapGrid& map) {
    return {map.wkt, map.grid.extent, map.grid.columns, map.grid.rows};
  }
};

TEST_F(MapPictures, AreThoseOfTheTiles) {
  makePlaced("a.tif", 32632, thun, 100);
  const auto map = mapAround(3857, thun, 120, 150, 140);
  const auto drawing = drawingOf("a");
  const auto picture = client::pictureOnMap(given(drawing), frameOf(map));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->rgba, painted(drawing, map).rgba);
}

TEST_F(MapPictures, AreTransparentWhereTheServiceDoesNotLie) {
  makePlaced("a.tif", 32632, thun, 100);
  const auto map = mapAround(3857, {-70, -30}, 120, 20, 10);
  const auto picture = client::pictureOnMap(given(drawingOf("a")), frameOf(map));
  ASSERT_TRUE(picture);
  EXPECT_EQ(picture->rgba, std::vector<std::uint8_t>(20U * 10U * 4U, 0));
}

TEST_F(MapPictures, FailWhereNoWayLeads) {
  makePlaced("a.tif", 32632, thun, 100);
  EXPECT_THROW(
      static_cast<void>(client::pictureOnMap(given(drawingOf("a")), {"nonsense", {0, 0, 1, 1}, 2, 2})),
      RuntimeFailure);
}

TEST_F(MapPictures, EndWhenTheWorkIsGivenUp) {
  makePlaced("a.tif", 32632, thun, 100);
  const auto drawing = drawingOf("a");
  client::CancelToken token;
  token.cancel();
  const client::WaitScope scope(nullptr, token);
  EXPECT_FALSE(client::pictureOnMap(given(drawing), frameOf(mapAround(3857, thun, 120))));
}

}  // namespace
}  // namespace vlclientui::test
