#include "client/catalogue/MosaicDefinition.h"

#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "client/RasterFixture.h"

namespace vlclientui::client {
namespace {

class MosaicDefinitionFile : public test::RasterFixture {
 protected:
  [[nodiscard]] auto read(const std::string& text) const {
    return readMosaicDefinition(writeText("m.VLDef", text), xml());
  }
  [[nodiscard]] std::string failure(const std::string& text) const {
    const auto result = read(text);
    const auto* reason = std::get_if<MosaicReadFailure>(&result);
    return reason != nullptr ? *reason : "(none)";
  }
};

TEST_F(MosaicDefinitionFile, TellsNamesSourcesAndAttributesInOrder) {
  const auto result = read(
      "<Vorlane><MosaicDefinition><Name>M</Name><Title>A title</Title><Region>Here</Region>"
      "<PixelSource>Camera</PixelSource><SourceFolder>parts</SourceFolder><Sources>"
      "<Source><File>parts/b.tif</File><RasterId>7</RasterId><Attributes>"
      "<CloudCover>3</CloudCover><AcquisitionDate>2020-01-02</AcquisitionDate></Attributes></Source>"
      "<Source><File>../a.tif</File></Source></Sources></MosaicDefinition></Vorlane>");
  const auto* definition = std::get_if<MosaicDefinition>(&result);
  ASSERT_NE(definition, nullptr);
  EXPECT_EQ(definition->name, "M");
  EXPECT_EQ(definition->title, "A title");
  EXPECT_EQ(definition->region, "Here");
  EXPECT_EQ(definition->pixelSource, "Camera");
  EXPECT_EQ(definition->sourceFolder, folder() / "parts");
  ASSERT_EQ(definition->sources.size(), 2U);
  EXPECT_EQ(definition->sources[0].file, folder() / "parts/b.tif");
  EXPECT_EQ(definition->sources[0].rasterId, "7");
  ASSERT_EQ(definition->sources[0].attributes.size(), 2U);
  EXPECT_EQ(definition->sources[0].attributes[0],
            std::make_pair(std::string("CloudCover"), std::string("3")));
  EXPECT_EQ(definition->sources[1].file, folder().parent_path() / "a.tif");
}

TEST_F(MosaicDefinitionFile, SourceWithoutIdBearsItsRowNumber) {
  const auto result = read(
      "<Vorlane><MosaicDefinition><Sources><Source><File>a</File><RasterId>9</RasterId></Source>"
      "<Source><File>b</File></Source></Sources></MosaicDefinition></Vorlane>");
  EXPECT_EQ(std::get<MosaicDefinition>(result).sources[1].rasterId, "2");
}

TEST_F(MosaicDefinitionFile, NoTwoSourcesBearOneId) {
  const std::string id = "<RasterId>2</RasterId>";
  const auto result = read(
      "<Vorlane><MosaicDefinition><Sources><Source><File>a</File>" + id + "</Source><Source><File>b</File>" +
      id + "</Source><Source><File>c</File></Source>" + "</Sources></MosaicDefinition></Vorlane>");
  const auto& sources = std::get<MosaicDefinition>(result).sources;
  ASSERT_EQ(sources.size(), 3U);
  EXPECT_EQ(sources[0].rasterId, "2");
  EXPECT_EQ(sources[1].rasterId, "3");
  EXPECT_EQ(sources[2].rasterId, "4");
}

TEST_F(MosaicDefinitionFile, HomeOfSourcesIsNamedAfterTheFileUnlessTold) {
  const auto result = read(
      "<Vorlane><MosaicDefinition><Sources><Source><File>a</File></Source></Sources>"
      "</MosaicDefinition></Vorlane>");
  EXPECT_EQ(std::get<MosaicDefinition>(result).sourceFolder, folder() / "m.sources");
}

TEST_F(MosaicDefinitionFile, TellsWhyItCannotBeUsed) {
  EXPECT_EQ(failure(""), "the mosaic definition is not well-formed XML");
  EXPECT_EQ(failure("<Other/>"), "the file holds no mosaic definition");
  EXPECT_EQ(failure("<Vorlane><MosaicDefinition/></Vorlane>"), "the mosaic definition names no sources");
  EXPECT_EQ(failure("<Vorlane><MosaicDefinition><Sources><Source/></Sources></MosaicDefinition></Vorlane>"),
            "the mosaic definition names no sources");
}

TEST_F(MosaicDefinitionFile, OfUnreasonableSizeIsNotRead) {
  const auto file = writeText("m.VLDef", "<Vorlane/>");
  std::filesystem::resize_file(file, 17U << 20U);
  const auto result = readMosaicDefinition(file, xml());
  EXPECT_EQ(std::get<MosaicReadFailure>(result), "the mosaic definition cannot be read");
}

TEST_F(MosaicDefinitionFile, ThatIsMissingCannotBeRead) {
  const auto result = readMosaicDefinition(folder() / "none.VLDef", xml());
  EXPECT_EQ(std::get<MosaicReadFailure>(result), "the mosaic definition cannot be read");
}

}  // namespace
}  // namespace vlclientui::client
