#include "scenarios/ServiceScenarios.h"

#include "platform/LibXmlService.h"
#include "support/FakeClient.h"
#include "support/MetadataFixture.h"
#include "support/TestFolders.h"

namespace vlclientui::test {

namespace {

constexpr const char* attributeFile = "C:\\Program\\VLClient.XADef";
constexpr const char* formFile = "C:\\Program\\VLClient.Xfdef";

std::string shippedFile(const std::string& name) { return sourceFileText("definitions/" + name); }

std::string within(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

constexpr const char* properties =
    "<MosaicMethod>By Attribute</MosaicMethod><TileOrderField>Year</TileOrderField>"
    "<TileOrderBase>2020</TileOrderBase><LockImageID>7</LockImageID>"
    "<AvgImageSpacingX>5</AvgImageSpacingX><AvgImageSpacingY>2</AvgImageSpacingY>"
    "<Resampling>Nearest</Resampling><NoData/><Srs><Name>Sample grid</Name><Prj>EPSG:32632</Prj></Srs>";

constexpr const char* info =
    "<Name>Alps</Name><KeyDetails><Title>The Alps from above</Title>"
    "<GeographicRegion>Alps</GeographicRegion><PixelSource>Aerial</PixelSource></KeyDetails>"
    "<ServiceType>Mosaic</ServiceType><NRasters>2</NRasters><ColorSpace>1</ColorSpace>"
    "<PixelType>unsigned</PixelType><BitDepth>8</BitDepth><NBands>3</NBands><MaxNCols>3000</MaxNCols>"
    "<MaxNRows>2000</MaxNRows><PixelSize>0.5</PixelSize><ClientEnvelope><XMin>100</XMin><YMin>10</YMin>"
    "<XMax>200</XMax><YMax>30</YMax></ClientEnvelope>";

constexpr const char* metadata =
    "<Name>Alps</Name><Title>Metadata of the Alps</Title><Extent><YMax>30</YMax></Extent>"
    "<File><FileName>alps.tif</FileName><FileSize>4096</FileSize></File><Exif><Model>Aerocam</Model></Exif>";

}  // namespace

std::string imageDocument(const ReturnedImage& image) {
  return imageXml(within("Basic",
                         "<XMin>100</XMin><YMin>10</YMin><XMax>200</XMax><YMax>30</YMax><NCols>512</NCols>"
                         "<NRows>256</NRows><NBands>3</NBands><PixelType>unsigned</PixelType>"
                         "<BitDepth>8</BitDepth><BufferSize>" +
                             image.bufferSize + "</BufferSize>" + image.status),
                  image.detailed);
}

ServiceScenarios::ServiceScenarios() {
  threadState() = {};
  system->writeFile(attributeFile, shippedFile("VLClient.XADef"));
  system->writeFile(formFile, shippedFile("VLClient.Xfdef"));
  system->variables["APPDATA"] = "C:\\Data";
  xml_ = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
  service->definitions[1] =
      within("XADef", within("Vorlane", cut(attributeFile, "/Vorlane/ImageServiceProperties")));
  service->definitions[2] =
      within("XFDef", within("Vorlane", cut(formFile, "/Vorlane/ImageServiceProperties")));
  service->definitions[3] = within("XADef", cut(attributeFile, "/Vorlane/Metadata"));
  service->definitions[4] = within("XFDef", cut(formFile, "/Vorlane/Metadata"));
  service->properties = propertiesXml(properties);
  service->info = within("Vorlane", within("ImageServiceInfo", info));
  service->serviceMetadata = within("Metadata", metadata);
  service->metadata = imageDocument({});
}

ServiceScenarios::~ServiceScenarios() {
  dialog.reset();
  setPlatform(nullptr);
  threadState() = {};
}

Platform ServiceScenarios::platformWithoutWindows() const {
  Platform made;
  made.system = system;
  made.xml = xml_;
  made.clientLibrary = std::make_shared<FakeClientLibrary>();
  return made;
}

void ServiceScenarios::equip(std::shared_ptr<PropertiesPerson> person) {
  Platform made = platformWithoutWindows();
  person->equip(made);
  equipped_ = std::move(person);
  setPlatform(std::make_shared<Platform>(made));
  dialog = std::make_shared<ServicePropertiesDialog>();
}

void ServiceScenarios::initialize(const std::string& configuration) {
  ASSERT_EQ(older()->Init(configuration, nullptr, service), boolean16True) << threadState().gStatus;
}

std::string ServiceScenarios::cut(const std::string& file, const std::string& path) const {
  const auto document = xml_->createDocument();
  if (!document->load(file)) throw RuntimeFailure("the definitions do not load: " + file);
  const auto node = document->selectSingleNode(path);
  if (!node) throw RuntimeFailure("the definitions lack " + path);
  return node->xml();
}

std::string ServiceScenarios::definitionOffering(const std::string& methods) const {
  const auto document = xml_->createDocument();
  if (!document->loadXml(service->definitions.at(1))) throw RuntimeFailure("the definition does not parse");
  document->selectSingleNode("//MosaicMethod")->setAttribute("MosaicMethod_LIST_", methods);
  return document->xml();
}

std::string ServiceScenarios::textIn(const std::string& xml, const std::string& element) {
  const auto document = currentPlatform().xml->createDocument();
  if (!document->loadXml(xml)) return "no document";
  const auto node = document->selectSingleNode("//" + element);
  return node ? node->text() : "no " + element;
}

std::string ServiceScenarios::shown(const PropertiesPerson& person, const std::string& field) {
  for (const std::string& line : person.fields()) {
    if (line.starts_with(field + "|")) return line.substr(field.size() + 1);
  }
  return "no " + field;
}

}  // namespace vlclientui::test
