// Files whose address holds a key, as sources of a mosaic.
#include "client/facade/MosaicReading.h"
#include "client/ranges/RangeFixture.h"
#include "client/raster/GeographicBounds.h"
#include "client/raster/RasterReader.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client::ranges {
namespace {

namespace fs = std::filesystem;
using vlclientui::test::FaultProxy;

class SignedFiles : public RangeFixture {
 protected:
  [[nodiscard]] MosaicSource source(const std::string& file, const std::string& key) const {
    MosaicSource told;
    told.file = rangeRasterName(server_.address(file) + "?sig=" + key);
    told.rasterId = told.name = file;
    return told;
  }
  [[nodiscard]] static ImageServiceRecord read(std::vector<MosaicSource> sources) {
    CatalogueEntry entry{EntryKind::Mosaic, {}, "m", {}};
    entry.definition.sources = std::move(sources);
    MosaicReading mosaic(std::move(entry), [](const std::vector<fs::path>& files) {
      std::vector<RasterResult> results;
      GeographicBounds geographic;
      for (const fs::path& file : files) results.push_back(readRasterFacts(file.string(), geographic));
      return results;
    });
    ImageServiceRecord service;
    service.kind = ServiceKind::Mosaic;
    return mosaic.read(std::move(service), {});
  }

  FaultProxy server_{fs::path(folder_)};
};

TEST_F(SignedFiles, ThatAreNoImagesLeaveAHoleInTheMosaic) {
  make("a.tif", "GTiff", 100);
  write("page.tif", "<html>no image</html>");
  server_.always("wants=parameter:sig:geheim");
  const ImageServiceRecord service = read({source("/a.tif", "geheim"), source("/page.tif", "geheim")});
  EXPECT_EQ(service.sources.size(), 1U);
  ASSERT_EQ(service.problems.size(), 1U);
  EXPECT_EQ(service.problems[0].reason.find("geheim"), std::string::npos) << service.problems[0].reason;
}

TEST_F(SignedFiles, ThatMayComeBackEndTheMosaicInWordsWithoutTheirKey) {
  make("a.tif", "GTiff", 100);
  server_.always("wants=parameter:sig:geheim");
  try {
    const auto service = read({source("/a.tif", "geheim"), source("/a.tif", "veraltet")});
    FAIL() << "what the server refuses for now is no hole: " << service.sources.size() << " are left";
  } catch (const RuntimeFailure& failure) {
    EXPECT_NE(failure.description().find("/a.tif?sig=***"), std::string::npos) << failure.description();
    EXPECT_EQ(failure.description().find("veraltet"), std::string::npos) << failure.description();
  }
}

}  // namespace
}  // namespace vlclientui::client::ranges
