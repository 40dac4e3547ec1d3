#include "selection/ImageServicesDialog.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/NumberText.h"
#include "documents/ParsedDocument.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* extentPath = "//AddImageServiceDialog/CustomEnvelope/";

void readCorner(const XmlDocument& document, const char* corner, const LocaleFormat& locale, double& value) {
  const auto text = readText(document, std::string(extentPath) + corner);
  if (text) value = textToDouble(*text, locale);
}

/// Runs an operation of the host. A failure does not reach the host: it gets what the operation held so far.
template <class Operation>
Boolean16 guardedOperation(Operation&& operation, const RoutineName& name = std::source_location::current()) {
  const Visit noWindow;
  Boolean16 result = boolean16False;
  endsQuietly([&] { result = operation(); }, name);
  return result;
}

}  // namespace

/// One interface of the dialog. The generations share all but Init.
template <class Interface, ClientGeneration generation>
class ImageServicesDialog::DialogFacet : public Facet<Interface, ImageServicesDialog> {
 public:
  using Facet<Interface, ImageServicesDialog>::Facet;

  Boolean16 Init(const std::string& /*dialogConfigXml*/, const ObjectPtr& Client) override {
    return this->owner().init(Client, generation);
  }
  std::string GetSelectedServices() override { return this->owner().selectedServices(); }
  Boolean16 ShowDialog() override { return this->owner().showDialog(); }
  Boolean16 ShowDialogEx(const std::string& Xml) override { return this->owner().showDialogEx(Xml); }
  std::string Status() override { return threadState().imageServicesDialogStatus; }
};

ImageServicesDialog::ImageServicesDialog()
    : platform_(threadState().platform),
      older_(std::make_unique<DialogFacet<IImageServicesDialog, ClientGeneration::Older>>(*this)),
      newer_(std::make_unique<DialogFacet<IOVLImageServicesDialog, ClientGeneration::Newer>>(*this)) {}

Object* ImageServicesDialog::queryInterface(std::string_view interfaceName) {
  if (interfaceName == "_ImageServicesDialog") return this;
  if (interfaceName == IImageServicesDialog::interfaceName) return older_.get();
  if (interfaceName == IOVLImageServicesDialog::interfaceName) return newer_.get();
  return nullptr;
}

Boolean16 ImageServicesDialog::init(const ObjectPtr& client, ClientGeneration generation) {
  const auto keptAlive = weak_from_this().lock();
  return guardedOperation([&] {
    storeClient(client, generation);
    initCalled_ = true;
    buildUserDataFolder();
    buildClientXADefPath();
    if (!readDefinition()) return boolean16False;
    const std::string& folder = threadState().UserDataFolder;
    if (!FolderExist(folder)) {
      std::string copy = folder;
      CreatePath(copy);
    }
    InitSucceed = boolean16True;
    if (generation == ClientGeneration::Newer) myOVLClientInitialized = boolean16True;
    return boolean16True;
  });
}

void ImageServicesDialog::storeClient(const ObjectPtr& client, ClientGeneration generation) {
  if (generation == ClientGeneration::Newer) {
    myOVLClient = client;
    return;
  }
  myOVLClientInitialized = boolean16False;
  auto older = interfaceOf<IServerClient>(client);
  if (client && !older) failTypeMismatch("the client object is no IServerClient");
  myClient = std::move(older);
}

bool ImageServicesDialog::readDefinition() {
  const std::string& path = threadState().ClientXADefPath;
  if (!vlclientui::FileExist(path)) return failInit(missingDefinitionText(path));
  if (!callOut(currentPlatform().xml)->createDocument()->load(path))
    return failInit(invalidDefinitionText(path));
  return true;
}

bool ImageServicesDialog::failInit(std::string text) {
  threadState().imageServicesDialogStatus = std::move(text);
  InitSucceed = boolean16False;
  return false;
}

Boolean16 ImageServicesDialog::showDialog() {
  return show([] {});
}

Boolean16 ImageServicesDialog::showDialogEx(const std::string& xml) {
  return show([this, &xml] { passExtentToWindow(xml); });
}

/// A window that goes while its list is loaded has closed.
Boolean16 ImageServicesDialog::show(const std::function<void()>& prepare) {
  return guardedOperation([&] {
    const auto keptAlive = weak_from_this().lock();
    if (!mayShow()) return boolean16False;
    ImageServicesDialogForm& form = window();
    Form::Show show(form);
    form.load();
    const bool stands = form.visited([&] {
      passClientToWindow();
      prepare();
      form.ShowMePlexa();
    });
    if (stands) show.run();
    return boolean16True;
  });
}

bool ImageServicesDialog::mayShow() {
  std::string& status = threadState().imageServicesDialogStatus;
  if (!passesShowGuard({initCalled_, InitSucceed != boolean16False}, status)) return false;
  if (!window().onShow()) return true;
  status = Form::alreadyOnShow;
  return false;
}

void ImageServicesDialog::passClientToWindow() {
  ImageServicesDialogForm& form = window();
  if (myOVLClientInitialized) {
    form.myOVLClient = myOVLClient;
    form.controls().ImageServicesControl1.myOVLClient = myOVLClient;
  } else {
    form.myClient = myClient;
    form.controls().ImageServicesControl1.myClient = myClient;
  }
}

void ImageServicesDialog::passExtentToWindow(const std::string& xml) {
  ImageServicesControl& control = window().controls().ImageServicesControl1;
  const auto document = callOut(currentPlatform().xml)->createDocument();
  if (loadOrStayEmpty(*document, xml)) {
    // The host writes these under the user's locale, unlike every other document.
    const LocaleFormat locale = currentPlatform().system->localeFormat();
    readCorner(*document, "XMax", locale, control.myXMax);
    readCorner(*document, "XMin", locale, control.MyXMin);
    readCorner(*document, "YMax", locale, control.myYMax);
    readCorner(*document, "YMin", locale, control.myYMin);
  }
  control.FilterCalled = toBoolean16(!xml.empty());
}

ImageServicesDialogForm& ImageServicesDialog::window() {
  if (!form_) form_ = std::make_shared<ImageServicesDialogForm>(*currentPlatform().toolkit);
  return *form_;
}

std::string ImageServicesDialog::selectedServices() {
  return form_ ? form_->SelectedServicesXml : std::string();
}

Boolean16 ImageServicesDialog::CreatePath(std::string& NewPath) {
  const Visit noWindow;
  endsQuietly([&NewPath] { vlclientui::CreatePath(NewPath); });
  return boolean16True;
}

Boolean16 ImageServicesDialog::FileExist(const std::string& File) {
  return guardedOperation([&File] { return toBoolean16(vlclientui::FileExist(File)); });
}

}  // namespace vlclientui
