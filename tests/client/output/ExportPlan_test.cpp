#include "client/output/ExportPlan.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "client/raster/GdalScope.h"
#include "client/raster/Text.h"
#include "contracts/RuntimeFailure.h"
#include "documents/ExportFormats.h"

namespace vlclientui::client {
namespace {

class ExportPlans : public testing::Test {
 protected:
  static GetImageRequest request(const std::string& format, int columns, int rows) {
    GetImageRequest wanted;
    wanted.format = format;
    wanted.grid = {{0, 0, 1, 1}, columns, rows};
    return wanted;
  }

  static bool has(const ExportPlan& plan, const std::string& option) {
    return std::find(plan.options.begin(), plan.options.end(), option) != plan.options.end();
  }

  static std::string predictor(GDALDataType type, bool isPalette = false) {
    GetImageRequest wanted = request("Tiff", 10, 10);
    wanted.compression = "LZ77";
    for (const std::string& option : planExport(wanted, {type, 1, isPalette}).options) {
      if (option.starts_with("PREDICTOR=")) return option.substr(10);
    }
    return "(none)";
  }

  GdalScope scope_;
};

TEST_F(ExportPlans, TiffBecomesBigWhenItCouldPassFourGigabytes) {
  EXPECT_TRUE(has(planExport(request("Tiff", 60000, 60000), {}), "BIGTIFF=NO"));
  EXPECT_TRUE(has(planExport(request("Tiff", 60500, 60500), {}), "BIGTIFF=YES"));
  EXPECT_TRUE(has(planExport(request("Tiff", 30000, 30000), {GDT_Float64, 1}), "BIGTIFF=YES"));
}

TEST_F(ExportPlans, EveryFormatOfTheWindowHasADriver) {
  for (const ExportFormat& format : exportFormats()) {
    GetImageRequest wanted = request(lowered(rowOf(format.file).requestName), 10, 10);
    wanted.compression = requestName(format.compression);
    const ExportPlan plan = planExport(wanted, {});
    EXPECT_NE(GDALGetDriverByName(plan.driver.c_str()), nullptr) << format.entry;
  }
}

TEST_F(ExportPlans, AFormatOrCompressionOfNoTableIsRefusedWithTheNamesThatWouldWork) {
  const auto refusal = [](const GetImageRequest& wanted) -> std::string {
    try {
      (void)planExport(wanted, {});
    } catch (const RuntimeFailure& failure) {
      return failure.description();
    }
    return "(not refused)";
  };
  EXPECT_EQ(refusal(request("BMP", 10, 10)),
            "There is no format \"BMP\"; Tiff, JPEG, JPEG2000 and PNG would work.");
  GetImageRequest wanted = request("Tiff", 10, 10);
  wanted.compression = "LZW";
  EXPECT_EQ(refusal(wanted), "TIFF has no compression \"LZW\" here; none, JPEG and LZ77 would work.");
}

TEST_F(ExportPlans, PredictorSuitsTheData) {
  EXPECT_EQ(predictor(GDT_Byte), "2");
  EXPECT_EQ(predictor(GDT_Int32), "2");
  EXPECT_EQ(predictor(GDT_Float32), "3");
  EXPECT_EQ(predictor(GDT_Float64), "3");
  EXPECT_EQ(predictor(GDT_Byte, true), "1");
  EXPECT_EQ(predictor(GDT_CFloat32), "1");
}

TEST_F(ExportPlans, SizesBeyondAFormatAreRefused) {
  EXPECT_NO_THROW((void)planExport(request("JPEG", 65500, 1), {}));
  EXPECT_THROW((void)planExport(request("JPEG", 65501, 1), {}), RuntimeFailure);
  EXPECT_THROW((void)planExport(request("JPEG", 1, 65501), {}), RuntimeFailure);
  EXPECT_NO_THROW((void)planExport(request("PNG", 1000000, 1), {}));
  EXPECT_THROW((void)planExport(request("PNG", 1000001, 1), {}), RuntimeFailure);
  GetImageRequest strips = request("Tiff", 65501, 1);
  strips.compression = "JPEG";
  EXPECT_THROW((void)planExport(strips, {}), RuntimeFailure);
  strips.tileSize = 256;
  EXPECT_NO_THROW((void)planExport(strips, {}));
}

TEST_F(ExportPlans, Jpeg2000KeepsAllAtFullQualityOnly) {
  GetImageRequest wanted = request("JPEG2000", 10, 10);
  EXPECT_TRUE(has(planExport(wanted, {}), "REVERSIBLE=YES"));
  wanted.quality = 75;
  EXPECT_TRUE(has(planExport(wanted, {}), "QUALITY=18.75"));
  wanted.quality = 1;
  EXPECT_TRUE(has(planExport(wanted, {}), "QUALITY=0.25"));
}

TEST_F(ExportPlans, PngTakesASecondOrFourthBandForTransparencyOnly) {
  const auto plan = [](int bands, bool hasAlpha) {
    PixelKind pixels{GDT_Byte, bands};
    pixels.hasAlpha = hasAlpha;
    return planExport(request("PNG", 10, 10), pixels);
  };
  for (const int bands : {1, 3}) EXPECT_NO_THROW((void)plan(bands, false)) << bands;
  for (const int bands : {2, 4}) EXPECT_NO_THROW((void)plan(bands, true)) << bands;
  for (const int bands : {2, 4, 5}) EXPECT_THROW((void)plan(bands, false), RuntimeFailure) << bands;
  for (const int bands : {3, 5}) EXPECT_THROW((void)plan(bands, true), RuntimeFailure) << bands;
  try {
    (void)plan(4, false);
    FAIL() << "not refused";
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(
        failure.description(),
        "PNG cannot hold this service's 4 bands of type Byte; it holds 1 or 3 bands of type Byte or UInt16, "
        "with or without one for transparency. TIFF would work.");
  }
}

TEST_F(ExportPlans, MasksGoIntoTheFileWhereTheFormatHasAPlaceForThem) {
  const auto placeIn = [](const std::string& format, bool isPalette) {
    PixelKind pixels{GDT_Byte, 1, isPalette};
    pixels.hasMask = true;
    return planExport(request(format, 10, 10), pixels).mask;
  };
  EXPECT_EQ(placeIn("Tiff", false), MaskPlace::InFile);
  EXPECT_EQ(placeIn("Tiff", true), MaskPlace::InFile);
  EXPECT_EQ(placeIn("PNG", false), MaskPlace::Alpha);
  EXPECT_EQ(placeIn("PNG", true), MaskPlace::BesideFile);
  EXPECT_EQ(placeIn("JPEG", false), MaskPlace::BesideFile);
  EXPECT_EQ(placeIn("JPEG2000", false), MaskPlace::BesideFile);
  EXPECT_EQ(planExport(request("JPEG", 10, 10), {}).mask, MaskPlace::None);
}

TEST_F(ExportPlans, LossIsToldOfEachFormat) {
  const auto fidelity = [](const std::string& format, const std::string& compression, int quality) {
    GetImageRequest wanted = request(format, 10, 10);
    wanted.compression = compression;
    wanted.quality = quality;
    return fidelityOf(wanted);
  };
  EXPECT_EQ(fidelity("Tiff", "", 75), PixelFidelity::Exact);
  EXPECT_EQ(fidelity("TIFF", "LZ77", 75), PixelFidelity::Exact);
  EXPECT_EQ(fidelity("Tiff", "JPEG", 100), PixelFidelity::Lossy);
  EXPECT_EQ(fidelity("JPEG", "", 100), PixelFidelity::Lossy);
  EXPECT_EQ(fidelity("JPEG2000", "", 100), PixelFidelity::Exact);
  EXPECT_EQ(fidelity("JPEG2000", "", 99), PixelFidelity::Lossy);
  EXPECT_EQ(fidelity("PNG", "", 0), PixelFidelity::Exact);
}

TEST_F(ExportPlans, UncompressedTiffNeedsItsWholeSize) {
  EXPECT_EQ(planExport(request("Tiff", 1000, 1000), {GDT_UInt16, 3}).leastBytes, 6000000U);
}

TEST_F(ExportPlans, TooLittleRoomIsRefusedWithBothNumbers) {
  EXPECT_NO_THROW(checkRoom(100, 100, "/data"));
  try {
    checkRoom(std::uint64_t{5} << 20U, std::uint64_t{3} << 20U, "/data");
    FAIL() << "not refused";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("/data has 3 MB"), std::string::npos);
    EXPECT_NE(failure.description().find("at least 5 MB"), std::string::npos);
  }
}

}  // namespace
}  // namespace vlclientui::client
