#include "support/PropertiesFixture.h"

#include <utility>

#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"

namespace vlclientui::test {

std::string propertiesXml(const std::string& children) {
  return "<Vorlane><ImageServiceProperties>" + children + "</ImageServiceProperties></Vorlane>";
}

std::string definitionXml(const std::string& wrapper, const std::string& children) {
  return "<" + wrapper + ">" + propertiesXml(children) + "</" + wrapper + ">";
}

std::string attributeDefinitionXml(const std::string& methodList) {
  return definitionXml("XADef", "<MosaicMethod MosaicMethod_LIST_=\"" + methodList + "\"/>");
}

PropertiesFixture::PropertiesFixture() {
  system->writeFile("C:\\Program\\VLClient.XADef", "<Vorlane/>");
  system->writeFile("C:\\Program\\VLClient.Xfdef", "<Vorlane/>");
  service->definitions = {{1, attributeDefinitionXml("By Attribute,Lock Raster,Closest to Viewpoint")},
                          {2, definitionXml("XFDef", "<MosaicMethod/>")}};
  service->properties = propertiesXml("<MosaicMethod>By Attribute</MosaicMethod>");
  service->metadata = "<Vorlane><Client><ImageMetadata/></Client></Vorlane>";
  auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
  setPlatform(std::make_shared<Platform>(Platform{system, xml, toolkit, plexa, clientLibrary}));
  const auto keep = [this](const std::string& call) { journal_.push_back(call); };
  service->onCall = keep;
  toolkit->onCall = keep;
  plexa->record->onCall = keep;
  dialog = std::make_shared<ServicePropertiesDialog>();
}

PropertiesFixture::~PropertiesFixture() {
  dialog.reset();
  setPlatform(nullptr);
  threadState() = {};
}

std::shared_ptr<IServicePropertiesDialog> PropertiesFixture::older() const {
  return queryInterface<IServicePropertiesDialog>(dialog);
}

std::shared_ptr<IOVLServicePropertiesDialog> PropertiesFixture::newer() const {
  return queryInterface<IOVLServicePropertiesDialog>(dialog);
}

std::shared_ptr<IOVLServicePropertiesDialog2> PropertiesFixture::extension() const {
  return queryInterface<IOVLServicePropertiesDialog2>(dialog);
}

void PropertiesFixture::initialize() {
  ASSERT_EQ(older()->Init("", nullptr, service), boolean16True) << status();
}

void PropertiesFixture::initializeWithoutService() {
  ASSERT_EQ(older()->Init("", nullptr, nullptr), boolean16True) << status();
}

std::vector<std::string> PropertiesFixture::takeJournal() { return std::exchange(journal_, {}); }

}  // namespace vlclientui::test
