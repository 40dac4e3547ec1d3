#include <array>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "support/TestFolders.h"

namespace vlclientui::client {
namespace {

using test::GetImage;

class SampleRasterExports : public test::ExportFixture {
 protected:
  SampleRasterExports() {
    server_ = std::make_shared<CatalogueServer>(xml(), CatalogueSettings{samplesFolder(), {}});
  }

  [[nodiscard]] GetImage whole(const std::string& name, const std::string& format) const {
    const auto made = service("ImageService://localhost/" + name);
    GetImage wanted = request(format, "sample.out");
    wanted.extent = made->record().facts.envelope;
    wanted.columns = static_cast<int>(made->record().facts.columns);
    wanted.rows = static_cast<int>(made->record().facts.rows);
    wanted.quality = "100";
    return wanted;
  }
};

/// One of the six entries, with its usual settings.
struct Choice {
  const char* format;
  const char* compression;
  const char* tileSize;
  const char* quality;
  double bound;  ///< of the root of the mean square of the differences from the source; 0 for none at all
};

constexpr std::array<Choice, 6> choices = {{{"Tiff", "", "None", "0", 0},
                                            {"Tiff", "JPEG", "256", "75", 10},
                                            {"Tiff", "LZ77", "512", "75", 0},
                                            {"JPEG", "", "None", "80", 10},
                                            {"JPEG2000", "", "None", "100", 0},
                                            {"PNG", "", "None", "0", 0}}};

/// A sample, and for each of the six whether its pixels fit in.
struct Sample {
  const char* name;
  std::array<bool, 6> fits;
};

constexpr std::array<Sample, 5> samples = {
    {{"Elevation/Terrain_30m", {true, false, true, false, true, false}},
     {"Elevation/Shaded_Relief_30m", {true, true, true, true, true, true}},
     {"Landcover/Land_Cover_2021", {true, false, true, false, true, true}},
     {"Imagery/Valley/Scene_2021-07-14", {true, false, true, false, true, false}},
     {"World/EGM96_Geoid", {true, false, true, false, false, false}}}};

double meanDifference(const std::vector<double>& one, const std::vector<double>& other) {
  if (one.size() != other.size() || one.empty()) return HUGE_VAL;
  double sum = 0;
  for (std::size_t i = 0; i < one.size(); ++i) sum += (one[i] - other[i]) * (one[i] - other[i]);
  return std::sqrt(sum / static_cast<double>(one.size()));
}

// Without the transparency that takes the place of a mask, as the last band.
std::vector<double> valuesLike(const std::string& file, std::size_t count) {
  std::vector<double> values = test::valuesOf(file);
  if (values.size() > count) values.resize(count);
  return values;
}

// The place is exact. A pixel size that is no binary fraction is computed back from the edges and may differ
// in the last digit.
void expectSame(const GetImage& wanted, const std::string& source, double bound) {
  const std::vector<double> expectedValues = test::valuesOf(source);
  EXPECT_LE(meanDifference(valuesLike(wanted.fileName, expectedValues.size()), expectedValues), bound);
  const OutputGrid grid{wanted.extent, wanted.columns, wanted.rows};
  const auto place = test::transformOf(wanted.fileName);
  EXPECT_EQ(place, (std::array<double, 6>{grid.extent.xMin, grid.pixelWidth(), 0, grid.extent.yMax, 0,
                                          -grid.pixelHeight()}));
  const auto expected = test::transformOf(source);
  for (std::size_t i = 0; i < place.size(); ++i) {
    EXPECT_NEAR(place.at(i), expected.at(i), 1e-11 * std::abs(expected.at(i)));
  }
  EXPECT_EQ(test::systemOf(wanted.fileName), test::systemOf(source));
}

TEST_F(SampleRasterExports, IsWhatTheLibraryReadsOfTheSourceInEveryFormatThatHoldsIt) {
  for (const Sample& sample : samples) {
    for (std::size_t i = 0; i < choices.size(); ++i) {
      const Choice& choice = choices.at(i);
      SCOPED_TRACE(std::string(sample.name) + " " + choice.format + " " + choice.compression);
      GetImage wanted = whole(sample.name, choice.format);
      wanted.compression = choice.compression;
      wanted.tileSize = choice.tileSize;
      wanted.quality = choice.quality;
      const std::string message = exportFrom(sample.name, wanted);
      if (sample.fits.at(i)) {
        EXPECT_EQ(message, "");
        expectSame(wanted, samplesFolder() + "/" + sample.name + ".tif", choice.bound);
      } else {
        EXPECT_TRUE(test::holds(message, "would work")) << message;
      }
    }
  }
}

TEST_F(SampleRasterExports, ShowsTheLockedSourceOfTheMosaicInEveryFormat) {
  const std::string source = samplesFolder() + "/Imagery/Valley/Ortho_Mosaic.sources/ortho_06.tif";
  for (const Choice& choice : choices) {
    SCOPED_TRACE(std::string(choice.format) + " " + choice.compression);
    const auto made = service("ImageService://localhost/Imagery/Valley/Ortho_Mosaic");
    made->setServiceProperties(
        "<Vorlane><ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>6</LockImageID>"
        "</ImageServiceProperties></Vorlane>");
    GetImage wanted = request(choice.format, "sample.out");
    wanted.extent = {461720, 5152760, 464720, 5155760};
    wanted.columns = 300;
    wanted.rows = 300;
    wanted.compression = choice.compression;
    wanted.tileSize = choice.tileSize;
    wanted.quality = choice.quality;
    made->ExportProperties(wanted.document());
    ASSERT_TRUE(made->ExportImage()) << made->status();
    expectSame(wanted, source, choice.bound);
  }
}

TEST_F(SampleRasterExports, WritesTheMosaicInEveryFormat) {
  GetImage wanted = whole("Imagery/Valley/Ortho_Mosaic", "");
  wanted.columns = 600;
  wanted.rows = 400;
  for (const std::string& format :
       {std::string("Tiff"), std::string("JPEG"), std::string("JPEG2000"), std::string("PNG")}) {
    wanted.format = format;
    ASSERT_EQ(exportFrom("Imagery/Valley/Ortho_Mosaic", wanted), "") << format;
    const std::size_t bands = format == "PNG" ? 4 : 3;
    EXPECT_EQ(test::valuesOf(wanted.fileName).size(), 600U * 400U * bands) << format;
  }
}

TEST_F(SampleRasterExports, HeightsOutsideTheSourceAreNotANumber) {
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
