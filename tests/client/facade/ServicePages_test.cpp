#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "client/facade/CatalogueClientLibrary.h"
#include "client/facade/CatalogueImageService.h"
#include "client/facade/CatalogueServer.h"
#include "client/facade/ServiceDefinition.h"
#include "contracts/RuntimeFailure.h"
#include "engine/Engine.h"
#include "headless/HeadlessSurface.h"
#include "platform/LibXmlService.h"
#include "support/TestFolders.h"

namespace vlclientui::client {
namespace {

const std::string definitionFolder = sourceFolder() + "/definitions/";
const std::string helpHead = "<Vorlane><X_DEF><HELP_Path>Vorlane_Clients.chm</HELP_Path></X_DEF>";
constexpr WindowHandle hostWindow = 71;

/// Services of the samples, and the pages that windows make of their documents and the shipped definitions.
class ServicePages : public testing::TestWithParam<std::string> {
 protected:
  using Service = OVLCatalogueImageService;

  std::shared_ptr<platform::LibXmlService> xml_ =
      std::make_shared<platform::LibXmlService>(platform::PathTranslation::ofUser());
  std::shared_ptr<headless::HeadlessSurfaceFactory> surfaces_ =
      std::make_shared<headless::HeadlessSurfaceFactory>();
  engine::EngineFactory factory_{xml_, surfaces_};
  std::shared_ptr<Plexa> engine_;
  std::shared_ptr<CatalogueServer> server_ =
      std::make_shared<CatalogueServer>(*xml_, CatalogueSettings{samplesFolder(), {}});

  [[nodiscard]] std::unique_ptr<Service> open(const std::string& name) const {
    return std::make_unique<Service>(server_, *xml_, "ImageService://localhost/" + name,
                                     ImageServiceSettings{definitionFolder, {}});
  }

  [[nodiscard]] XmlNodePtr nodeOf(const std::string& text, const std::string& path) const {
    const auto document = xml_->createDocument();
    EXPECT_TRUE(document->loadXml(text)) << text.substr(0, 200);
    return document->selectSingleNode(path);
  }

  [[nodiscard]] std::string pieceOfFile(const std::string& name, const std::string& path) const {
    const auto document = xml_->createDocument();
    EXPECT_TRUE(document->load(definitionFolder + name));
    const auto node = document->selectSingleNode(path);
    EXPECT_TRUE(node) << path;
    return node ? node->xml() : std::string();
  }

  enum class Editing { Allowed, ReadOnly };

  std::shared_ptr<const engine::FormModel> show(const std::string& attributes, const std::string& form,
                                                const std::string& data,
                                                Editing editing = Editing::ReadOnly) {
    engine_ = factory_.createPlexa();
    engine_->EmbeddedMode(true);
    if (editing == Editing::ReadOnly) {
      EXPECT_TRUE(engine_->SetOption("readonly", "true"));
    }
    engine_->AttributeDefinition(attributes);
    engine_->FormDefinition(form);
    engine_->DataXml(data);
    engine_->DataRootPath("//");
    engine_->ParentWindow(hostWindow);
    EXPECT_TRUE(engine_->Show()) << data.substr(0, 200);
    auto* surface = surfaces_->surfaceIn(hostWindow);
    return surface == nullptr ? nullptr : surface->form();
  }

  /// A page cut out of both files, as windows show a group of a document.
  std::shared_ptr<const engine::FormModel> showPiece(const std::string& formPath,
                                                     const std::string& attributePath,
                                                     const std::string& data) {
    return show(helpHead + pieceOfFile("VLClient.XADef", attributePath) + "</Vorlane>",
                "<Vorlane>" + pieceOfFile("VLClient.Xfdef", formPath) + "</Vorlane>",
                helpHead + data + "</Vorlane>");
  }

  /// Texts of all elements without elements inside.
  static void addTexts(const XmlNode& node, std::vector<std::pair<std::string, std::string>>& texts) {
    bool hasElements = false;
    for (const auto& child : node.childNodes()) {
      if (child->kind() != XmlNodeKind::Element) continue;
      hasElements = true;
      addTexts(*child, texts);
    }
    if (!hasElements && !node.text().empty()) texts.emplace_back(node.name(), node.text());
  }

  /// A choice and a yes or no are shown by their labels.
  static bool shows(const engine::FormField& field, const std::string& text) {
    const bool isWord = field.kind == engine::FieldKind::YesNo || field.kind == engine::FieldKind::Choice;
    return field.value == text || (isWord && !field.value.empty());
  }

  static void expectAllShown(const std::shared_ptr<const engine::FormModel>& form, const XmlNodePtr& data) {
    ASSERT_TRUE(form);
    ASSERT_TRUE(data);
    std::vector<const engine::FormField*> fields;
    for (const auto& group : form->groups) {
      for (const auto& field : group.fields) fields.push_back(&field);
    }
    std::vector<std::pair<std::string, std::string>> texts;
    addTexts(*data, texts);
    ASSERT_FALSE(texts.empty());
    for (const auto& [name, text] : texts) {
      const bool isShown = std::any_of(fields.begin(), fields.end(), [&](const engine::FormField* field) {
        return field->name == name && shows(*field, text);
      });
      EXPECT_TRUE(isShown) << name << ": " << text;
    }
  }

  static void expectLabelsForPeople(const engine::FormModel& form) {
    for (const auto& group : form.groups) {
      for (const auto& field : group.fields) {
        EXPECT_FALSE(field.label.empty()) << field.path;
        EXPECT_EQ(field.label.find(':'), std::string::npos) << field.path;
      }
    }
  }
};

TEST_P(ServicePages, ShowTheDetailsOfTheService) {
  const auto data = nodeOf(open(GetParam())->ServiceInfo(), "//Vorlane/ImageServiceInfo/KeyDetails");
  const auto form = showPiece("//Vorlane/ImageServiceInfo/KeyDetails",
                              "//Vorlane/ImageServiceInfo/KeyDetails", data->xml());
  expectAllShown(form, data);
  EXPECT_EQ(form->groups.front().caption, "Details");
}

TEST_P(ServicePages, ShowEverythingInTheServiceInfo) {
  const std::string info = open(GetParam())->ServiceInfo();
  const auto form = show(pieceOfFile("VLClient.XADef", "//Vorlane"),
                         pieceOfFile("VLClient.Xfdef", "//Vorlane/ImageServiceInfo/Vorlane"), info);
  expectAllShown(form, nodeOf(info, "//Vorlane"));
  expectLabelsForPeople(*form);
}

TEST_P(ServicePages, ShowTheMetadataOfTheService) {
  const auto service = open(GetParam());
  const auto xaDef = nodeOf(service->getProperty("ServiceMetadataXADef"), "//XADef");
  const auto xfDef = nodeOf(service->getProperty("ServiceMetadataXFDef"), "//XFDef");
  ASSERT_TRUE(xaDef && xfDef);
  const std::string data = service->GetMetaData("");
  const auto form = show(xaDef->firstChild()->xml(), xfDef->firstChild()->xml(), data);
  expectAllShown(form, nodeOf(data, "//Metadata"));
  expectLabelsForPeople(*form);
}

TEST_P(ServicePages, ShowTheImageReturned) {
  const auto service = open(GetParam());
  const auto data = nodeOf(service->GetImageMetadata(""), "//Vorlane/Client/ImageMetadata/Basic");
  ASSERT_TRUE(data);
  const auto status = data->selectSingleNode("Status");
  status->setText(CatalogueClientLibrary(*xml_, {}).createClientStatus()->GetText(status->xml()));
  const auto form =
      showPiece("//Vorlane/ImageMetadata/Basic", "//Vorlane/Client/ImageMetadata/Basic", data->xml());
  expectAllShown(form, data);
  EXPECT_EQ(form->findField("NCols")->label, "Columns");
  EXPECT_EQ(form->findField("NCols")->unit, "pixels");
  EXPECT_EQ(form->findField("Status")->value, "The image is complete.");
}

TEST_P(ServicePages, ShowEverySourceRaster) {
  const std::string document = open(GetParam())->GetImageMetadata("");
  const auto detailed = nodeOf(document, "//Vorlane/Client/ImageMetadata/Detailed/Rasters");
  ASSERT_TRUE(detailed);
  ASSERT_GT(detailed->childCount(), 0U);
  for (const auto& raster : detailed->childNodes()) {
    const auto info = nodeOf(raster->xml(), "//Raster/Info");
    const auto form = showPiece("//Vorlane/RasterInfo/Info", "//Vorlane/RasterInfo/Info", info->xml());
    expectAllShown(form, info);
    EXPECT_EQ(form->findField("Visible")->value, "Yes");
  }
}

TEST_P(ServicePages, ShowThePropertiesToBeEdited) {
  const auto service = open(GetParam());
  const auto xaDef = nodeOf(service->getProperty("ClientXADef"), "//XADef");
  const auto xfDef = nodeOf(service->getProperty("ClientXFDef"), "//XFDef");
  ASSERT_TRUE(xaDef && xfDef);
  const auto form = show(xaDef->firstChild()->xml(), xfDef->firstChild()->xml(), service->ServiceProperties(),
                         Editing::Allowed);
  ASSERT_TRUE(form);
  EXPECT_EQ(form->findField("MosaicMethod")->value, "None");
  EXPECT_FALSE(form->findField("MosaicMethod")->readOnly);
  EXPECT_TRUE(form->findField("AvgImageSpacingX")->readOnly);
  EXPECT_EQ(form->findField("ViewPointControl")->kind, engine::FieldKind::Button);
  for (const char* name : {"TileOrderField", "TileOrderBase", "LockImageID", "Resampling", "NoData", "Prj"}) {
    EXPECT_NE(form->findField(name), nullptr) << name;
  }
  expectLabelsForPeople(*form);
}

INSTANTIATE_TEST_SUITE_P(OfSamples, ServicePages,
                         testing::Values("Imagery/Overlap_Study", "Imagery/Valley/Ortho_Mosaic",
                                         "Elevation/Terrain_30m", "Landcover/Land_Cover_2021",
                                         "World/EGM96_Geoid"),
                         [](const auto& parameter) {
                           std::string name = parameter.param;
                           std::replace(name.begin(), name.end(), '/', '_');
                           return name;
                         });

class ServiceDefinitions : public ServicePages {
 protected:
  const std::string page = "//Vorlane/ImageServiceProperties/";

  [[nodiscard]] std::string word(const std::string& definition, const std::string& element,
                                 const std::string& name) const {
    const auto node = nodeOf(definition, page + element);
    return node ? node->getNamedItem(name).value_or("(none)") : "(no element)";
  }
};

TEST_F(ServiceDefinitions, OfAMosaicOfferItsMethodsAndAttributes) {
  const auto service = open("Imagery/Overlap_Study");
  const std::string definition = service->getProperty("ClientXADef");
  const std::string methods = word(definition, "MosaicMethod", "MosaicMethod_LIST_");
  for (const char* name : {"Closest to Viewpoint", "By Attribute", "Lock Raster", "None"}) {
    EXPECT_NE(methods.find(name), std::string::npos) << name;
  }
  EXPECT_EQ(word(definition, "TileOrderField", "TileOrderField_LIST_"), "AcquisitionDate; CloudCover");
}

TEST_F(ServiceDefinitions, OfferAChoiceOfImagesOnlyWhereThereIsOne) {
  const DefinitionFacts items{true, {"datetime"}, {"visual", "red"}};
  const std::string attributes = serviceDefinition(1, definitionFolder, items, *xml_);
  EXPECT_NE(attributes.find("Asset_LIST_=\"visual; red\""), std::string::npos);
  EXPECT_NE(serviceDefinition(2, definitionFolder, items, *xml_).find("<Asset "), std::string::npos);
  for (const std::int32_t kind : {1, 2}) {
    const std::string plain = serviceDefinition(kind, definitionFolder, {true, {"Year"}}, *xml_);
    EXPECT_EQ(plain.find("Asset"), std::string::npos) << kind;
    EXPECT_NE(plain.find("Resampling"), std::string::npos) << kind;
  }
}

TEST_F(ServiceDefinitions, OfARasterOfferNoMosaicMethod) {
  const std::string definition = open("Elevation/Terrain_30m")->getProperty("ClientXADef");
  EXPECT_EQ(word(definition, "MosaicMethod", "MosaicMethod_LIST_"), "None");
  EXPECT_EQ(word(definition, "TileOrderField", "TileOrderField_LIST_"), "(none)");
}

TEST_F(ServiceDefinitions, LetTheCoordinateSystemBeMadeReadOnly) {
  const std::string definition = open("Imagery/Overlap_Study")->getProperty("ClientXFDef");
  EXPECT_EQ(word(definition, "Srs", "Srs_READONLY_"), "False");
  EXPECT_EQ(word(definition, "Srs/Prj", "Prj_READONLY_"), "False");
}

TEST_F(ServiceDefinitions, AreTheSameByNumberInBothGenerations) {
  const auto newer = open("Imagery/Overlap_Study");
  CatalogueImageService older(server_, *xml_, "ImageService://localhost/Imagery/Overlap_Study",
                              {definitionFolder, {}});
  const std::vector<std::string> keys = {"ClientXADef", "ClientXFDef", "ServiceMetadataXADef",
                                         "ServiceMetadataXFDef"};
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const auto kind = static_cast<std::int32_t>(i + 1);
    EXPECT_EQ(newer->GetDefinition(kind), newer->getProperty(keys[i]));
    EXPECT_EQ(older.GetDefinition(kind), newer->getProperty(keys[i]));
    EXPECT_THROW((void)older.getProperty(keys[i]), RuntimeFailure);
  }
}

TEST_F(ServiceDefinitions, OfAnUnknownKindAreAFailureInBothGenerations) {
  const auto newer = open("Imagery/Overlap_Study");
  CatalogueImageService older(server_, *xml_, "ImageService://localhost/Imagery/Overlap_Study",
                              {definitionFolder, {}});
  for (const std::int32_t kind : {0, 5, -1}) {
    EXPECT_THROW((void)newer->GetDefinition(kind), RuntimeFailure);
    EXPECT_THROW((void)older.GetDefinition(kind), RuntimeFailure);
  }
  EXPECT_THROW((void)newer->getProperty("clientxadef"), RuntimeFailure);
  EXPECT_THROW((void)newer->getProperty(""), RuntimeFailure);
}

}  // namespace
}  // namespace vlclientui::client
