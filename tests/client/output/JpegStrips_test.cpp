#include "client/output/JpegStrips.h"

#include <string>
#include <vector>

#include <cpl_string.h>
#include <gtest/gtest.h>

#include "client/ServiceFixture.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

class JpegStrips : public test::RasterFixture {
 protected:
  [[nodiscard]] std::string makeStrips(int width, int height, int bands) const {
    const std::string file = (folder() / "strips.tif").string();
    CPLStringList options;
    for (const std::string& option : jpegStripOptions("90", bands)) options.AddString(option.c_str());
    auto* driver = GetGDALDriverManager()->GetDriverByName("GTiff");
    auto* dataset = driver->Create(file.c_str(), width, height, bands, GDT_Byte, options.List());
    std::vector<std::uint8_t> values;
    for (int i = 0; i < width * height * bands; ++i)
      values.push_back(static_cast<std::uint8_t>(i / width % 200));
    EXPECT_EQ(dataset->RasterIO(GF_Write, 0, 0, width, height, values.data(), width, height, GDT_Byte, bands,
                                nullptr, 0, 0, 0, nullptr),
              CE_None);
    GDALClose(GDALDataset::ToHandle(dataset));
    return file;
  }
};

TEST_F(JpegStrips, JoinToTheSamePixels) {
  const std::string joined = (folder() / "joined.jpg").string();
  for (const int bands : {1, 3}) {
    for (const auto& [width, height] : {std::pair{1, 1}, {16, 16}, {17, 33}, {100, 300}, {333, 8}}) {
      const std::string strips = makeStrips(width, height, bands);
      joinJpegStrips(strips, joined);
      // One decoder smooths colors across the borders of strips, the other stops at them.
      const auto expected = test::valuesOf(strips);
      const auto actual = test::valuesOf(joined);
      ASSERT_EQ(actual.size(), expected.size()) << width << " " << height << " " << bands;
      for (std::size_t i = 0; i < actual.size(); ++i)
        ASSERT_NEAR(actual[i], expected[i], bands == 1 ? 0 : 24) << i;
    }
  }
}

TEST_F(JpegStrips, OtherTiffsAreRefused) {
  const std::string plain = makeRaster("plain.tif").string();
  EXPECT_THROW(joinJpegStrips(plain, folder() / "joined.jpg"), RuntimeFailure);
  EXPECT_THROW(joinJpegStrips(folder() / "none.tif", folder() / "joined.jpg"), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
