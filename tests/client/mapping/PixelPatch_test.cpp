#include "client/mapping/PixelPatch.h"

#include <array>
#include <cmath>
#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "client/mapping/PatchReading.h"
#include "client/waiting/Wait.h"

namespace vlclientui::client {
namespace {

/// Rasters in memory, read in patches.
class PixelPatches : public testing::Test {
 protected:
  /// @param valueAt of column and row.
  void make(int width, int height, GDALDataType type, const std::function<double(int, int)>& valueAt) {
    DatasetPtr dataset(
        GetGDALDriverManager()->GetDriverByName("MEM")->Create("", width, height, 1, type, nullptr));
    for (int row = 0; row < height; ++row) {
      std::vector<double> line;
      for (int column = 0; column < width; ++column) line.push_back(valueAt(column, row));
      EXPECT_EQ(dataset->GetRasterBand(1)->RasterIO(GF_Write, 0, row, width, 1, line.data(), width, 1,
                                                    GDT_Float64, 0, 0, nullptr),
                CE_None);
    }
    raster_ = preparedForMap(std::move(dataset), {}, noData_);
  }

  [[nodiscard]] PixelPatch read(int step, const Window& window, Reduction reduction = Reduction::Mean) const {
    PixelPatch patch;
    EXPECT_EQ(readPatch(*raster_, {0, step, window, {1}, reduction}, patch), ReadingEnd::Whole);
    return patch;
  }

  GdalScope scope_;
  std::optional<double> noData_;
  std::unique_ptr<OpenRaster> raster_;
};

TEST_F(PixelPatches, HoldThePixelsOfTheirWindow) {
  make(1500, 1200, GDT_UInt16, [](int column, int row) { return column + row; });
  const PixelPatch patch = read(1, {700, 500, 600, 650});
  EXPECT_EQ(patch.window, (Window{700, 500, 600, 650}));
  for (int row = 0; row < 650; row += 7) {
    for (int column = 0; column < 600; column += 7) {
      ASSERT_EQ(patch.samples[patch.index(column, row)], static_cast<float>(1200 + column + row));
    }
  }
}

TEST_F(PixelPatches, AreCutAtTheEdgesOfTheRaster) {
  make(10, 7, GDT_Byte, [](int column, int) { return column; });
  EXPECT_EQ(read(1, {6, 4, 50, 50}).window, (Window{6, 4, 4, 3}));
  EXPECT_EQ(read(3, {0, 0, 50, 50}).window, (Window{0, 0, 4, 3}));
}

TEST_F(PixelPatches, AreMeansOfThePixelsThatGoIntoOne) {
  make(1100, 4, GDT_Float32, [](int column, int row) { return column * 10 + row; });
  const PixelPatch patch = read(4, {0, 0, 275, 1});
  EXPECT_EQ(patch.across, 4);
  for (int column = 0; column < 275; ++column) {
    EXPECT_FLOAT_EQ(patch.samples[static_cast<std::size_t>(column)],
                    static_cast<float>(column * 40 + 15) + 1.5F);
  }
}

TEST_F(PixelPatches, LeaveHolesOutOfMeans) {
  noData_ = 99;
  make(4, 2, GDT_Byte, [](int column, int) { return column == 0 ? 10 : 99; });
  const PixelPatch patch = read(2, {0, 0, 2, 1});
  EXPECT_EQ(patch.samples[0], 10);
  EXPECT_EQ(patch.alpha, (std::vector<std::uint8_t>{255, 0}));
}

TEST_F(PixelPatches, PickPixelsOfClasses) {
  make(8, 8, GDT_Byte, [](int column, int row) { return column / 4 * 100 + row / 4; });
  const PixelPatch patch = read(4, {0, 0, 2, 2}, Reduction::Pick);
  EXPECT_EQ(patch.samples, (std::vector<float>{0, 100, 1, 101}));
}

TEST_F(PixelPatches, HaveHolesWhereThereIsNoNumber) {
  make(2, 1, GDT_Float32, [](int column, int) { return column == 0 ? std::nan("") : 5; });
  EXPECT_EQ(read(1, {0, 0, 2, 1}).alpha, (std::vector<std::uint8_t>{0, 255}));
}

TEST_F(PixelPatches, HaveHolesWhereNoValueIsANumberHoweverOpaque) {
  DatasetPtr dataset(
      GetGDALDriverManager()->GetDriverByName("MEM")->Create("", 2, 1, 2, GDT_Float32, nullptr));
  std::array<float, 2> values = {std::nanf(""), 3};
  std::array<float, 2> opaque = {255, 255};
  for (int band = 1; band <= 2; ++band) {
    EXPECT_EQ(
        dataset->GetRasterBand(band)->RasterIO(GF_Write, 0, 0, 2, 1, (band == 1 ? values : opaque).data(), 2,
                                               1, GDT_Float32, 0, 0, nullptr),
        CE_None);
  }
  dataset->GetRasterBand(2)->SetColorInterpretation(GCI_AlphaBand);
  raster_ = preparedForMap(std::move(dataset), {}, noData_);
  ASSERT_EQ(raster_->alpha, 2);
  const PixelPatch patch = read(1, {0, 0, 2, 1});
  EXPECT_EQ(patch.alpha[0], 0);
  EXPECT_EQ(patch.alpha[1], 255);
}

TEST_F(PixelPatches, OfFewBlocksAreMeansOfSomePixels) {
  make(4096, 4096, GDT_UInt16, [](int column, int row) { return column + row; });
  PixelPatch patch;
  const Window reach{0, 0, 4096, 4096};
  ASSERT_EQ(readSparsely(*raster_, reach, 256, {1}, Reduction::Mean, patch), ReadingEnd::Whole);
  EXPECT_EQ(patch.window, (Window{0, 0, 16, 16}));
  for (int row = 0; row < 16; ++row) {
    for (int column = 0; column < 16; ++column) {
      const double middle = (column + row + 1) * 256;
      EXPECT_NEAR(patch.samples[patch.index(column, row)], middle, 2);
    }
  }
}

TEST_F(PixelPatches, AreGivenUpBetweenPieces) {
  make(64, 64, GDT_Byte, [](int, int) { return 1; });
  CancelToken token;
  const WaitScope scope(nullptr, token);
  token.cancel();
  PixelPatch patch;
  EXPECT_EQ(readPatch(*raster_, {0, 1, {0, 0, 64, 64}, {1}, Reduction::Mean}, patch), ReadingEnd::GivenUp);
  EXPECT_EQ(readSparsely(*raster_, {0, 0, 64, 64}, 8, {1}, Reduction::Mean, patch), ReadingEnd::GivenUp);
}

/// Gives up its own work after some blocks were read, and counts those that are read all the same.
class CountingBand : public GDALRasterBand {
 public:
  CountingBand(GDALDataset& owner, CancelToken token, int most) : token_(std::move(token)), most_(most) {
    poDS = &owner;
    nBand = 1;
    eDataType = GDT_Byte;
    nRasterXSize = nRasterYSize = 8192;
    nBlockXSize = nBlockYSize = 256;
  }
  [[nodiscard]] int count() const { return count_; }

 protected:
  CPLErr IReadBlock(int, int, void* values) override {
    std::fill_n(static_cast<std::uint8_t*>(values), 256 * 256, std::uint8_t{1});
    if (++count_ == most_) token_.cancel();
    return CE_None;
  }

 private:
  CancelToken token_;
  int most_;
  int count_ = 0;
};

class CountingRaster : public GDALDataset {
 public:
  CountingRaster(const CancelToken& token, int most) {
    nRasterXSize = nRasterYSize = 8192;
    auto band = std::make_unique<CountingBand>(*this, token, most);
    band_ = band.get();
    SetBand(1, band.release());
  }
  [[nodiscard]] int count() const { return band_->count(); }

 private:
  CountingBand* band_;
};

// A piece is four blocks here: so many may still be read, of more than a thousand.
TEST_F(PixelPatches, AreGivenUpInsideOneLongRead) {
  CancelToken token;
  const WaitScope scope(nullptr, token);
  auto* counting = new CountingRaster(token, 10);
  raster_ = preparedForMap(DatasetPtr(counting), {}, std::nullopt);
  PixelPatch patch;
  EXPECT_EQ(readPatch(*raster_, {0, 32, {0, 0, 256, 256}, {1}, Reduction::Mean}, patch), ReadingEnd::GivenUp);
  EXPECT_GE(counting->count(), 10);
  EXPECT_LE(counting->count(), 14);
}

TEST_F(PixelPatches, OfFewBlocksReadOneOfSixteen) {
  auto* counting = new CountingRaster(CancelToken(), -1);
  raster_ = preparedForMap(DatasetPtr(counting), {}, std::nullopt);
  PixelPatch patch;
  EXPECT_EQ(readSparsely(*raster_, {0, 0, 8192, 8192}, 8, {1}, Reduction::Mean, patch), ReadingEnd::Whole);
  EXPECT_EQ(counting->count(), 32 * 32 / 16);
}

}  // namespace
}  // namespace vlclientui::client
