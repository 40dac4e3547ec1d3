#include "support/MetadataFixture.h"

#include <algorithm>
#include <utility>

#include "frame/ThreadState.h"
#include "platform/LibXmlService.h"

namespace vlclientui::test {

namespace {

constexpr const char* attributeFile =
    "<Vorlane><Client><ImageMetadata><Basic><A_Image/></Basic></ImageMetadata></Client>"
    "<ImageServiceInfo><KeyDetails><A_Key/></KeyDetails></ImageServiceInfo>"
    "<RasterInfo><Info><A_Raster/></Info></RasterInfo></Vorlane>";
constexpr const char* formFile =
    "<Vorlane><ImageMetadata><Basic><F_Image/></Basic></ImageMetadata>"
    "<ImageServiceInfo><KeyDetails><F_Key/></KeyDetails><Vorlane><F_Properties/></Vorlane></ImageServiceInfo>"
    "<RasterInfo><Info><F_Raster/></Info></RasterInfo></Vorlane>";
constexpr const char* clientDefinition =
    "<XADef><Vorlane><ImageServiceProperties><MosaicMethod MosaicMethod_LIST_='By Attribute,Lock Raster'/>"
    "</ImageServiceProperties></Vorlane></XADef>";

std::string element(const std::string& name, const std::string& text) {
  return text.empty() ? std::string() : "<" + name + ">" + text + "</" + name + ">";
}

}  // namespace

std::string FakeMetadataService::answer(const std::string& call) {
  calls.push_back(call);
  if (call == failAt) throw RuntimeFailure("the service fails at " + call);
  const auto found = answers.find(call);
  return found == answers.end() ? std::string() : found->second;
}

std::string rasterXml(const RasterText& raster) {
  return "<Raster><Info>" + element("RasterId", raster.id) + element("RasterName", raster.name) +
         element("Visible", raster.visible) + "</Info>" + raster.metadata + raster.attributes +
         raster.process + "</Raster>";
}

std::string imageXml(const std::string& basic, const std::string& detailed) {
  return "<Vorlane><Client><ImageMetadata>" + basic + detailed + "</ImageMetadata></Client></Vorlane>";
}

std::string imageOf(const std::vector<RasterText>& rasters, const std::string& available) {
  std::string xml = "<Detailed><Rasters>";
  for (const RasterText& raster : rasters) xml += rasterXml(raster);
  xml += "</Rasters><ProcessMetadata><Resampling>cubic</Resampling></ProcessMetadata>" +
         element("ProcessMetadataAvailable", available) + "</Detailed>";
  return imageXml("<Basic><NRows>10</NRows></Basic>", xml);
}

ViewerForm::Set::Set(ViewerForm& form, const MetadataViewerDifferences& differences)
    : MetadataControls(form, differences), viewer(form, form, *this, differences) {}

ViewerForm::ViewerForm(Toolkit& toolkit, const MetadataViewerDifferences& differences)
    : Form(toolkit, "ViewerForm"), differences_(differences) {}

ViewerForm::~ViewerForm() {
  if (set_) set_->viewer.releaseEngines();
}

ViewerForm::Set& ViewerForm::controls() {
  load();
  return *set_;
}

std::shared_ptr<void> ViewerForm::buildControls() {
  set_ = std::make_shared<Set>(*this, differences_);
  return set_;
}

void ViewerForm::onLoad() {
  set_->viewer.buildTree();
  set_->viewer.sizeTreeEngines();
}

MetadataFixture::MetadataFixture()
    : system(std::make_shared<TestSystem>()),
      toolkit(std::make_shared<headless::HeadlessToolkit>()),
      plexa(std::make_shared<RecordingPlexaFactory>()),
      clientLibrary(std::make_shared<FakeClientLibrary>()),
      service(std::make_shared<FakeMetadataService>()),
      imageMetadata(imageOf({{}, {.id = "2", .name = "south", .visible = "False"}})),
      serviceInfo(
          "<Vorlane><ImageServiceInfo><KeyDetails><Title>Alps</Title></KeyDetails>"
          "</ImageServiceInfo></Vorlane>"),
      serviceMetadata("<Metadata><Author>survey</Author></Metadata>") {
  auto xml = std::make_shared<platform::LibXmlService>(platform::PathTranslation(system->home().string()));
  setPlatform(std::make_shared<Platform>(Platform{system, xml, toolkit, plexa, clientLibrary}));
  const auto platform = threadState().platform;
  threadState() = {};
  threadState().platform = platform;
  writeDefinitions();
}

MetadataFixture::~MetadataFixture() {
  form.reset();
  setPlatform(nullptr);
}

void MetadataFixture::writeDefinitions() const {
  ThreadState& state = threadState();
  state.ClientXADefPath = "C:\\Program\\VLClient.XADef";
  state.ClientXfdefPath = "C:\\Program\\VLClient.Xfdef";
  system->writeFile(state.ClientXADefPath, attributeFile);
  system->writeFile(state.ClientXfdefPath, formFile);
}

void MetadataFixture::answerUnlessTold(const std::string& call, const std::string& answer) {
  const auto told = service->answers.find(call);
  const auto own = ownAnswers_.find(call);
  const bool isOwn =
      own != ownAnswers_.end() && told != service->answers.end() && told->second == own->second;
  if (told != service->answers.end() && !isOwn) return;
  service->answers[call] = ownAnswers_[call] = answer;
}

void MetadataFixture::openPage() { open(Window::Page, Service::Given); }
void MetadataFixture::openOneWindow() { open(Window::OneWindow, Service::Given); }
void MetadataFixture::openPageWithoutService() { open(Window::Page, Service::None); }
void MetadataFixture::openOneWindowWithoutService() { open(Window::OneWindow, Service::None); }

void MetadataFixture::open(Window window, Service given) {
  answerUnlessTold("GetImageMetadata ", imageMetadata);
  answerUnlessTold("ServiceInfo", serviceInfo);
  answerUnlessTold("GetMetaData ", serviceMetadata);
  answerUnlessTold("GetDefinition 1", clientDefinition);
  answerUnlessTold("getProperty ClientXADef", clientDefinition);
  const auto fill = [this, given](MetadataFields& made) {
    fields = &made;
    fields->myImageMetaDataXml = imageMetadata;
    fields->myServiceInfoXml = serviceInfo;
    fields->myMetaDataXml = serviceMetadata;
    if (given == Service::Given) fields->myImageServiceObject = service;
  };
  if (window == Window::Page) {
    auto made = std::make_unique<SourceMetadata>(*toolkit);
    fill(*made);
    controls = &made->controls();
    viewer = &made->controls().viewer;
    form = std::move(made);
  } else {
    auto made = std::make_unique<ViewerForm>(*toolkit, oneWindowDifferences);
    fill(*made);
    controls = &made->controls();
    viewer = &made->controls().viewer;
    form = std::move(made);
  }
}

void MetadataFixture::clickRasterTab(const std::string& caption) {
  const auto& captions = controls->TabStrip1.captions();
  const auto found = std::ranges::find(captions, caption);
  ASSERT_NE(found, captions.end()) << caption;
  controls->TabStrip1.userSelects(static_cast<std::size_t>(found - captions.begin()));
}

void MetadataFixture::clickServiceTab(const std::string& caption) {
  const auto& captions = controls->TabStrip2.captions();
  const auto found = std::ranges::find(captions, caption);
  ASSERT_NE(found, captions.end()) << caption;
  controls->TabStrip2.userSelects(static_cast<std::size_t>(found - captions.begin()));
}

std::vector<std::string> MetadataFixture::nodeKeys() const {
  std::vector<std::string> keys;
  for (const TreeView::Node& node : controls->uiTreeView.nodes()) keys.push_back(node.key);
  return keys;
}

std::vector<std::string> MetadataFixture::newEngineCalls() {
  auto calls = plexa->callsFrom(engineCallsSeen_);
  engineCallsSeen_ += calls.size();
  return calls;
}

std::vector<std::string> MetadataFixture::newServiceCalls() { return std::exchange(service->calls, {}); }

std::vector<Pointer> MetadataFixture::newPointers() {
  const auto& all = toolkit->pointers();
  std::vector<Pointer> pointers(all.begin() + static_cast<std::ptrdiff_t>(pointersSeen_), all.end());
  pointersSeen_ = all.size();
  return pointers;
}

std::string MetadataFixture::lastEngineValue(const std::string& operation) const {
  const std::string searched = "." + operation + " ";
  const auto& calls = plexa->record->calls;
  const auto found = std::find_if(calls.rbegin(), calls.rend(), [&searched](const std::string& call) {
    return call.find(searched) != std::string::npos;
  });
  return found == calls.rend() ? std::string() : found->substr(found->find(searched) + searched.size());
}

}  // namespace vlclientui::test
