// Elements with the right name in the wrong place are ignored by every page, in both windows.

#include "metadata/MetadataPaths.h"

#include <functional>

#include "frame/ThreadState.h"
#include "support/MetadataFixture.h"

namespace vlclientui {
namespace {

using test::imageXml;
using Texts = std::vector<std::string>;

/// A decoy in front of the real element: a search by name alone finds it first.
std::string astray(const std::string& children) { return "<Astray>" + children + "</Astray>"; }

const std::string wrongImage =
    "<ImageMetadata><Basic><Wrong/></Basic><BufferSize>2048</BufferSize><Status>3</Status><Detailed><Rasters>"
    "<Raster><Info><RasterId>99</RasterId></Info></Raster></Rasters><ProcessMetadata><Wrong/>"
    "</ProcessMetadata><ProcessMetadataAvailable>True</ProcessMetadataAvailable></Detailed></ImageMetadata>";

class MetadataPaths : public test::MetadataFixture {
 protected:
  void inBoth(const std::function<void(const std::string& window)>& check) {
    openPage();
    check("the page");
    openOneWindow();
    check("the window");
  }
  [[nodiscard]] bool pageHolds(const std::string& part) const {
    return page().AttributeDefinition().find(part) != std::string::npos ||
           page().FormDefinition().find(part) != std::string::npos ||
           page().DataXml().find(part) != std::string::npos;
  }
  static std::string imageBehind(const std::string& strays, const std::string& basic,
                                 const std::string& detailed) {
    const std::string xml = imageXml(basic, detailed);
    const std::string root = "<Vorlane>";
    return root + strays + xml.substr(root.size());
  }
};

TEST_F(MetadataPaths, AnImageOutsideTheClientIsNone) {
  imageMetadata = imageBehind(astray(wrongImage) + wrongImage, "", "");
  inBoth([this](const std::string& window) {
    EXPECT_EQ(nodeKeys(), (Texts{"Service", "Image", "ServerProcess"})) << window;
    clickNode("Image");
    EXPECT_EQ(page().DataXml(), "") << window;
    clickNode("ServerProcess");
    EXPECT_EQ(lastEngineValue("DataXml"), "<ServerProcess/>") << window;
  });
}

TEST_F(MetadataPaths, TheImageIsFoundBehindOthersOfItsNames) {
  imageMetadata = imageBehind(
      astray(wrongImage) + wrongImage,
      "<Basic><Inner><BufferSize>100000</BufferSize><Status>9</Status></Inner><BufferSize>2048</BufferSize>"
      "</Basic>",
      "<Detailed><Rasters>" + test::rasterXml({}) +
          "</Rasters><ProcessMetadata><Right/></ProcessMetadata></Detailed>");
  inBoth([this](const std::string& window) {
    clickNode("Image");
    EXPECT_NE(page().DataXml().find("<Inner><BufferSize>100000</BufferSize><Status>9</Status></Inner>"
                                    "<BufferSize>2</BufferSize>"),
              std::string::npos)
        << window << page().DataXml();
    clickNode("ServerProcess");
    EXPECT_EQ(lastEngineValue("DataXml"), "<ProcessMetadata><Right/></ProcessMetadata>") << window;
    clickNode("Raster");
    EXPECT_EQ(controls->RasterList.entries(), (Texts{"north - 1"})) << window;
    // Only the other image says that process data exist.
    EXPECT_EQ(controls->TabStrip1.captions(), (Texts{"Information", "Metadata", "Attributes"})) << window;
  });
}

TEST_F(MetadataPaths, TheStatusIsFoundBehindOthersOfItsName) {
  imageMetadata = imageBehind(astray("<Status>1</Status>"),
                              "<Basic><Inner><Status>2</Status></Inner><Status>3</Status></Basic>", "");
  openPage();
  clickNode("Image");
  EXPECT_NE(page().DataXml().find("<Inner><Status>2</Status></Inner><Status>text of &lt;Status&gt;3&lt;"),
            std::string::npos)
      << page().DataXml();
}

TEST_F(MetadataPaths, ARecordIsReadWhereItsGroupsStand) {
  const std::string groups =
      "<Info><RasterId>9</RasterId><RasterName>wrong</RasterName><Visible>maybe</Visible></Info>"
      "<Metadata><Wrong/></Metadata><Attributes><Wrong>1</Wrong></Attributes><ProcessMetadata><Wrong/>"
      "</ProcessMetadata>";
  const std::string whole = test::rasterXml({});
  const std::string start = "<Raster>";
  imageMetadata =
      imageXml("", "<Detailed><Rasters>" + start + astray(groups) + whole.substr(start.size()) + start +
                       astray(groups) +
                       "<Info><RasterId>2</RasterId><Visible>1</Visible></Info></Raster></Rasters>"
                       "<ProcessMetadataAvailable>True</ProcessMetadataAvailable></Detailed>");
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    ASSERT_EQ(controls->RasterList.entries(), (Texts{"north - 1", "north - 2"})) << window;
    EXPECT_NE(page().DataXml().find("<RasterName>north</RasterName>"), std::string::npos) << window;
    EXPECT_FALSE(pageHolds("wrong")) << window;
    clickRasterTab("Attributes");
    EXPECT_EQ(controls->ListView1.rows(), (std::vector<ReportList::Row>{{"Year", "1998"}})) << window;
    clickRasterTab("Process");
    EXPECT_EQ(lastEngineValue("DataXml"), "<ProcessMetadata><Step>warp</Step></ProcessMetadata>") << window;
    clickRasterTab("Metadata");
    EXPECT_EQ(lastEngineValue("DataXml"), "<Metadata><Sensor>frame</Sensor></Metadata>") << window;
    controls->RasterList.userSelects(1);
    EXPECT_EQ(lastEngineValue("DataXml"), "<Metadata/>") << window;
    clickRasterTab("Process");
    EXPECT_EQ(lastEngineValue("DataXml"), "<ProcessMetadata/>") << window;
    clickRasterTab("Attributes");
    EXPECT_TRUE(controls->ListView1.rows().empty()) << window;
  });
}

TEST_F(MetadataPaths, MetadataOfARasterAnywhereKeepTheTab) {
  imageMetadata =
      imageBehind(astray("<Raster><Metadata/></Raster>"), "",
                  "<Detailed><Rasters>" + test::rasterXml({.metadata = ""}) + "</Rasters></Detailed>");
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    EXPECT_EQ(controls->TabStrip1.captions().at(1), "Metadata") << window;
  });
}

TEST_F(MetadataPaths, DefinitionsAreCutOutOfTheirOwnPlacesInTheFiles) {
  const std::string strays = astray(
      "<ImageMetadata><Basic><Wrong/></Basic></ImageMetadata><KeyDetails><Wrong/></KeyDetails>"
      "<Vorlane><Wrong/></Vorlane><Info><Wrong/></Info>");
  for (const std::string& path : {threadState().ClientXADefPath, threadState().ClientXfdefPath}) {
    const std::string root = "<Vorlane>";
    const std::string whole = system->readFile(path);
    // The form definition of the image has no step of the client, its attribute definition has.
    const std::string other = path == threadState().ClientXADefPath
                                  ? "<ImageMetadata><Basic><Wrong/></Basic></ImageMetadata>"
                                  : "<Client><ImageMetadata><Basic><Wrong/></Basic></ImageMetadata></Client>";
    system->writeFile(path, root + strays + other + whole.substr(root.size()));
  }
  serviceInfo = "<Vorlane>" + astray("<KeyDetails><Wrong/></KeyDetails>") +
                "<ImageServiceInfo><KeyDetails><Right/></KeyDetails></ImageServiceInfo></Vorlane>";
  inBoth([this](const std::string& window) {
    for (const std::string key : {"Service", "Image", "Raster"}) {
      clickNode(key);
      EXPECT_FALSE(pageHolds("Wrong")) << window << key;
      EXPECT_NE(page().AttributeDefinition().find("<A_"), std::string::npos) << window << key;
      EXPECT_NE(page().FormDefinition().find("<F_"), std::string::npos) << window << key;
    }
    clickNode("Service");
    EXPECT_TRUE(pageHolds("<Right/>")) << window;
    clickServiceTab("Properties");
    EXPECT_EQ(page().FormDefinition(), "<Vorlane><F_Properties/></Vorlane>") << window;
    clickServiceTab("Information");
  });
}

TEST_F(MetadataPaths, MethodsOutsideTheServicesPropertiesAllowNoLock) {
  service->answers["GetDefinition 1"] =
      "<XADef><Vorlane>" + astray("<MosaicMethod MosaicMethod_LIST_='Lock Raster'/>") +
      "<ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='By Attribute'/></ImageServiceProperties>"
      "</Vorlane></XADef>";
  inBoth([this](const std::string& window) {
    clickNode("Raster");
    EXPECT_FALSE(controls->Command7.visible()) << window;
  });
}

TEST_F(MetadataPaths, ALockIsWrittenIntoTheServicesPropertiesAlone) {
  openPage();
  clickNode("Raster");
  const std::string strays = astray("<MosaicMethod>kept</MosaicMethod><LockImageID>kept</LockImageID>");
  threadState().gServicePropertiesXml =
      "<Vorlane>" + strays +
      "<ImageServiceProperties><MosaicMethod>Viewpoint</MosaicMethod></ImageServiceProperties></Vorlane>";
  controls->Command7.click.raise();
  EXPECT_EQ(threadState().gServicePropertiesXml,
            "<Vorlane>" + strays +
                "<ImageServiceProperties><MosaicMethod>LockRaster</MosaicMethod><LockImageID>1</LockImageID>"
                "</ImageServiceProperties></Vorlane>");
}

}  // namespace
}  // namespace vlclientui
