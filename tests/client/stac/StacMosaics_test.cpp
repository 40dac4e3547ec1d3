// A mosaic of a catalogue beside the same one of this machine.
#include <algorithm>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "client/ServiceFixture.h"
#include "client/facade/NetworkServers.h"
#include "client/reach/Places.h"
#include "client/stac/StacFixture.h"
#include "support/TestFolders.h"

namespace vlclientui::client::stac {
namespace {

using vlclientui::test::elementContent;
using vlclientui::test::GetImage;
using vlclientui::test::StaticServer;

class StacMosaics : public vlclientui::test::ServiceFixture {
 protected:
  StacMosaics() {
    addNetworkServers(*server_);
    Places::shared().pointAt(samplesFolder());
  }

  using Service = std::shared_ptr<CatalogueImageService>;

  [[nodiscard]] Service remote(const std::string& name) const {
    return service("ImageService://" + sampleServer().address() + "/catalog.json/" + name);
  }
  /// The same mosaic as a definition, its sources in the order of their dates.
  [[nodiscard]] Service local(const std::string& name, const std::vector<std::string>& sources) const {
    std::string rows;
    for (const std::string& source : sources) {
      rows += "<Source><File>" + samplesFolder() + "/" + name + ".sources/" + source + ".tif</File></Source>";
    }
    writeText("local.VLDef",
              "<Vorlane><MosaicDefinition><Sources>" + rows + "</Sources></MosaicDefinition></Vorlane>");
    return service((folder() / "local.VLDef").string());
  }
  [[nodiscard]] std::vector<double> exported(CatalogueImageService& made, const Bounds& extent, int columns,
                                             int rows) {
    GetImage request;
    request.extent = extent;
    request.columns = columns;
    request.rows = rows;
    request.fileName = out("x" + std::to_string(++exports_) + ".tif");
    made.ExportProperties(request.document());
    EXPECT_TRUE(made.ExportImage()) << made.status();
    return vlclientui::test::valuesOf(request.fileName);
  }
  static void setProperties(CatalogueImageService& made, const std::string& content) {
    made.setServiceProperties("<Vorlane><ImageServiceProperties>" + content +
                              "</ImageServiceProperties></Vorlane>");
  }
  [[nodiscard]] static std::vector<std::string> opened(const CatalogueImageService& made) {
    std::vector<std::string> names;
    for (const ImageSource& source : made.record().sources) {
      if (source.factsFrom == FactsFrom::File) names.push_back(source.name);
    }
    return names;
  }
  /// The sample catalogue's study, to be changed by a test.
  void copyStudy() const {
    std::filesystem::create_directories(folder() / "a/study");
    std::filesystem::create_directories(folder() / "images/Imagery");
    std::filesystem::copy(sampleCatalogue() / "Imagery/Overlap_Study", folder() / "a/study");
    std::filesystem::copy(samplesFolder() + "/Imagery/Overlap_Study.sources",
                          folder() / "images/Imagery/Overlap_Study.sources",
                          std::filesystem::copy_options::recursive);
  }

  int exports_ = 0;
};

const std::string study = "Imagery/Overlap_Study";
const std::vector<std::string> studyByDate = {"sheet_green", "sheet_blue", "sheet_red"};

TEST_F(StacMosaics, HaveThePixelsOfTheSameMosaicOfThisMachine) {
  const Service there = remote(study);
  const Service here = local(study, studyByDate);
  const Bounds whole = here->facts().envelope;
  EXPECT_EQ(there->facts().envelope, whole);
  EXPECT_EQ(there->facts().columns, here->facts().columns);
  EXPECT_EQ(there->facts().srsWkt, here->facts().srsWkt);
  EXPECT_EQ(exported(*there, whole, 280, 220), exported(*here, whole, 280, 220));
  const Bounds part{461000, 5152000, 466000, 5156000};
  EXPECT_EQ(exported(*there, part, 77, 31), exported(*here, part, 77, 31));
}

TEST_F(StacMosaics, OfManyItemsHaveThePixelsOfTheSameMosaicOfThisMachine) {
  const std::string name = "Imagery/Valley/Ortho_Mosaic";
  const Service there = remote(name);
  std::vector<std::string> byDate;
  for (const ImageSource& source : there->record().sources) byDate.push_back(source.name);
  const Service here = local(name, byDate);
  EXPECT_EQ(there->facts().envelope, here->facts().envelope);
  const Bounds whole = here->facts().envelope;
  EXPECT_EQ(exported(*there, whole, 966, 728), exported(*here, whole, 966, 728));
  EXPECT_EQ(exported(*there, whole, 200, 150), exported(*here, whole, 200, 150));
}

TEST_F(StacMosaics, OpenOnlyTheItemsThatAnImageShows) {
  const Service made = remote(study);
  EXPECT_EQ(opened(*made), std::vector<std::string>{"sheet_green"}) << "the first, as a sample";
  EXPECT_EQ(made->drawImage({460000, 5151500, 461000, 5152500}, 10, 10).width, 10);
  EXPECT_EQ(opened(*made), (std::vector<std::string>{"sheet_green", "sheet_red"}));
  EXPECT_EQ(made->drawImage({466000, 5151500, 467000, 5152500}, 10, 10).width, 10);
  EXPECT_EQ(opened(*made), studyByDate);
}

TEST_F(StacMosaics, OpenOnlyTheItemsThatAnExportShows) {
  const Service made = remote(study);
  EXPECT_FALSE(exported(*made, {460000, 5151500, 461000, 5152500}, 40, 40).empty());
  EXPECT_EQ(opened(*made), (std::vector<std::string>{"sheet_green", "sheet_red"}));
}

TEST_F(StacMosaics, DoNotOpenItemsForTheirDocuments) {
  const Service made = remote(study);
  EXPECT_NE(made->GetImageMetadata("Detailed").find("sheet_blue"), std::string::npos);
  EXPECT_EQ(opened(*made), std::vector<std::string>{"sheet_green"});
}

TEST_F(StacMosaics, LieByTheAttributesOfTheirItems) {
  const Service made = remote(study);
  const auto top = [&] {
    const std::string order = elementContent(made->GetImageMetadata("Detailed"), "SourcesFromTop");
    return elementContent(order, "RasterName");
  };
  EXPECT_EQ(top(), "sheet_red") << "the newest";
  const std::string byDate =
      "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>datetime</TileOrderField>";
  setProperties(*made, byDate + "<TileOrderBase>2019-08-01</TileOrderBase>");
  EXPECT_EQ(made->drawImage(made->facts().envelope, 28, 22).height, 22);
  EXPECT_EQ(top(), "sheet_green");
  setProperties(*made, byDate + "<TileOrderBase>2020-06-30</TileOrderBase>");
  EXPECT_EQ(made->drawImage(made->facts().envelope, 28, 22).height, 22);
  EXPECT_EQ(top(), "sheet_blue");
  setProperties(*made,
                "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>eo:cloud_cover</TileOrderField>"
                "<TileOrderBase>0</TileOrderBase>");
  EXPECT_EQ(made->drawImage(made->facts().envelope, 28, 22).height, 22);
  EXPECT_EQ(top(), "sheet_green");
}

TEST_F(StacMosaics, AreLockedToAnItemByItsId) {
  const Service made = remote(study);
  setProperties(*made, "<MosaicMethod>LockRaster</MosaicMethod><LockImageID>sheet_blue</LockImageID>");
  const Thumbnail picture = made->drawImage(made->facts().envelope, 28, 22);
  EXPECT_EQ(picture.rgba[3], 0) << "the corner of another item is empty";
  EXPECT_EQ(opened(*made), (std::vector<std::string>{"sheet_green", "sheet_blue"}));
}

TEST_F(StacMosaics, TellTheAttributesAndPlacesOfTheirItems) {
  const Service made = remote(study);
  EXPECT_EQ(made->drawImage({460000, 5151500, 461000, 5152500}, 10, 10).width, 10);
  const std::string raster = elementContent(made->GetImageMetadata("Detailed"), "Raster");
  EXPECT_EQ(elementContent(raster, "RasterName"), "sheet_red");
  EXPECT_EQ(elementContent(raster, "datetime"), "2021-05-12T10:00:00Z");
  EXPECT_EQ(elementContent(raster, "eo_cloud_cover"), "5");
  EXPECT_EQ(elementContent(raster, "Source"),
            sampleServer().address() + "/images/Imagery/Overlap_Study.sources/sheet_red.tif");
  EXPECT_NE(raster.find("GeoTIFF"), std::string::npos);
  const std::string whole = made->GetMetaData("");
  EXPECT_EQ(elementContent(whole, "Keywords"), "Arven Valley");
  EXPECT_EQ(elementContent(whole, "Dates"), "2019-08-30 to 2021-05-12");
}

TEST_F(StacMosaics, LeaveAHoleWhereAnItemCannotBeReadAndTellIt) {
  copyStudy();
  std::filesystem::remove(folder() / "images/Imagery/Overlap_Study.sources/sheet_red.tif");
  writeText("images/Imagery/Overlap_Study.sources/sheet_blue.tif", "no raster at all");
  const StaticServer web(folder());
  const Service made = service("ImageService://" + web.address() + "/a/study/collection.json/Overlap_Study");
  const Thumbnail picture = made->drawImage({460000, 5151500, 467000, 5157000}, 28, 22);
  const auto alphaAt = [&](int column, int row) {
    return picture.rgba[static_cast<std::size_t>(row * 28 + column) * 4 + 3];
  };
  EXPECT_EQ(alphaAt(0, 21), 0) << "red lies there alone";
  EXPECT_EQ(alphaAt(27, 21), 0) << "and blue there";
  EXPECT_EQ(alphaAt(10, 1), 255);
  const std::string basic = made->GetImageMetadata("Basic");
  EXPECT_NE(basic.find("The image lacks source rasters."), std::string::npos);
  EXPECT_NE(basic.find("The source raster sheet_red is left out: "), std::string::npos) << basic;
  EXPECT_NE(basic.find("The source raster sheet_blue is left out: "), std::string::npos) << basic;
  EXPECT_FALSE(exported(*made, {460000, 5151500, 467000, 5157000}, 28, 22).empty()) << "as of a definition";
}

TEST_F(StacMosaics, ShowAnotherImageOfEachItemWhereThePropertiesSaySo) {
  copyStudy();
  for (const std::string& name : studyByDate) {
    const std::filesystem::path file = folder() / "a/study" / (name + ".json");
    std::ifstream in(file);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    const std::string visual = "\"assets\":{";
    text.insert(
        text.find(visual) + visual.size(),
        R"("other":{"href":"../../images/Imagery/Overlap_Study.sources/sheet_blue.tif","type":"image/tiff"},)");
    std::ofstream(file) << text;
  }
  const StaticServer web(folder());
  const Service made = service("ImageService://" + web.address() + "/a/study/collection.json/Overlap_Study");
  EXPECT_EQ(elementContent(made->ServiceProperties(), "Asset"), "visual");
  const Bounds blue{463000, 5151500, 467000, 5155500};
  const auto usual = exported(*made, {460000, 5151500, 467000, 5157000}, 280, 220);
  setProperties(*made, "<Asset>other</Asset>");
  EXPECT_EQ(elementContent(made->ServiceProperties(), "Asset"), "other");
  EXPECT_EQ(made->record().sources.size(), 3U);
  EXPECT_NE(exported(*made, {460000, 5151500, 467000, 5157000}, 280, 220), usual);
  const Service sheet = service(samplesFolder() + "/Imagery/Overlap_Study.sources/sheet_blue.tif");
  EXPECT_EQ(exported(*made, blue, 160, 160), exported(*sheet, blue, 160, 160));
  setProperties(*made, "<Asset>visual</Asset>");
  EXPECT_EQ(exported(*made, {460000, 5151500, 467000, 5157000}, 280, 220), usual);
}

TEST_F(StacMosaics, AskAServiceOnlyForItemsInTheirArea) {
  const StacApi api({"--made=12000", "--page=500"});
  const Service made =
      service("ImageService://" + api.address() + "/collections/Overlap_Study/Overlap_Study");
  EXPECT_EQ(made->record().sources.size(), 500U) << "of 12,000 the first page";
  const auto before = api.requests().size();
  const Bounds first = made->record().sources.front().facts.envelope;
  EXPECT_EQ(
      made->drawImage({first.xMin + 1, first.yMin + 1, first.xMin + 101, first.yMin + 101}, 10, 10).width,
      10);
  const auto requests = api.requests();
  ASSERT_EQ(requests.size(), before + 1);
  EXPECT_NE(requests.back().find("/items?bbox="), std::string::npos) << requests.back();
}

}  // namespace
}  // namespace vlclientui::client::stac
