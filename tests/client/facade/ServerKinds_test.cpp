#include <memory>
#include <string>
#include <utility>

#include <cpl_vsi.h>
#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "client/ExportFixture.h"
#include "client/catalogue/ServerKind.h"
#include "client/raster/GdalScope.h"
#include "client/raster/RasterReader.h"
#include "contracts/RuntimeFailure.h"

namespace vlclientui::client {
namespace {

using test::elementContent;
using test::GetImage;

/// A server whose one service lies in no folder: the raster library opens it by a name of its own.
class SkyServer final : public ServerKind {
 public:
  explicit SkyServer(std::string raster) : raster_(std::move(raster)) {}

  [[nodiscard]] std::optional<CatalogueContent> list(const std::string& server) override {
    if (server != "sky.example") return std::nullopt;
    const RasterResult facts = readRasterFacts(raster_);
    return CatalogueContent{{{"Clouds", entry(), std::get<RasterFacts>(facts), {}}},
                            {{"rain", "it is too wet"}}};
  }

  [[nodiscard]] std::optional<CatalogueEntry> find(const std::string& serverAndName) override {
    if (serverAndName != "sky.example/Clouds") return std::nullopt;
    return entry();
  }

 private:
  [[nodiscard]] CatalogueEntry entry() const { return {EntryKind::Raster, {}, raster_, {}}; }

  std::string raster_;
};

class ServerKinds : public test::ExportFixture {
 protected:
  ServerKinds() {
    const GdalScope scope;
    const DatasetPtr own = openRaster(makeNumbered("own.tif").string());
    const DatasetPtr copy(GetGDALDriverManager()->GetDriverByName("GTiff")->CreateCopy(
        clouds, own.get(), FALSE, nullptr, nullptr, nullptr));
    EXPECT_NE(copy, nullptr);
    server_->addKind(std::make_unique<SkyServer>(clouds));
  }
  ~ServerKinds() override { VSIUnlink(clouds); }

  static constexpr const char* clouds = "/vsimem/clouds.tif";

  [[nodiscard]] std::string answer(const std::string& server) {
    return server_->serverInfo("<Vorlane><Client><ServerInfo><Request><Server>" + server +
                               "</Server></Request></ServerInfo></Client></Vorlane>");
  }
};

TEST_F(ServerKinds, ThatAreAddedAnswerUnderTheirTexts) {
  EXPECT_EQ(elementContent(answer("sky.example"), "Name"), "Clouds");
  ASSERT_EQ(server_->problems().size(), 1U);
  EXPECT_EQ(server_->problems()[0].path, "rain");
  EXPECT_FALSE(server_->folderOf("sky.example"));
}

TEST_F(ServerKinds, LeaveOtherTextsToEachOther) {
  EXPECT_NE(answer("localhost").find("<Name>own</Name>"), std::string::npos);
  EXPECT_EQ(answer("sea.example"), "");
  EXPECT_TRUE(server_->problems().empty());
  EXPECT_THROW((void)service("ImageService://sky.example/Sun"), RuntimeFailure);
}

TEST_F(ServerKinds, GiveServicesThatTellOfThemselves) {
  const auto made = service("ImageService://sky.example/Clouds");
  EXPECT_EQ(elementContent(made->ServiceInfo(), "Name"), "Clouds");
  EXPECT_NE(made->GetImageMetadata("Detailed").find("<Raster>"), std::string::npos);
  EXPECT_NE(made->GetMetaData("").find("<File>"), std::string::npos);
}

TEST_F(ServerKinds, GiveServicesThatAreDrawnAndExportedAsAnyOther) {
  const auto made = service("ImageService://sky.example/Clouds");
  const auto own = service("ImageService://localhost/own");
  const GetImage request = this->request("Tiff", "sky.Tif");
  EXPECT_EQ(made->drawImage(request.extent, 16, 12).rgba, own->drawImage(request.extent, 16, 12).rgba);
  made->ExportProperties(request.document());
  ASSERT_TRUE(made->ExportImage()) << made->status();
  EXPECT_EQ(test::valuesOf(out("sky.Tif")), test::valuesOf((folder() / "own.tif").string()));
}

TEST_F(ServerKinds, GivePicturesForTheList) {
  EXPECT_FALSE(server_->renderThumbnail("ImageService://sky.example/Clouds", 8, 8).isEmpty());
  EXPECT_TRUE(server_->renderThumbnail("ImageService://sky.example/Sun", 8, 8).isEmpty());
}

}  // namespace
}  // namespace vlclientui::client
