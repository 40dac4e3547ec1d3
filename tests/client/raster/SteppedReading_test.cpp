#include "client/raster/SteppedReading.h"

#include <chrono>
#include <cstdint>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"
#include "client/raster/GdalScope.h"
#include "client/raster/SteppedRaster.h"

namespace vlclientui::client {
namespace {

using Shares = std::vector<double>;

constexpr Window whole{0, 0, 8, 4};

class SteppedRead : public test::RasterFixture {
 protected:
  [[nodiscard]] DatasetPtr raster() const {
    test::RasterRecipe recipe;
    recipe.height = 4;
    recipe.bands = 2;
    recipe.finish = [](GDALDataset& d) {
      for (int i = 0; i < 64; ++i) {
        auto value = static_cast<std::uint8_t>(i + 1);
        EXPECT_EQ(d.GetRasterBand(i / 32 + 1)
                      ->RasterIO(GF_Write, i % 8, i % 32 / 8, 1, 1, &value, 1, 1, GDT_Byte, 0, 0, nullptr),
                  CE_None);
      }
    };
    return openRaster(makeRaster("a.tif", recipe).string());
  }

  [[nodiscard]] PixelTarget target() {
    return {reinterpret_cast<std::byte*>(values_.data()), GDT_Byte, 2, nullptr, 1, 8, 32};
  }

  std::vector<std::uint8_t> values_ = std::vector<std::uint8_t>(64, 0);
};

TEST_F(SteppedRead, TellsOfEveryStepUpToTheWhole) {
  const DatasetPtr source = raster();
  Shares told;
  EXPECT_TRUE(readInSteps(*source, whole, target(), 16, [&](double share) {
    told.push_back(share);
    return true;
  }));
  EXPECT_EQ(told, (Shares{0.25, 0.5, 0.75, 1}));
  for (std::size_t i = 0; i < values_.size(); ++i) EXPECT_EQ(values_[i], i + 1);
}

TEST_F(SteppedRead, EndsBehindTheStepThatIsTheLastOneWanted) {
  const DatasetPtr source = raster();
  EXPECT_FALSE(readInSteps(*source, whole, target(), 16, [](double share) { return share < 0.5; }));
  EXPECT_EQ(values_[15], 16);
  EXPECT_EQ(values_[16], 0);
  EXPECT_EQ(values_[32 + 15], 48);
}

/// A fake source with one long step, which reports its progress as the library's sources do.
class SlowBand : public GDALRasterBand {
 public:
  SlowBand() {
    nRasterXSize = 1;
    nRasterYSize = 1;
    nBlockXSize = 1;
    nBlockYSize = 1;
    eDataType = GDT_Byte;
  }
  int told = 0;

 protected:
  CPLErr IReadBlock(int, int, void*) override { return CE_None; }
  CPLErr IRasterIO(GDALRWFlag, int, int, int, int, void*, int, int, GDALDataType, GSpacing, GSpacing,
                   GDALRasterIOExtraArg* extra) override {
    for (; told < 100; ++told) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      if (extra->pfnProgress(told / 100.0, nullptr, extra->pProgressData) == 0) return CE_Failure;
    }
    return CE_None;
  }
};

class SlowRaster : public GDALDataset {
 public:
  SlowRaster() {
    nRasterXSize = 1;
    nRasterYSize = 1;
    SetBand(1, new SlowBand);
  }
};

TEST(SlowStep, CanBeEndedWithin) {
  SlowRaster source;
  std::byte value{};
  Shares told;
  EXPECT_FALSE(
      readInSteps(source, {0, 0, 1, 1}, {&value, GDT_Byte, 1, nullptr, 1, 1, 1}, 1, [&](double share) {
        told.push_back(share);
        return told.size() < 2;
      }));
  ASSERT_EQ(told.size(), 2U);
  EXPECT_GT(told[0], 0);
  EXPECT_GT(told[1], told[0]);
  EXPECT_LT(static_cast<SlowBand*>(source.GetRasterBand(1))->told, 99);
}

class SteppedRasters : public SteppedRead {};

TEST_F(SteppedRasters, HoldThePixelsOfTheOther) {
  const DatasetPtr source = raster();
  Shares told;
  SteppedRaster steps(*source, 8, [&](double share) {
    told.push_back(share);
    return true;
  });
  ASSERT_EQ(steps.GetRasterCount(), 2);
  for (const int row : {0, 2}) {
    EXPECT_EQ(steps.RasterIO(GF_Read, 0, row, 8, 2, values_.data() + row * 8, 8, 2, GDT_Byte, 2, nullptr, 1,
                             8, 32, nullptr),
              CE_None);
  }
  for (std::size_t i = 0; i < values_.size(); ++i) EXPECT_EQ(values_[i], i + 1);
  EXPECT_EQ(told, (Shares{0.125, 0.25, 0.375, 0.5, 0.625, 0.75, 0.875, 1}));
}

TEST_F(SteppedRasters, FailToBeReadOnceThatIsEnded) {
  const DatasetPtr source = raster();
  SteppedRaster steps(*source, 8, [](double) { return false; });
  EXPECT_EQ(
      steps.RasterIO(GF_Read, 0, 0, 8, 4, values_.data(), 8, 4, GDT_Byte, 2, nullptr, 1, 8, 32, nullptr),
      CE_Failure);
  EXPECT_EQ(values_[8], 0);
}

}  // namespace
}  // namespace vlclientui::client
