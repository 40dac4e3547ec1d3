#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "engine/Engine.h"
#include "engine/EngineFixture.h"
#include "support/TestFolders.h"

namespace vlclientui::engine {
namespace {

const std::string definitionFolder = sourceFolder() + "/definitions/";

std::unique_ptr<XmlDocument> definition(const std::string& name) {
  auto document = testXml()->createDocument();
  EXPECT_TRUE(document->load(definitionFolder + name)) << name;
  return document;
}

std::string pieceOf(const XmlDocument& document, const std::string& path) {
  const auto node = document.selectSingleNode(path);
  EXPECT_TRUE(node) << path;
  return node ? node->xml() : std::string();
}

class Template : public EngineTest {
 protected:
  /// The template as holders take it: from a new engine that is given the file's path.
  std::unique_ptr<XmlDocument> take() {
    engine->AttributeDefinition(definitionFolder + "VLClient.XADef");
    auto document = testXml()->createDocument();
    EXPECT_TRUE(document->loadXml(engine->GetTemplateXml()));
    return document;
  }
};

TEST_F(Template, OfAFileIsItsWholeDocument) {
  const auto document = take();
  EXPECT_EQ(document->documentElement()->name(), "Vorlane");
  EXPECT_EQ(document->documentElement()->xml(), definition("VLClient.XADef")->documentElement()->xml());
}

TEST_F(Template, OfATextIsItsWholeDocument) {
  engine->AttributeDefinition("<Vorlane>\n  <Client><A>1</A></Client>\n</Vorlane>");
  EXPECT_EQ(engine->GetTemplateXml(), "<Vorlane><Client><A>1</A></Client></Vorlane>");
}

TEST_F(Template, OfATextThatIsNoXmlIsThatText) {
  engine->AttributeDefinition("<Vorlane>");
  EXPECT_EQ(engine->GetTemplateXml(), "<Vorlane>");
}

TEST_F(Template, OfAFileThatDoesNotLoadIsEmpty) {
  engine->AttributeDefinition("C:\\no\\such\\folder\\VLClient.XADef");
  EXPECT_EQ(engine->GetTemplateXml(), "");
  const auto path = std::filesystem::temp_directory_path() / "engine_test_not_xml.XADef";
  std::ofstream(path) << "no xml";
  engine->AttributeDefinition(path.string());
  EXPECT_EQ(engine->GetTemplateXml(), "");
  std::filesystem::remove(path);
}

TEST_F(Template, OfNothingIsEmpty) { EXPECT_EQ(engine->GetTemplateXml(), ""); }

TEST_F(Template, NeedsNoWindow) {
  (void)take();
  EXPECT_TRUE(surfaces->surfaces().empty());
}

TEST_F(Template, OfAPathWithDriveAndBackslashesIsFound) {
  std::string path = "Z:" + definitionFolder + "VLClient.XADef";
  std::ranges::replace(path, '/', '\\');
  engine->AttributeDefinition(path);
  EXPECT_NE(engine->GetTemplateXml(), "");
}

TEST_F(Template, HoldsTheSelectedServicesWithoutAttributes) {
  const auto node = take()->selectSingleNode("//Vorlane/Client/SelectedImageServices");
  ASSERT_TRUE(node);
  EXPECT_EQ(node->xml(), "<SelectedImageServices/>");
}

TEST_F(Template, HoldsOnePlaceholderAmongTheServersSinceTheFirstIsNotRead) {
  const auto node = take()->selectSingleNode("//Vorlane/Client/ShowImageServicesDialog/MruServers");
  ASSERT_TRUE(node);
  ASSERT_EQ(node->childCount(), 1U);
  EXPECT_EQ(node->firstChild()->text(), "");
}

TEST_F(Template, HoldsTheServerInfoRequest) {
  const auto document = take();
  EXPECT_TRUE(document->selectSingleNode("//Vorlane/Client/ServerInfo/Request/Server"));
  EXPECT_TRUE(document->selectSingleNode("//Vorlane/Client/ServerInfo/Request/MetadataLevel"));
}

TEST_F(Template, HoldsTheExportDialogWithoutEnvelopes) {
  const auto node = take()->selectSingleNode("//Vorlane/Client/ExportImageDialog");
  ASSERT_TRUE(node);
  EXPECT_EQ(node->childCount(), 0U);
}

TEST_F(Template, HoldsEveryElementOfAnExportRequestWithoutAttributes) {
  const auto document = take();
  for (const auto* name : {"OutputType", "Top", "Left", "Right", "Bottom", "Width", "Height", "Cols", "Rows",
                           "ApproxMB", "CreateWorldFile", "Format", "CompressionMethod", "TileSize",
                           "CompressionQuality", "FileName", "NBands", "BitDepth", "ExportMetadataXml"}) {
    const auto node = document->selectSingleNode("//Vorlane/Client/GetImage/" + std::string(name));
    ASSERT_TRUE(node) << name;
    EXPECT_TRUE(node->attributes().empty()) << name;
  }
  EXPECT_EQ(document->selectSingleNode("//Vorlane/Client/GetImage")->childCount(), 19U);
  EXPECT_EQ(document->selectSingleNode("//Vorlane/Client/GetImage/CreateWorldFile")->text(), "False");
}

class ServiceInformation : public EngineTest {
 protected:
  const std::string path = "//Vorlane/AddImageServiceInformation/ImageServiceInfo";

  std::shared_ptr<const FormModel> show(const std::string& data) {
    engine->ModalFrame(false);
    engine->Caption("Service Properties");
    engine->AttributeDefinition(pieceOf(*definition("VLClient.XADef"), path));
    engine->FormDefinition(pieceOf(*definition("VLClient.Xfdef"), path));
    engine->DataXml(data);
    engine->DataRootPath("//");
    EXPECT_TRUE(engine->Show());
    return surfaces->windows().empty() ? nullptr : surfaces->windows().back().form;
  }

  static std::string captionsOf(const FormModel& form) {
    std::string captions;
    for (const auto& group : form.groups) captions += "[" + group.caption + "]";
    return captions;
  }
};

const std::string wholeService =
    "<ImageServiceInfo><Name>Terrain/Alps</Name><KeyDetails><Title>The Alps</Title>"
    "<GeographicRegion>Europe</GeographicRegion><PixelUnit>Metre</PixelUnit><PixelSource>Survey</PixelSource>"
    "<Licence>Open</Licence></KeyDetails><ColorSpace>0</ColorSpace><PixelType>Int16</PixelType>"
    "<BitDepth>16</BitDepth><NBands>1</NBands><GeographicEnvelope><XMin>5</XMin><YMin>45</YMin><XMax>9</XMax>"
    "<YMax>47</YMax></GeographicEnvelope><ClientEnvelope><XMin>1</XMin><YMin>2</YMin><XMax>3</XMax><YMax>4</"
    "YMax>"
    "</ClientEnvelope><Srs><Name>UTM 32N</Name><Id>EPSG:32632</Id></Srs><PixelSize>30</PixelSize>"
    "<MaxNCols>2000</MaxNCols><MaxNRows>1000</MaxNRows></ImageServiceInfo>";

TEST_F(ServiceInformation, ShowsAServiceInGroups) {
  const auto form = show(wholeService);
  ASSERT_TRUE(form);
  EXPECT_EQ(captionsOf(*form),
            "[][Details][Pixels][Geographic extent][Extent in the coordinate system][Coordinate system]");
  EXPECT_EQ(form->findField("Title")->value, "The Alps");
  EXPECT_EQ(form->findField("GeographicRegion")->label, "Geographic region");
  EXPECT_EQ(form->findField("BitDepth")->unit, "bits");
  EXPECT_EQ(form->findField("Id")->value, "EPSG:32632");
}

TEST_F(ServiceInformation, ShowsDetailsThatTheDefinitionsDoNotName) {
  EXPECT_EQ(show(wholeService)->findField("Licence")->value, "Open");
}

TEST_F(ServiceInformation, IsReadOnlyThroughout) {
  const auto form = show(wholeService);
  for (const auto& group : form->groups) {
    for (const auto& field : group.fields) EXPECT_TRUE(field.readOnly) << field.path;
  }
}

TEST_F(ServiceInformation, ShowsTheColorSpaceByItsLabel) {
  const std::vector<std::pair<std::string, std::string>> labels{
      {"0", "Grayscale"}, {"1", "RGB"},  {"2", "CMYK"},    {"3", "YCbCr"},     {"4", "YUV"},
      {"5", "LHS"},       {"6", "YCCK"}, {"7", "Palette"}, {"255", "Unknown"}, {"8", "8"}};
  for (const auto& [code, label] : labels) {
    const auto form = show("<ImageServiceInfo><ColorSpace>" + code + "</ColorSpace></ImageServiceInfo>");
    EXPECT_EQ(form->findField("ColorSpace")->value, label);
  }
}

TEST_F(ServiceInformation, LeavesOutWhatTheServiceDoesNotTell) {
  const auto form = show("<ImageServiceInfo><Name>A</Name><NBands>3</NBands></ImageServiceInfo>");
  EXPECT_EQ(captionsOf(*form), "[][Pixels]");
}

/// Runs xmllint over a definition; its exit code, 0 when the schema holds.
int validate(const std::string& kind, const std::string& schema, const std::string& file) {
  const std::string command = std::string(VL_XMLLINT) + " --noout --" + kind + " '" + definitionFolder +
                              schema + "' '" + file + "' >/dev/null 2>&1";
  return std::system(command.c_str());
}

class DefinitionSchema : public ::testing::Test {
 protected:
  void SetUp() override {
    if (std::string(VL_XMLLINT).empty())
      GTEST_SKIP() << "xmllint was not found when the build was configured";
  }

  std::string write(const std::string& text) {
    std::ofstream(path_) << text;
    return path_;
  }

  void TearDown() override { std::filesystem::remove(path_); }

 private:
  std::string path_ =
      (std::filesystem::temp_directory_path() / ("engine_schema_" + std::to_string(::getpid()))).string();
};

TEST_F(DefinitionSchema, HoldsForTheShippedAttributeDefinition) {
  EXPECT_EQ(validate("relaxng", "attribute-definition.rng", definitionFolder + "VLClient.XADef"), 0);
  EXPECT_EQ(validate("schematron", "definition-words.sch", definitionFolder + "VLClient.XADef"), 0);
}

TEST_F(DefinitionSchema, HoldsForTheSampleOfEveryKindAndWord) {
  const std::string sample = testDataFolder() + "/engine/Sample";
  EXPECT_EQ(validate("relaxng", "attribute-definition.rng", sample + ".XADef"), 0);
  EXPECT_EQ(validate("relaxng", "form-definition.rng", sample + ".Xfdef"), 0);
  EXPECT_EQ(validate("schematron", "definition-words.sch", sample + ".XADef"), 0);
  EXPECT_EQ(validate("schematron", "definition-words.sch", sample + ".Xfdef"), 0);
}

TEST_F(DefinitionSchema, RefusesRangesThatAreNoNumbersAndWordsThatAreNeitherTrueNorFalse) {
  EXPECT_EQ(
      validate("schematron", "definition-words.sch", write("<V><A A_KIND_='whole' A_MIN_='-1.5'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_MIN_='low'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_MAX_=''/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_REQUIRED_='1'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_TAB_='yes'/></V>")), 0);
}

TEST_F(DefinitionSchema, HoldsForTheShippedFormDefinition) {
  EXPECT_EQ(validate("relaxng", "form-definition.rng", definitionFolder + "VLClient.Xfdef"), 0);
  EXPECT_EQ(validate("schematron", "definition-words.sch", definitionFolder + "VLClient.Xfdef"), 0);
}

TEST_F(DefinitionSchema, RefusesTextInAForm) {
  EXPECT_NE(validate("relaxng", "form-definition.rng", write("<V><A>text</A></V>")), 0);
}

TEST_F(DefinitionSchema, RefusesTextBesideElementsInAnAttributeDefinition) {
  EXPECT_NE(validate("relaxng", "attribute-definition.rng", write("<V>text<A/></V>")), 0);
}

TEST_F(DefinitionSchema, RefusesWordsKindsAndAnswersThatDoNotExist) {
  EXPECT_EQ(validate("schematron", "definition-words.sch", write("<V><A A_KIND_='Number'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_LABLE_='x'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A B_LABEL_='x'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_KIND_='knob'/></V>")), 0);
  EXPECT_NE(validate("schematron", "definition-words.sch", write("<V><A A_HIDDEN_='maybe'/></V>")), 0);
}

}  // namespace
}  // namespace vlclientui::engine
