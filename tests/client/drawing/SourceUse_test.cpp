#include "client/drawing/SourceUse.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <ogr_spatialref.h>

#include "client/RasterFixture.h"
#include "client/raster/SystemTexts.h"

namespace vlclientui::client {
namespace {

using Flags = std::vector<bool>;
using Positions = std::vector<std::size_t>;

/// A mosaic over a grid of 10 by 10 cells, each 100 wide. Only sources with holes have a file.
class SourceUses : public test::RasterFixture {
 protected:
  SourceUses() {
    OGRSpatialReference system;
    EXPECT_EQ(system.importFromEPSG(32632), OGRERR_NONE);
    setSystem(service_.facts, system);
    service_.kind = ServiceKind::Mosaic;
  }

  ImageSource& add(const Bounds& place, const std::string& name = "nowhere.tif") {
    ImageSource source{folder() / name, "1", {}, service_.facts, place};
    source.facts.columns = static_cast<std::int64_t>(place.xMax - place.xMin) / 100;
    source.facts.rows = static_cast<std::int64_t>(place.yMax - place.yMin) / 100;
    service_.sources.push_back(source);
    order_.push_back(order_.size());
    return service_.sources.back();
  }

  /// Covers the whole grid; its left half is a hole by value.
  void addHalf() {
    test::RasterRecipe recipe;
    recipe.width = recipe.height = 10;
    recipe.transform = {500000, 100, 0, 5101000, 0, -100};
    recipe.finish = [](GDALDataset& raster) {
      raster.GetRasterBand(1)->SetNoDataValue(0);
      std::vector<std::uint8_t> right(50, 7);
      EXPECT_EQ(raster.GetRasterBand(1)->RasterIO(GF_Write, 5, 0, 5, 10, right.data(), 5, 10, GDT_Byte, 0, 0,
                                                  nullptr),
                CE_None);
    };
    makeRaster("half.tif", recipe);
    add(grid_.extent, "half.tif").facts.mayHaveHoles = true;
  }

  [[nodiscard]] std::vector<SourceUse> uses() const { return sourceUses(service_, order_, grid_); }
  [[nodiscard]] Flags visible() const {
    Flags flags;
    for (const SourceUse& use : uses()) flags.push_back(use.isVisible);
    return flags;
  }
  [[nodiscard]] Positions positions() const {
    Positions all;
    for (const SourceUse& use : uses()) all.push_back(use.position);
    return all;
  }

  /// A rectangle in cells from the lower left corner.
  static Bounds cells(double left, double bottom, double right, double top) {
    return {500000 + left * 100, 5100000 + bottom * 100, 500000 + right * 100, 5100000 + top * 100};
  }

  OutputGrid grid_{cells(0, 0, 10, 10), 10, 10};
  ImageServiceRecord service_;
  std::vector<std::size_t> order_;
};

TEST_F(SourceUses, CountPositionsFromTheTop) {
  for (int i = 0; i < 3; ++i) add(grid_.extent);
  EXPECT_EQ(positions(), (Positions{3, 2, 1}));
  order_ = {2, 0, 1};
  EXPECT_EQ(positions(), (Positions{2, 1, 3}));
}

TEST_F(SourceUses, HaveNoPositionWhereTheMethodLeavesTheSourceOut) {
  for (int i = 0; i < 3; ++i) add(grid_.extent);
  order_ = {1};
  EXPECT_EQ(positions(), (Positions{0, 1, 0}));
  EXPECT_EQ(visible(), (Flags{false, true, false}));
  EXPECT_TRUE(uses()[0].isInWindow);
  EXPECT_FALSE(uses()[0].takesPart);
}

TEST_F(SourceUses, BeginInsideOfTheWindow) {
  struct Case {
    Bounds place;
    bool isInWindow;
  };
  const std::vector<Case> cases = {
      {cells(10, 0, 20, 10), false}, {cells(-5, 0, 0, 10), false},    {cells(0, 10, 10, 12), false},
      {cells(0, -3, 10, 0), false},  {cells(9.5, 9.5, 20, 20), true}, {cells(-5, -5, 20, 20), true},
      {cells(4, 4, 5, 5), true},     {cells(9.99, 0, 20, 10), true},
  };
  for (const Case& each : cases) add(each.place);
  const std::vector<SourceUse> found = uses();
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(found[i].isInWindow, cases[i].isInWindow) << i;
    EXPECT_EQ(found[i].takesPart, cases[i].isInWindow) << i;
    EXPECT_EQ(found[i].position > 0, cases[i].isInWindow) << i;
  }
}

TEST_F(SourceUses, AreHiddenBelowASourceWithoutHoles) {
  add(cells(2, 2, 8, 8));
  add(grid_.extent);
  EXPECT_EQ(visible(), (Flags{false, true}));
  EXPECT_TRUE(uses()[0].takesPart);
}

TEST_F(SourceUses, AreHiddenBelowSeveralSourcesTogether) {
  add(grid_.extent);
  add(cells(0, 0, 5, 10));
  add(cells(5, 0, 10, 10));
  EXPECT_EQ(visible(), (Flags{false, true, true}));
  service_.sources[2].place = cells(6, 0, 10, 10);
  EXPECT_EQ(visible(), (Flags{true, true, true}));
}

TEST_F(SourceUses, OfASourceSmallerThanACellHaveTheCellAroundIt) {
  add(cells(3.1, 3.1, 3.2, 3.2));
  EXPECT_EQ(visible(), (Flags{true}));
  add(cells(3.7, 3.7, 3.8, 3.8));
  EXPECT_EQ(visible(), (Flags{false, true}));
}

TEST_F(SourceUses, LookThroughHoles) {
  add(cells(0, 0, 4, 10));
  add(cells(6, 0, 10, 10));
  addHalf();
  EXPECT_EQ(visible(), (Flags{true, false, true}));
}

TEST_F(SourceUses, OfASourceWhoseHolesAloneAreFreeAreNone) {
  addHalf();
  add(cells(5, 0, 10, 10));
  EXPECT_EQ(visible(), (Flags{false, true}));
}

TEST_F(SourceUses, FollowTheNoDataValueOfAPerson) {
  add(grid_.extent);
  addHalf();
  EXPECT_EQ(visible(), (Flags{true, true}));
  service_.sources.erase(service_.sources.begin());
  order_ = {0};
  service_.pixels.noData = 7;
  add(cells(6, 0, 10, 10)).factsFrom = FactsFrom::Catalogue;
  order_ = {1, 0};
  EXPECT_EQ(visible(), (Flags{true, true}));
  service_.pixels.noData = 9;
  EXPECT_EQ(visible(), (Flags{true, false}));
}

TEST_F(SourceUses, OfAFileThatCannotBeReadShowAndHideNothing) {
  add(grid_.extent);
  add(grid_.extent).facts.mayHaveHoles = true;
  EXPECT_EQ(visible(), (Flags{true, false}));
  EXPECT_TRUE(uses()[1].takesPart);
}

TEST_F(SourceUses, OpenNoFileOfWhichACatalogueToldTheFacts) {
  add(grid_.extent);
  ImageSource& told = add(grid_.extent);
  told.facts.mayHaveHoles = true;
  told.factsFrom = FactsFrom::Catalogue;
  EXPECT_EQ(visible(), (Flags{false, true}));
}

TEST_F(SourceUses, OpenNoFileThatIsHidden) {
  add(grid_.extent).facts.mayHaveHoles = true;
  add(grid_.extent);
  EXPECT_EQ(visible(), (Flags{false, true}));
  EXPECT_EQ(uses()[0].resampling, Resampling::Nearest);
}

TEST_F(SourceUses, TellASourceOfAnotherSystemAsTurned) {
  add(grid_.extent).facts.srsWkt = "another";
  add(grid_.extent);
  EXPECT_TRUE(uses()[0].isTurned);
  EXPECT_FALSE(uses()[1].isTurned);
}

TEST_F(SourceUses, TellHowPixelsAreTaken) {
  add(grid_.extent);
  EXPECT_EQ(uses()[0].resampling, Resampling::Nearest);
  service_.sources[0].facts.columns = 40;
  EXPECT_EQ(uses()[0].resampling, Resampling::Average);
  service_.pixels.resampling = Resampling::Bilinear;
  EXPECT_EQ(uses()[0].resampling, Resampling::Bilinear);
  service_.sources[0].facts.hasLabels = true;
  EXPECT_EQ(uses()[0].resampling, Resampling::Nearest);
}

TEST_F(SourceUses, OfAVeryLargeImageAreJudgedOnFewerCells) {
  grid_.columns = grid_.rows = 1000000;
  add(cells(0, 0, 5, 10));
  add(grid_.extent);
  EXPECT_EQ(visible(), (Flags{false, true}));
}

}  // namespace
}  // namespace vlclientui::client
