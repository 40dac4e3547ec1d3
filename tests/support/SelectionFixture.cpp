#include "support/SelectionFixture.h"

#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"

namespace vlclientui::test {

const char* const templateXml =
    "<Vorlane><Client><SelectedImageServices><Name>old</Name></SelectedImageServices>"
    "<ShowImageServicesDialog><MruServers><Placeholder/></MruServers></ShowImageServicesDialog>"
    "<ServerInfo><Request><Server/><MetadataLevel/></Request></ServerInfo></Client></Vorlane>";

std::string serverInfo(const std::vector<ServiceText>& services) {
  std::string xml = "<Vorlane><Server><Info><Detailed><ServiceProviders><ServiceProvider><Services>";
  for (const ServiceText& service : services) {
    xml += "<Service><Name>" + service.name + "</Name>" + service.info + "</Service>";
  }
  return xml + "</Services></ServiceProvider></ServiceProviders></Detailed></Info></Server></Vorlane>";
}

std::string serverInfoOf(const std::vector<std::string>& names) {
  std::vector<ServiceText> services;
  for (const std::string& name : names) services.push_back({name});
  return serverInfo(services);
}

std::string infoWithEnvelope(double xMin, double xMax, double yMin, double yMax) {
  const auto corner = [](const std::string& name, double value) {
    return "<" + name + ">" + std::to_string(value) + "</" + name + ">";
  };
  return "<ImageServiceInfo><Name>n</Name><GeographicEnvelope>" + corner("XMin", xMin) +
         corner("XMax", xMax) + corner("YMin", yMin) + corner("YMax", yMax) +
         "</GeographicEnvelope></ImageServiceInfo>";
}

SelectionFixture::SelectionFixture()
    : system(std::make_shared<TestSystem>()),
      toolkit(std::make_shared<headless::HeadlessToolkit>()),
      plexa(std::make_shared<RecordingPlexaFactory>()),
      clientLibrary(std::make_shared<FakeClientLibrary>()),
      server(std::make_shared<FakeServer>()) {
  plexa->record->templateXml = templateXml;
  system->writeFile("C:\\Program\\VLClient.XADef", templateXml);
  auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
  setPlatform(std::make_shared<Platform>(Platform{system, xml, toolkit, plexa, clientLibrary}));
  threadState().imageServicesDialogStatus.clear();
}

SelectionFixture::~SelectionFixture() {
  dialog.reset();
  setPlatform(nullptr);
}

std::shared_ptr<ImageServicesDialog> SelectionFixture::readyDialog() {
  auto made = std::make_shared<ImageServicesDialog>();
  EXPECT_EQ(older(made)->Init("", std::make_shared<FakeServerClient>(server)), boolean16True);
  return made;
}

std::shared_ptr<IImageServicesDialog> SelectionFixture::older(
    const std::shared_ptr<ImageServicesDialog>& object) {
  return queryInterface<IImageServicesDialog>(object);
}

std::shared_ptr<IOVLImageServicesDialog> SelectionFixture::newer(
    const std::shared_ptr<ImageServicesDialog>& object) {
  return queryInterface<IOVLImageServicesDialog>(object);
}

void SelectionFixture::show(
    const std::function<void(ImageServicesDialogForm&, ImageServicesControl&)>& script,
    const std::string& extentXml) {
  if (!dialog) dialog = readyDialog();
  bool ran = false;
  toolkit->scriptModal([&](Form& form) {
    auto& window = dynamic_cast<ImageServicesDialogForm&>(form);
    script(window, window.controls().ImageServicesControl1);
    ran = true;
  });
  EXPECT_EQ(older(dialog)->ShowDialogEx(extentXml), boolean16True);
  EXPECT_TRUE(ran);
}

void SelectionFixture::notify(const PlexaEvent& event) {
  const auto engine = plexa->lastEngine();
  ASSERT_TRUE(engine);
  engine->Notify.raise(*engine, event);
}

void SelectionFixture::click(const std::string& item, const std::string& parent) {
  notify({"Click", "", parent, item, 0});
}

void SelectionFixture::doubleClick(const std::string& item, const std::string& parent) {
  notify({"DblClick", "", parent, item, 0});
}

void SelectionFixture::backspace(const std::string& parent) { notify({"DblClick", "", parent, "", 8}); }

}  // namespace vlclientui::test
