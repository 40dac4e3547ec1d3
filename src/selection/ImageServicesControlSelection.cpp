// The lower half of ImageServicesControl: adds rows and files to the selected list, as references.

#include <algorithm>
#include <utility>

#include "documents/GuardedRead.h"
#include "documents/TextCase.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"
#include "selection/ImageServicesControl.h"

namespace vlclientui {

namespace {

constexpr const char* servicePrefix = "ImageService://";
constexpr const char* definitionPrefix = "VLDef://";
constexpr const char* rootPath = "/";
constexpr const char* parentEntry = "..";
constexpr const char* noTitle = "Title not defined for this service";
constexpr const char* fileFilter =
    "Image Service Reference (*.VLRef)|*.VLRef|Image Service Definition (*.VLDef) |*.VLDef|All files "
    "(*.*)|*.*";
constexpr const char* informationPath = "//Vorlane/AddImageServiceInformation/ImageServiceInfo";
constexpr const char* listWindowTitle = "CHS";
constexpr std::size_t titleCharactersRead = 4;
constexpr std::size_t fileEndingLength = 5;

/// A reference to a service has at least four parts between slashes: scheme, nothing, server, name.
bool namesService(const std::string& reference) {
  return !reference.empty() && std::ranges::count(reference, '/') >= 3;
}

bool isMessagePath(const std::string& path) { return path == "/(Server not found)" || path == "/(empty)"; }

std::string withoutLeadingSlash(const std::string& path) {
  return path.starts_with('/') ? path.substr(1) : path;
}

std::string clickedPath(const PlexaEvent& event) {
  if (event.Value == rootPath) return event.ItemName;
  return event.ItemName == parentEntry ? event.Value : event.Value + "/" + event.ItemName;
}

void showFileMessage(const std::string& path, const char* complaint) {
  callOut(currentPlatform().toolkit)
      ->showMessage({"The file: '" + path + "' is " + complaint + ". Cannot show information.", "Error",
                     MessageIcon::Exclamation, MessageButtons::Ok});
}

/// Restores a window's enabled state at the end of a scope.
class EnabledStateKeeper {
 public:
  EnabledStateKeeper(std::shared_ptr<Toolkit> toolkit, WindowHandle window)
      : toolkit_(std::move(toolkit)), window_(window), enabled_(callOut(toolkit_)->isWindowEnabled(window)) {}
  EnabledStateKeeper(const EnabledStateKeeper&) = delete;
  EnabledStateKeeper& operator=(const EnabledStateKeeper&) = delete;
  ~EnabledStateKeeper() {
    endsQuietly([this] { toolkit_->enableWindow(window_, enabled_); });
  }

 private:
  std::shared_ptr<Toolkit> toolkit_;
  WindowHandle window_;
  bool enabled_;
};

}  // namespace

/// A person's action, as far as there is a window.
void ImageServicesControl::myPlexa_Notify(const PlexaEvent& event) {
  if (topForm() != window_) return;
  const auto keptAlive = weak_from_this().lock();
  const auto rule = [this, &event] {
    endsQuietly([this, &event] {
      Desc.setText("");
      if (event.EventName == "DblClick") rowDoubleClicked(event);
      if (event.EventName == "Click") rowClicked(event);
    });
  };
  // As with a click on a button, the window tells why nothing came of it.
  if (window_) return window_->dispatch([this, &rule] { window_->runClick(rule); });
  const Visit noWindow;
  rule();
}

void ImageServicesControl::rowDoubleClicked(const PlexaEvent& event) {
  if (!folders_) folders_ = std::make_shared<ServiceFolders>();
  if (folders_->browseFolder(event.ItemName, event)) return fillList();
  // Going up from the root leads nowhere, and it is no row that could be added.
  if (event.KeyCode == keyCode::backspace) return;
  const std::string parent = event.Value == rootPath ? "" : event.Value;
  lastClickedPath_ = trimmedBlanks(parent + "/" + event.ItemName);
  SelectedFile = referenceTo(lastClickedPath_);
  addSelectedFile();
}

void ImageServicesControl::rowClicked(const PlexaEvent& event) {
  lastClickedPath_ = trimmedBlanks(clickedPath(event));
  SelectedFile = referenceTo(lastClickedPath_);
  if (namesService(SelectedFile)) showTitle(withoutLeadingSlash(lastClickedPath_));
}

void ImageServicesControl::showTitle(const std::string& shortName) {
  const std::string title = FindServiceTitle(*parsedDocument(myServerInfo), shortName);
  Desc.setText(title.empty() ? noTitle : title);
}

std::string ImageServicesControl::referenceTo(const std::string& path) const {
  return servicePrefix + SelectedServer + (path.starts_with('/') ? "" : "/") + path;
}

void ImageServicesControl::addSelectedFile() {
  if (!isMessagePath(lastClickedPath_)) addIfNew(SelectedFile);
  publishListChange();
}

void ImageServicesControl::addIfNew(const std::string& entry) {
  if (!ListHasEntry(entry)) ListBox.addEntry(entry);
}

bool ImageServicesControl::ListHasEntry(const std::string& text) const {
  // Deliberate: the entry at index count is an empty string, so an empty text counts as found and is never
  // added.
  for (std::size_t i = 0; i <= ListBox.count(); ++i) {
    if (ListBox.entry(i) == text) return true;
  }
  return false;
}

void ImageServicesControl::publishListChange() {
  TheListCount = ListBox.count() > 0 ? 1 : 0;
  abc.raise();
}

void ImageServicesControl::browseForFile() {
  const std::string file = callOut(currentPlatform().toolkit)->openFile({"", fileFilter, ""}).value_or("");
  const std::string ending =
      file.size() < fileEndingLength ? file : file.substr(file.size() - fileEndingLength);
  if (upperCased(ending) == "VLREF") {
    addIfNew(file);
  } else if (upperCased(ending) == "VLDEF") {
    addIfNew(definitionPrefix + file);
  } else if (!file.empty()) {
    endSilently("'" + file + "' is neither a .VLRef nor a .VLDef file");
  }
  publishListChange();
}

void ImageServicesControl::removeSelected() {
  for (std::size_t i = 0; i < ListBox.count();) {
    if (ListBox.selected(i)) {
      ListBox.removeEntry(i);
    } else {
      ++i;
    }
  }
  Remove.setEnabled(ListBox.anySelected());
  publishListChange();
}

void ImageServicesControl::showInformation() {
  ThreadState& state = threadState();
  state.ClientXfdefPath = GetInstallFolder(installFolder::definitions) + "VLClient.Xfdef";
  const auto formDefinition = informationDefinition(state.ClientXfdefPath);
  if (!formDefinition) return;
  state.ClientXADefPath = GetInstallFolder(installFolder::definitions) + "VLClient.XADef";
  const auto attributeDefinition = informationDefinition(state.ClientXADefPath);
  if (!attributeDefinition) return;
  if (!namesService(SelectedFile)) return endSilently("no service is picked");
  showInformationWindow(
      *attributeDefinition, *formDefinition,
      FindServiceInfoXml(*parsedDocument(myServerInfo), withoutLeadingSlash(lastClickedPath_)));
}

std::optional<std::string> ImageServicesControl::informationDefinition(const std::string& path) const {
  if (!FileExist(path)) {
    showFileMessage(path, "missing");
    return std::nullopt;
  }
  const auto document = callOut(currentPlatform().xml)->createDocument();
  if (!callOut(*document)->load(path)) {
    showFileMessage(path, "corrupted");
    return std::nullopt;
  }
  return readXml(*document, informationPath).value_or("");
}

void ImageServicesControl::showInformationWindow(const std::string& attributeDefinition,
                                                 const std::string& formDefinition, const std::string& data) {
  releaseInformationEngine();
  const WindowHandle list = findListWindow();
  if (list == 0) return endSilently("the list of services has no window");
  const EnabledStateKeeper keeper(currentPlatform().toolkit, list);
  const auto engine = callOut(currentPlatform().plexa)->createPlexa();
  informationPlexa_ = engine;
  callOut(engine)->ModalFrame(false);
  callOut(engine)->Caption("Service Properties");
  callOut(engine)->AttributeDefinition(attributeDefinition);
  callOut(engine)->FormDefinition(formDefinition);
  callOut(engine)->DataXml(data);
  callOut(engine)->DataRootPath("//");
  if (!callOut(engine)->Show()) endSilently("the form engine shows no page");
}

void ImageServicesControl::releaseInformationEngine() {
  const auto former = std::exchange(informationPlexa_, nullptr);
  if (!former) return;
  former->ParentWindow(0);
  former->Visible(false);
}

WindowHandle ImageServicesControl::findListWindow() const {
  const auto toolkit = currentPlatform().toolkit;
  const WindowHandle own = callOut(toolkit)->windowOf(*this);
  const auto children = callOut(toolkit)->childWindows(own);
  for (const WindowHandle window : children) {
    const std::string title = callOut(toolkit)->windowTitle(window, titleCharactersRead);
    if (title.starts_with(listWindowTitle)) return window;
  }
  return 0;
}

}  // namespace vlclientui
