#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"

namespace vlclientui::client {
namespace {

using test::GetImage;

class SampleExport : public test::ExportFixture {
 protected:
  SampleExport() {
    server_ = std::make_shared<CatalogueServer>(xml(), CatalogueSettings{VL_SAMPLES_DIR, {}});
  }

  [[nodiscard]] GetImage whole(const std::string& service_, const std::string& format) const {
    const auto made = service("ImageService://localhost/" + service_);
    GetImage wanted = request(format, "sample.out");
    wanted.extent = made->record().facts.envelope;
    wanted.columns = static_cast<int>(made->record().facts.columns);
    wanted.rows = static_cast<int>(made->record().facts.rows);
    wanted.quality = "100";
    return wanted;
  }
};

TEST_F(SampleExport, KeepsEveryPixelOfARasterInEveryFormatThatCan) {
  const std::string source = std::string(VL_SAMPLES_DIR) + "/Elevation/Terrain_30m.tif";
  const auto expected = test::valuesOf(source);
  ASSERT_FALSE(expected.empty());
  for (const std::string& format : {std::string("Tiff"), std::string("JPEG2000")}) {
    const GetImage wanted = whole("Elevation/Terrain_30m", format);
    ASSERT_EQ(exportFrom("Elevation/Terrain_30m", wanted), "") << format;
    EXPECT_TRUE(test::valuesOf(wanted.fileName) == expected) << format;
    EXPECT_EQ(test::transformOf(wanted.fileName), test::transformOf(source)) << format;
    EXPECT_EQ(test::systemOf(wanted.fileName), test::systemOf(source)) << format;
  }
}

TEST_F(SampleExport, WritesTheMosaicInEveryFormat) {
  GetImage wanted = whole("Imagery/Valley/Ortho_Mosaic", "");
  wanted.columns = 600;
  wanted.rows = 400;
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("JPEG2000"), std::string("PNG")}) {
    wanted.format = format;
    ASSERT_EQ(exportFrom("Imagery/Valley/Ortho_Mosaic", wanted), "") << format;
    EXPECT_EQ(test::valuesOf(wanted.fileName).size(), 600U * 400U * 3U) << format;
  }
}

TEST_F(SampleExport, HeightsOutsideTheSourceAreNotANumber) {
  GetImage wanted = whole("World/EGM96_Geoid", "Tiff");
  const double width = wanted.extent.xMax - wanted.extent.xMin;
  wanted.extent = {wanted.extent.xMax - width / 4, -30, wanted.extent.xMax + width / 4, 30};
  wanted.columns = 40;
  wanted.rows = 10;
  ASSERT_EQ(exportFrom("World/EGM96_Geoid", wanted), "");
  const auto values = test::valuesOf(wanted.fileName);
  ASSERT_EQ(values.size(), 400U);
  EXPECT_FALSE(std::isnan(values[0]));
  const double empty = values[39];
  EXPECT_TRUE(std::isnan(empty) || empty < -1000) << empty;
}

}  // namespace
}  // namespace vlclientui::client
