// What a small part of an export tells of the whole.
#include <cstdint>
#include <filesystem>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/output/ImageExport.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

namespace fs = std::filesystem;

class ExportSamples : public test::ExportFixture {
 protected:
  static constexpr int side = 1500;

  ExportSamples() {
    test::RasterRecipe recipe;
    recipe.width = recipe.height = side;
    recipe.type = GDT_Int16;
    recipe.finish = [](GDALDataset& raster) {
      std::vector<std::int16_t> row(side);
      for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
          row[static_cast<std::size_t>(x)] = static_cast<std::int16_t>((x * 7 + y * 13 + x * y / 64) % 1000);
        EXPECT_EQ(raster.GetRasterBand(1)->RasterIO(GF_Write, 0, y, side, 1, row.data(), side, 1, GDT_Int16,
                                                    0, 0, nullptr),
                  CE_None);
      }
    };
    makeRaster("even.tif", recipe);
    service_ = service((folder() / "even.tif").string());
  }

  [[nodiscard]] GetImageRequest asked(const std::string& format, int columns) const {
    GetImageRequest made;
    made.grid = {service_->record().facts.envelope, columns, columns};
    made.format = format;
    made.fileName = out("image");
    made.file = made.fileName;
    return made;
  }
  [[nodiscard]] ExportSample sampleOf(const GetImageRequest& request) const {
    return sampleExport(service_->record(), {0}, request);
  }

  std::shared_ptr<CatalogueImageService> service_;
};

TEST_F(ExportSamples, TellHowLargeTheFileBecomes) {
  for (const std::string compression : {"", "LZ77"}) {
    GetImageRequest request = asked("Tiff", side);
    request.compression = compression;
    const ExportSample sample = sampleOf(request);
    exportImage(service_->record(), {0}, request, {});
    const auto written = static_cast<double>(fs::file_size(request.file));
    EXPECT_NEAR(static_cast<double>(sample.fileBytes), written, written / 5) << compression;
    EXPECT_GT(sample.parts, 4) << "a small part of it is read";
    if (compression.empty()) {
      EXPECT_GE(sample.leastBytes, std::uint64_t{side} * side * 2);
    }
  }
}

TEST_F(ExportSamples, OfASmallImageAreAllOfIt) {
  GetImageRequest request = asked("Tiff", 100);
  request.grid.extent = {500000, 5140000, 510000, 5150000};
  const ExportSample sample = sampleOf(request);
  EXPECT_EQ(sample.parts, 1);
  exportImage(service_->record(), {0}, request, {});
  EXPECT_EQ(sample.fileBytes, fs::file_size(out("image")));
}

TEST_F(ExportSamples, LeaveNoFileBehind) {
  static_cast<void>(sampleOf(asked("Tiff", side)));
  EXPECT_TRUE(fs::is_empty(fs::path(out("image")).parent_path()));
}

TEST_F(ExportSamples, RefuseWhatTheExportRefuses) {
  EXPECT_THROW(static_cast<void>(sampleOf(asked("JPEG", side))), RuntimeFailure) << "16 bits do not fit in";
  EXPECT_THROW(static_cast<void>(sampleOf(asked("Painting", side))), RuntimeFailure);
  GetImageRequest own = asked("Tiff", side);
  own.file = folder() / "even.tif";
  EXPECT_THROW(static_cast<void>(sampleOf(own)), RuntimeFailure) << "the service itself is made from that";
}

}  // namespace
}  // namespace vlclientui::client
