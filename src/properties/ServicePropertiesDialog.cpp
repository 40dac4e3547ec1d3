#include "properties/ServicePropertiesDialog.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/NumberText.h"
#include "frame/General.h"
#include "frame/HeldService.h"
#include "frame/PlatformDocument.h"
#include "properties/GuardedOperation.h"

namespace vlclientui {

namespace {

constexpr const char* srsReadOnlyPath = "//Vorlane/Client/Init/PropertiesSRSReadonly";

/// The key of a definition and the variable that SetProperty stores it in.
struct DefinitionKey {
  std::string_view key;
  std::string ThreadState::*definition;
  bool mustParse;
};

constexpr DefinitionKey definitionKeys[] = {
    {"ClientXADef", &ThreadState::gClientXADef, true},
    {"ClientXFDef", &ThreadState::gClientXFDef, false},
    {"ServiceMetadataXADef", &ThreadState::gServiceMetadataXADef, false},
    {"ServiceMetadataXFDef", &ThreadState::gServiceMetadataXFDef, false},
    {"ImageMetadataXADef", &ThreadState::gImageMetadataXADef, false},
    {"ImageMetadataXFDef", &ThreadState::gImageMetadataXFDef, false},
};

std::unique_ptr<XmlDocument> newDocument() { return callOut(currentPlatform().xml)->createDocument(); }

void readSrsReadOnly(const XmlDocument& configuration, bool& readOnly) {
  if (const auto text = readText(configuration, srsReadOnlyPath)) {
    readOnly = textToBoolean(*text, LocaleFormat{});
  }
}

/// A failure goes to the status only.
bool findsFormDefinition() {
  buildClientXfdefPath();
  ThreadState& state = threadState();
  const std::string& path = state.ClientXfdefPath;
  if (!FileExist(path)) {
    state.gStatus = missingDefinitionText(path);
  } else if (!newDocument()->load(path)) {
    state.gStatus = invalidDefinitionText(path);
  } else {
    return true;
  }
  return false;
}

bool failLoudly(std::string text, std::string title) {
  currentPlatform().toolkit->showMessage(
      {std::move(text), std::move(title), MessageIcon::Critical, MessageButtons::Ok});
  return false;
}

/// Deliberate: a failure shows a message box and leaves the status alone.
bool findsAttributeDefinition() {
  buildClientXADefPath();
  const std::string& path = threadState().ClientXADefPath;
  if (!FileExist(path)) return failLoudly(missingDefinitionText(path), "Error");
  if (!newDocument()->load(path)) return failLoudly(invalidDefinitionText(path), "Invalid XAD");
  return true;
}

void makeUserDataFolder() {
  std::string folder = threadState().UserDataFolder;
  if (!FolderExist(folder)) endsQuietly([&folder] { CreatePath(folder); });
}

}  // namespace

/// What both generations share: all but Init.
template <class Interface, ClientGeneration generation>
class ServicePropertiesDialog::OperationsFacet : public Facet<Interface, ServicePropertiesDialog> {
 public:
  using Facet<Interface, ServicePropertiesDialog>::Facet;

  Boolean16 Init(const std::string& dialogConfigXml, const ObjectPtr& clientObject,
                 const ObjectPtr& imageServiceObject) override {
    return this->owner().init(dialogConfigXml, clientObject, imageServiceObject, generation);
  }
  std::string GetUpdatedProperties() override { return this->owner().GetUpdatedProperties(); }
  std::int32_t ShowPropertiesModalDialog() override { return this->owner().ShowPropertiesModalDialog(); }
  Boolean16 ShowViewPointModalDialog() override { return this->owner().ShowViewPointModalDialog(); }
  Boolean16 IsPropertyPageAvailable(PropertyPageId /*pageId*/) override { return boolean16True; }
  Boolean16 ShowPropertyPage(PropertyPageId pageId, WindowHandle parentHandle) override {
    return this->owner().ShowPropertyPage(pageId, parentHandle);
  }
  Boolean16 Refresh() override { return this->owner().Refresh(); }
  Boolean16 Close(PropertyPageId pageId) override { return this->owner().Close(pageId); }
  std::string Status() override { return threadState().gStatus; }
  void DialogProperties(const std::string& xml) override { this->owner().myDialogProperties = xml; }
  Boolean16 HasChanged() override { return this->owner().HasChanged(); }
};

class ServicePropertiesDialog::OlderFacet final
    : public OperationsFacet<IServicePropertiesDialog, ClientGeneration::Older> {
 public:
  using OperationsFacet::OperationsFacet;
};

class ServicePropertiesDialog::NewerFacet final
    : public OperationsFacet<IOVLServicePropertiesDialog, ClientGeneration::Newer> {
 public:
  using OperationsFacet::OperationsFacet;

  WindowHandle GetPropertyPageHandle(PropertyPageId pageId) override {
    return owner().GetPropertyPageHandle(pageId);
  }
  void serviceInfoXml(const std::string& xml) override { owner().myServiceInfoXml = xml; }
  void MetaDataXml(const std::string& xml) override { owner().myMetaDataXml = xml; }
  void ImageMetaDataXml(const std::string& xml) override { owner().ImageMetaDataXml(xml); }
  void ServicePropertiesXml(const std::string& xml) override { owner().ServicePropertiesXml(xml); }
};

class ServicePropertiesDialog::ExtensionFacet final
    : public Facet<IOVLServicePropertiesDialog2, ServicePropertiesDialog> {
 public:
  using Facet::Facet;

  void SetProperty(const std::string& key, const std::string& value) override {
    owner().SetProperty(key, value);
  }
  void SetCallback(const ObjectPtr& callback) override { owner().SetCallback(callback); }
};

ServicePropertiesDialog::ServicePropertiesDialog()
    : platform_(threadState().platform),
      older_(std::make_unique<OlderFacet>(*this)),
      newer_(std::make_unique<NewerFacet>(*this)),
      extension_(std::make_unique<ExtensionFacet>(*this)) {
  static_cast<void>(metadataPage());
}

ServicePropertiesDialog::~ServicePropertiesDialog() {
  // A form may outlive this object until an event of its own has returned.
  releaseMetadataPage();
  releaseCallingForm();
}

Object* ServicePropertiesDialog::queryInterface(std::string_view interfaceName) {
  if (interfaceName == "_ServicePropertiesDialog") return this;
  if (interfaceName == IServicePropertiesDialog::interfaceName) return older_.get();
  if (interfaceName == IOVLServicePropertiesDialog::interfaceName) return newer_.get();
  if (interfaceName == IOVLServicePropertiesDialog2::interfaceName) return extension_.get();
  return nullptr;
}

Boolean16 ServicePropertiesDialog::init(const std::string& dialogConfigXml, const ObjectPtr& client,
                                        const ObjectPtr& imageService, ClientGeneration generation) {
  const auto keptAlive = weak_from_this().lock();
  init_.called = true;
  if (generation == ClientGeneration::Older) myOVLClientInitialized = boolean16False;
  init_.succeeded = reportsToStatus(
      *this, false, [&] { return initialize(dialogConfigXml, client, imageService, generation); });
  if (init_.succeeded && generation == ClientGeneration::Newer) myOVLClientInitialized = boolean16True;
  return toBoolean16(init_.succeeded);
}

bool ServicePropertiesDialog::initialize(const std::string& dialogConfigXml, const ObjectPtr& client,
                                         const ObjectPtr& imageService, ClientGeneration generation) {
  if (generation == ClientGeneration::Newer) myOVLClient = client;
  makeForms();
  readConfiguration(dialogConfigXml);
  makeCallingForm();
  takeImageService(imageService, generation);
  buildUserDataFolder();
  if (!findsFormDefinition() || !findsAttributeDefinition()) return false;
  makeUserDataFolder();
  return true;
}

void ServicePropertiesDialog::makeForms() {
  Toolkit& toolkit = *currentPlatform().toolkit;
  myPropertiesPage = std::make_shared<ServiceProperties>(toolkit);
  myViewPointPage = std::make_shared<ViewPoint>(toolkit);
  myViewPointDialog = std::make_shared<ViewPointDialogForm>(toolkit);
  classForm_ = std::make_shared<ServicePropertiesDialogForm>(toolkit);
}

void ServicePropertiesDialog::makeCallingForm() {
  releaseCallingForm();
  CallingForm = std::make_shared<ServicePropertiesDialogForm>(*currentPlatform().toolkit);
  CallingForm->OnOKClick.connect([this] { OnAccept.raise(); });
}

void ServicePropertiesDialog::readConfiguration(const std::string& textOrPath) {
  // Read both ways: as a document and as the name of one. What the file says wins.
  const auto document = newDocument();
  const bool isText = document->loadXml(textOrPath);
  if (isText) readSrsReadOnly(*document, mySrsReadOnly);
  const bool isFile = document->load(textOrPath);
  if (isFile) readSrsReadOnly(*document, mySrsReadOnly);
  if (!isText && !isFile && !textOrPath.empty()) endSilently("the configuration is no XML document");
}

void ServicePropertiesDialog::takeImageService(const ObjectPtr& imageService, ClientGeneration generation) {
  if (imageService) {
    myImageServiceObject = imageService;
    // The interface called decides, not the object's own generation.
    readDocuments(*imageServiceOf(imageService), generation);
  } else if (generation == ClientGeneration::Older) {
    threadState().gImageMetadataXml = myImageMetaDataXml;
  }
}

void ServicePropertiesDialog::readDocuments(ImageService& service, ClientGeneration generation) {
  const bool newer = generation == ClientGeneration::Newer;
  myClientXadef = newer ? service.getProperty("ClientXADef") : service.GetDefinition(1);
  myClientXfdef = newer ? service.getProperty("ClientXFDef") : service.GetDefinition(2);
  threadState().gServicePropertiesXml = service.ServiceProperties();
  threadState().gImageMetadataXml = service.GetImageMetadata("Basic");
}

void ServicePropertiesDialog::refreshDocuments() {
  if (!myImageServiceObject) return;
  const auto service = imageServiceOf(myImageServiceObject);
  readDocuments(*service, isNewerGeneration(*service) ? ClientGeneration::Newer : ClientGeneration::Older);
}

bool ServicePropertiesDialog::mayShow() { return passesShowGuard(init_, threadState().gStatus); }

void ServicePropertiesDialog::SetProperty(const std::string& key, const std::string& value) {
  operatesQuietly(*this, [&] {
    for (const DefinitionKey& entry : definitionKeys) {
      if (key != entry.key) continue;
      if (entry.mustParse && !newDocument()->loadXml(value)) return endSilently(key + " is no XML document");
      threadState().*entry.definition = value;
    }
  });
}

void ServicePropertiesDialog::SetCallback(const ObjectPtr& callback) {
  operatesQuietly(*this, [&] {
    auto told = interfaceOf<IServicePropertiesCallback>(callback);
    if (callback && !told) failTypeMismatch("the object is no IServicePropertiesCallback");
    DD = std::move(told);
  });
}

void ServicePropertiesDialog::passOnChange(const std::string& servicePropertiesXml) {
  const auto callback = DD;
  // A host needs a callback only when it locks.
  if (!callback) failMissingObject("the callback; SetCallback was never called");
  // A copy: the host may change the thread's document meanwhile.
  const std::string told = servicePropertiesXml;
  callback->OnServicePropertiesChanged(told);
}

std::string ServicePropertiesDialog::GetUpdatedProperties() {
  return endsQuietlyWith(*this, std::string(), [this] {
    SaveAllForms();
    // Deliberate: a failure to parse is ignored.
    static_cast<void>(parsedDocument(threadState().gServicePropertiesXml));
    return threadState().gServicePropertiesXml;
  });
}

Boolean16 ServicePropertiesDialog::SaveAllForms() {
  operatesQuietly(*this, [this] { propertiesPage().Save(); });
  return boolean16False;
}

Boolean16 ServicePropertiesDialog::CloseViewPoint() {
  operatesQuietly(*this, [this] { viewPointPage().unload(); });
  return boolean16False;
}

Boolean16 ServicePropertiesDialog::Refresh() {
  operatesQuietly(*this, [this] {
    if (myImageServiceObject) {
      threadState().gServicePropertiesXml = imageServiceOf(myImageServiceObject)->ServiceProperties();
    }
    propertiesPage().RefreshTheForm();
    if (!SourceMetadataForm) return;
    const auto page = SourceMetadataForm;
    page->myServiceInfoXml = myServiceInfoXml;
    page->myImageMetaDataXml = myImageMetaDataXml;
    page->RefreshTheForm();
  });
  return boolean16False;
}

Boolean16 ServicePropertiesDialog::HasChanged() {
  return endsQuietlyWith(*this, boolean16False, [this] {
    currentPlatform().toolkit->letPendingEventsRun();
    if (!myImageServiceObject) return boolean16False;
    const std::string shown = propertiesPage().GetGuiUpdates();
    return toBoolean16(shown != imageServiceOf(myImageServiceObject)->ServiceProperties());
  });
}

void ServicePropertiesDialog::ImageMetaDataXml(const std::string& xml) {
  reportsToStatus(*this, false, [&] {
    myImageMetaDataXml = xml;
    viewPointPage().myImageMetaDataXml = xml;
    viewPointDialog().myImageMetaDataXml = xml;
    viewPointPage().RefReshViewpoints();
    return true;
  });
}

void ServicePropertiesDialog::ServicePropertiesXml(const std::string& xml) {
  reportsToStatus(*this, false, [&] {
    threadState().gServicePropertiesXml = xml;
    viewPointPage().RefReshViewpoints();
    viewPointDialog().RefReshViewpoints();
    return true;
  });
}

}  // namespace vlclientui
