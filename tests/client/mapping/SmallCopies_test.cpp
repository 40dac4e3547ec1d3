#include "client/mapping/SmallCopies.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "client/mapping/BlockDrawer.h"
#include "client/mapping/CopiesFixture.h"
#include "client/mapping/CopyWriting.h"

namespace vlclientui::client {
namespace {

using End = SmallCopies::End;

class SmallCopiesOfRasters : public test::CopiesFixture {
 protected:
  void make(const std::filesystem::path& raster) { EXPECT_EQ(copies_->make(raster, {}), End::Made); }
  /// All of it on a map of its own system. @param copies may be null.
  [[nodiscard]] ServicePicture wholeOf(const Drawing& drawing,
                                       std::shared_ptr<const SmallCopies> copies) const {
    RasterHandles handles(4, std::move(copies));
    const RasterFacts& facts = drawing.service->facts;
    return *ServicePainter(drawing, {}, handles)
                .paint({facts.srsWkt, {facts.envelope, 205, 205}}, Pass::Fine);
  }
  void expectAlike(const std::string& name) {
    const Drawing drawing = drawingOf(name);
    const ServicePicture whole = wholeOf(drawing, nullptr);
    const ServicePicture small = wholeOf(drawing, copies_);
    ASSERT_EQ(whole.rgba.size(), small.rgba.size());
    std::size_t holes = 0;
    std::size_t others = 0;
    for (std::size_t i = 0; i < whole.rgba.size(); i += 4) {
      holes += whole.rgba[i + 3] == 0 ? 1 : 0;
      others += std::abs(whole.rgba[i + 3] - small.rgba[i + 3]) > 40 ? 1 : 0;
      if (whole.rgba[i + 3] > 0 && small.rgba[i + 3] > 0) {
        ASSERT_NEAR(whole.rgba[i], small.rgba[i], 3) << name << " " << i / 4;
      }
    }
    EXPECT_GT(holes, 100U) << name;
    // Along the edges of holes.
    EXPECT_LT(others, holes / 2) << name;
    EXPECT_LT(others, whole.rgba.size() / 4 / 100) << name;
  }

  std::shared_ptr<SmallCopies> copies_ = std::make_shared<SmallCopies>(copiesFolder(), roomy);
};

TEST_F(SmallCopiesOfRasters, StandInTheirOwnFolderAndNowhereElse) {
  const auto raster = makeLarge("data/a.tif");
  EXPECT_FALSE(copies_->find(raster));
  std::vector<double> shares;
  EXPECT_EQ(copies_->make(raster, [&](double share) { shares.push_back(share); }), End::Made);
  ASSERT_EQ(kept().size(), 1U);
  EXPECT_EQ(copies_->find(raster), kept().front());
  EXPECT_EQ(copies_->version(), 1U);
  EXPECT_GT(copies_->bytes(), 1000U);
  EXPECT_TRUE(std::ranges::is_sorted(shares));
  EXPECT_EQ(shares.back(), 1);
  const std::filesystem::directory_iterator beside(raster.parent_path());
  EXPECT_EQ(std::distance(begin(beside), end(beside)), 1);
}

TEST_F(SmallCopiesOfRasters, AreTheirOwnersAlone) {
  make(makeLarge("a.tif"));
  EXPECT_EQ(std::filesystem::status(copiesFolder()).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(SmallCopiesOfRasters, OfAnotherProgramAreSeenByWhoAskedForThem) {
  const auto raster = makeLarge("a.tif");
  SmallCopies other(copiesFolder(), roomy);
  make(raster);
  const auto before = other.version();
  EXPECT_EQ(other.make(raster, {}), End::Made);
  EXPECT_NE(other.version(), before);
  EXPECT_EQ(kept().size(), 1U);
}

TEST_F(SmallCopiesOfRasters, BelongToTheFileAsItWas) {
  const auto raster = makeLarge("a.tif");
  make(raster);
  const auto first = kept();
  std::filesystem::last_write_time(raster,
                                   std::filesystem::last_write_time(raster) + std::chrono::seconds(2));
  EXPECT_FALSE(copies_->find(raster));
  make(raster);
  ASSERT_EQ(kept().size(), 1U);
  EXPECT_NE(kept(), first);
}

TEST_F(SmallCopiesOfRasters, LeaveNothingWhenTheyAreGivenUp) {
  const auto raster = makeLarge("a.tif");
  CancelToken token;
  const WaitScope scope(nullptr, token);
  int calls = 0;
  const auto end = copies_->make(raster, [&](double) {
    ++calls;
    token.cancel();
  });
  EXPECT_EQ(end, End::GivenUp);
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(kept().empty());
  EXPECT_FALSE(copies_->find(raster));
}

TEST_F(SmallCopiesOfRasters, OfLongAgoMakeRoom) {
  const auto one = makeLarge("one.tif");
  const auto two = makeLarge("two.tif");
  const auto three = makeLarge("three.tif");
  make(one);
  const auto bytes = copies_->bytes();
  SmallCopies few(copiesFolder(), bytes * 5 / 2);
  EXPECT_EQ(few.make(two, {}), End::Made);
  const auto used = few.find(one);
  ASSERT_TRUE(used);
  std::filesystem::last_write_time(*few.find(two),
                                   std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_EQ(few.make(three, {}), End::Made);
  EXPECT_TRUE(few.find(one));
  EXPECT_FALSE(few.find(two));
  EXPECT_TRUE(few.find(three));
  EXPECT_LE(few.bytes(), bytes * 5 / 2);
}

TEST_F(SmallCopiesOfRasters, AreRefusedWhereTheyCannotBeKeptOrNeedNotBe) {
  const auto raster = makeLarge("a.tif");
  SmallCopies none(copiesFolder(), 1000);
  EXPECT_THROW(static_cast<void>(none.make(raster, {})), RuntimeFailure);
  EXPECT_TRUE(kept().empty());
  EXPECT_THROW(static_cast<void>(copies_->make(makeRaster("small.tif"), {})), RuntimeFailure);
  EXPECT_THROW(static_cast<void>(copies_->make(folder() / "none.tif", {})), RuntimeFailure);
  SmallCopies nowhere(raster / "folder", roomy);
  EXPECT_THROW(static_cast<void>(nowhere.make(raster, {})), RuntimeFailure);
}

TEST_F(SmallCopiesOfRasters, ShowTheSamePixelsAndHoles) {
  const auto withNoData = makeLarge("nodata.tif", [](GDALDataset& dataset) {
    std::vector<std::uint8_t> block(600 * 600, 7);
    GDALRasterBand& band = *dataset.GetRasterBand(1);
    ASSERT_EQ(band.RasterIO(GF_Write, 500, 900, 600, 600, block.data(), 600, 600, GDT_Byte, 0, 0, nullptr),
              CE_None);
    band.SetNoDataValue(7);
  });
  const auto withMask = makeLarge("mask.tif", [](GDALDataset& dataset) {
    ASSERT_EQ(dataset.CreateMaskBand(GMF_PER_DATASET), CE_None);
    std::vector<std::uint8_t> block(500 * 700, 0);
    GDALRasterBand& mask = *dataset.GetRasterBand(1)->GetMaskBand();
    ASSERT_EQ(mask.Fill(255), CE_None);
    ASSERT_EQ(mask.RasterIO(GF_Write, 1000, 2000, 500, 700, block.data(), 500, 700, GDT_Byte, 0, 0, nullptr),
              CE_None);
  });
  const auto withAlpha = makeLarge(
      "alpha.tif",
      [](GDALDataset& dataset) {
        GDALRasterBand& alpha = *dataset.GetRasterBand(2);
        ASSERT_EQ(alpha.Fill(255), CE_None);
        std::vector<std::uint8_t> block(900 * 800, 0);
        ASSERT_EQ(
            alpha.RasterIO(GF_Write, 3000, 100, 900, 800, block.data(), 900, 800, GDT_Byte, 0, 0, nullptr),
            CE_None);
      },
      2, "ALPHA=YES");
  for (const auto& raster : {withNoData, withMask, withAlpha}) {
    make(raster);
    expectAlike(raster.stem().string());
  }
}

TEST_F(SmallCopiesOfRasters, AddLevelsToTheirRaster) {
  const auto raster = makeLarge("a.tif");
  make(raster);
  const Drawing drawing = drawingOf("a");
  const auto levelsBy = [&](const std::shared_ptr<const SmallCopies>& copies, const Drawing& wish) {
    RasterHandles handles(4, copies);
    return handles.raster(*wish.service, wish.service->sources.front())->levels.size();
  };
  EXPECT_EQ(levelsBy(nullptr, drawing), 1U);
  EXPECT_GT(levelsBy(copies_, drawing), 2U);
  // Its pixels are means without other holes.
  EXPECT_EQ(levelsBy(copies_, drawingOf("a", "<NoData>30</NoData>")), 1U);
  std::ofstream(kept().front(), std::ios::trunc) << "damaged";
  EXPECT_EQ(levelsBy(copies_, drawing), 1U);
}

TEST_F(SmallCopiesOfRasters, AreDrawnInBlocksOfHostsToo) {
  makeLarge("a.tif");
  make(folder() / "a.tif");
  const RasterFacts facts = drawingOf("a").service->facts;
  const AskedBlock far{facts.srsWkt, {facts.envelope, 40, 40}};
  const auto red = [&](BlockDrawer& drawer) {
    return drawer.draw(layerOf("a"), far)->rgba[4 * 20 * 40 + 80];
  };
  BlockDrawer without;
  BlockDrawer with(copies_);
  const int before = red(without);
  EXPECT_NEAR(red(with), before, 3);
  // What only the copy holds.
  auto* const copy = static_cast<GDALDataset*>(GDALOpen(kept().front().c_str(), GA_Update));
  ASSERT_NE(copy, nullptr);
  GDALRasterBand& band = *copy->GetRasterBand(1);
  const double other = before > 127 ? 10 : 245;
  EXPECT_EQ(band.Fill(other), CE_None);
  for (int i = 0; i < band.GetOverviewCount(); ++i) EXPECT_EQ(band.GetOverview(i)->Fill(other), CE_None);
  GDALClose(copy);
  BlockDrawer anew(copies_);
  EXPECT_NEAR(red(anew), other, 3);
  EXPECT_EQ(red(without), before);
}

TEST_F(SmallCopiesOfRasters, AreTakenUpByHandlesThatAreOpen) {
  const auto raster = makeLarge("a.tif");
  const Drawing drawing = drawingOf("a");
  RasterHandles handles(4, copies_);
  const ImageSource& source = drawing.service->sources.front();
  EXPECT_EQ(handles.raster(*drawing.service, source)->levels.size(), 1U);
  make(raster);
  handles.lookAgain();
  EXPECT_GT(handles.raster(*drawing.service, source)->levels.size(), 1U);
}

}  // namespace
}  // namespace vlclientui::client
