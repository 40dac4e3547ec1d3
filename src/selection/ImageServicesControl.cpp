#include "selection/ImageServicesControl.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/controls/Form.h"
#include "documents/TextCase.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"
#include "selection/FirstServers.h"
#include "selection/ListDocuments.h"
#include "selection/ServerInfoRequest.h"
#include "selection/ServiceDetails.h"

namespace vlclientui {

namespace {

constexpr const char* helpPage = "Adding_an_Image_Service";
constexpr const char* emptyListData = "<root><xfd_header/></root>";

// The folder browser for a server: rooted at the network; file system folders only, the dialog's new
// style, no button for new folders.
constexpr std::int32_t networkFolder = 18;
constexpr std::int32_t folderDialogFlags = 0x241;

std::size_t hashOf(const std::string& answer) { return std::hash<std::string>()(answer); }

struct AnsweredNames {
  std::vector<std::string> names;
  std::shared_ptr<const XmlDocument> document;  ///< that they were read from
};

std::optional<AnsweredNames> namesInAnswer(const std::string& answer, const ExtentTest& test) {
  std::shared_ptr<const XmlDocument> document = parsedDocument(answer);
  auto names = readServiceNames(*document, test);
  if (names) return AnsweredNames{std::move(*names), std::move(document)};
  endSilently("the answer of the server lists no service providers");
  return std::nullopt;
}

}  // namespace

struct ImageServicesControl::ParsedAnswer {
  ParsedAnswer(std::size_t hashOfText, std::shared_ptr<const XmlDocument> parsed)
      : hash(hashOfText), document(std::move(parsed)) {}

  std::size_t hash;
  std::shared_ptr<const XmlDocument> document;
};

struct ImageServicesControl::DetailsOfAnswer {
  DetailsOfAnswer(std::size_t hashOfText, ServiceDetails read) : hash(hashOfText), details(std::move(read)) {}

  std::size_t hash;
  ServiceDetails details;
};

ImageServicesControl::ImageServicesControl(ControlContainer* container, std::string name)
    : HostedControl(container, std::move(name), "ImageServicesControl"), window_(topForm()) {
  setDesign();
  connectEvents();
  endsQuietly([this] { fillServerBox(); });
}

ImageServicesControl::~ImageServicesControl() {
  endsQuietly([this] { detachEngine(); });
  endsQuietly([this] { releaseInformationEngine(); });
}

/// What becomes of a control whose window has gone is nobody's business any more.
template <class Routine>
bool ImageServicesControl::visits(Routine&& routine, const RoutineName& name) {
  if (window_ && !topForm()) return false;
  const auto keptAlive = weak_from_this().lock();
  return visitWindow(window_, std::forward<Routine>(routine), name);
}

void ImageServicesControl::setDesign() {
  setGeometry({0, 0, 8700, 5715});
  uiLblServerName.setGeometry({120, 120, 1095, 255});
  uiTxtBoxServerName.setGeometry({1320, 75, 5415, 315});
  uiBtnBrowseServer.setGeometry({6840, 75, 375, 315});
  Check1.setGeometry({120, 3390, 7095, 285});
  SelectButton.setGeometry({7320, 480, 1260, 375});
  Info.setGeometry({7320, 960, 1260, 375});
  Info.setEnabled(false);
  Remove.setEnabled(false);
}

void ImageServicesControl::connectEvents() {
  keyPreview.connect([this](const KeyEvent& key) {
    const Form* const window = topForm();
    LaunchHelp(key.keyCode, key.shift, window && window->focusLiesIn(*this), helpPage);
  });
  uiTxtBoxServerName.click.connect([this] {
    callOut(currentPlatform().toolkit)->setPointer(Pointer::Hourglass);
    RefreshServices();
    callOut(currentPlatform().toolkit)->setPointer(Pointer::Default);
  });
  uiTxtBoxServerName.keyDown.connect([this](const KeyEvent& key) {
    if (key.keyCode == keyCode::enter) RefreshServices();
  });
  uiBtnBrowseServer.click.connect(
      [this] { endsQuietly([this] { BrowseForServer(); }, "ImageServicesControl::BrowseForServer"); });
  Check1.click.connect([this] { RefreshServices(); });
  SelectButton.click.connect(
      [this] { endsQuietly([this] { addSelectedFile(); }, "ImageServicesControl::addSelectedFile"); });
  Browse.click.connect(
      [this] { endsQuietly([this] { browseForFile(); }, "ImageServicesControl::browseForFile"); });
  Remove.click.connect(
      [this] { endsQuietly([this] { removeSelected(); }, "ImageServicesControl::removeSelected"); });
  Info.click.connect(
      [this] { endsQuietly([this] { showInformation(); }, "ImageServicesControl::showInformation"); });
  ListBox.click.connect([this] { Remove.setEnabled(true); });
  ListBox.lostFocus.connect([this] {
    Remove.setEnabled(ListBox.anySelected());
    publishListChange();
  });
}

Object* ImageServicesControl::queryInterface(std::string_view interfaceName) {
  return interfaceName == "_ImageServicesControl" ? this : nullptr;
}

void ImageServicesControl::fillServerBox() {
  for (const std::string& server : firstServers()) uiTxtBoxServerName.addEntry(server);
  uiTxtBoxServerName.setText(uiTxtBoxServerName.entry(0));
}

// A password in the box is for the client library alone. It is taken away before anything else sees it.
std::string ImageServicesControl::serverToAsk() {
  const std::string typed = uiTxtBoxServerName.text();
  std::string shown = callOut(currentPlatform().clientLibrary)->serverToShow(typed);
  if (shown != typed) uiTxtBoxServerName.setText(shown);
  return shown;
}

void ImageServicesControl::ShowThePlexa() {
  visits([this] {
    callOut(currentPlatform().toolkit)->setPointer(Pointer::Hourglass);
    endsQuietly([this] { loadFirstTime(); });
    callOut(currentPlatform().toolkit)->setPointer(Pointer::Default);
  });
}

void ImageServicesControl::loadFirstTime() {
  Check1.setVisible(FilterCalled != boolean16False);
  auto request = BuildServerInfoRequest(serverToAsk(), serviceListLevel);
  if (!request) return;
  requestXml_ = std::move(*request);
  if (!hasClient()) return tellThatClientIsMissing();
  std::string answer = askServer(requestXml_);
  if (answer.empty()) return OnLoad(boolean16False);
  // Deliberate: the first list shows every service, whatever the filter says.
  auto found = namesInAnswer(answer, {});
  if (found) takeServices(std::move(found->names), std::move(answer), std::move(found->document));
}

void ImageServicesControl::RefreshServices() {
  visits([this] {
    if (endsQuietly([this] { refreshFromServer(); })) return;
    callOut(currentPlatform().toolkit)->setPointer(Pointer::Default);
  });
}

void ImageServicesControl::refreshFromServer() {
  SelectedFile.clear();
  auto request = BuildServerInfoRequest(serverToAsk(), serviceListLevel);
  if (!request) return;
  requestXml_ = std::move(*request);
  if (!hasClient()) return tellThatClientIsMissing();
  callOut(currentPlatform().toolkit)->setPointer(Pointer::Hourglass);
  std::string answer = askServer(requestXml_);
  if (answer.empty()) return showSilentServer();
  if (auto found = namesInAnswer(answer, extentTest())) {
    takeServices(std::move(found->names), std::move(answer), std::move(found->document));
    moveServerToTop();
  }
  callOut(currentPlatform().toolkit)->setPointer(Pointer::Default);
}

void ImageServicesControl::showSilentServer() {
  callOut(currentPlatform().toolkit)->setPointer(Pointer::Arrow);
  ServiceNames.clear();
  myServerInfo.clear();
  if (!uiTxtBoxServerName.text().empty()) SelectedServer = uiTxtBoxServerName.text();
  OnLoad(boolean16False);
}

void ImageServicesControl::takeServices(Collection names, std::string serverInfo,
                                        std::shared_ptr<const XmlDocument> document) {
  ServiceNames = std::move(names);
  myServerInfo = std::move(serverInfo);
  if (!uiTxtBoxServerName.text().empty()) SelectedServer = uiTxtBoxServerName.text();
  const auto answer = std::make_shared<ParsedAnswer>(hashOf(myServerInfo), std::move(document));
  answer_ = answer;
  OnLoad(boolean16True);
}

void ImageServicesControl::OnLoad(Boolean16 ServerRunning) {
  visits([this, ServerRunning] { rebuildSurface(ServerRunning != boolean16False); });
}

void ImageServicesControl::rebuildSurface(bool serverRunning) {
  SelectButton.setEnabled(true);
  Info.setEnabled(true);
  replaceEngine();
  serviceFolderNames_.clear();
  for (const std::string& name : ServiceNames) AddElementToStringArray(name);
  if (!serverRunning) {
    SelectButton.setEnabled(false);
    Info.setEnabled(false);
    showMessageRow(serverNotFoundValues);
  } else if (ServiceNames.empty()) {
    showMessageRow(emptyServerValues);
  } else {
    if (!folders_) folders_ = std::make_shared<ServiceFolders>();
    if (folders_->init(serviceFolderNames_)) {
      fillList();
      callOut(myPlexa_)->SetOption(listFieldsOption, listFields);
    }
  }
  placeSurface();
  callOut(myPlexa_)->SetOption("ShowVScrollBar", "False");
  if (!callOut(myPlexa_)->Show()) endSilently("the form engine shows no list");
}

void ImageServicesControl::replaceEngine() {
  detachEngine();
  myPlexa_ = callOut(currentPlatform().plexa)->createPlexa();
  myPlexa_->Notify.connect([this](Plexa&, const PlexaEvent& event) { myPlexa_Notify(event); });
}

void ImageServicesControl::detachEngine() {
  const auto former = std::exchange(myPlexa_, nullptr);
  if (!former) return;
  former->Notify.disconnectAll();
  former->ParentWindow(0);
}

void ImageServicesControl::showMessageRow(const char* values) {
  callOut(myPlexa_)->SetOption(listFieldsOption, listFields);
  callOut(myPlexa_)->SetOption(listValuesOption, values);
}

void ImageServicesControl::placeSurface() {
  const Toolkit& toolkit = *currentPlatform().toolkit;
  const std::int32_t perX = toolkit.twipsPerPixelX();
  const std::int32_t perY = toolkit.twipsPerPixelY();
  const DesignGeometry& button = SelectButton.geometry();
  const DesignGeometry& box = uiTxtBoxServerName.geometry();
  const WindowHandle place = callOut(currentPlatform().toolkit)->windowOf(*this);
  callOut(myPlexa_)->ParentWindow(place);
  callOut(myPlexa_)->DataXml(emptyListData);
  const std::int32_t rightMargin = geometry().width - (button.left + button.width);
  callOut(myPlexa_)->Height(Check1.geometry().top / perY);
  callOut(myPlexa_)->Width((button.left - rightMargin) / perX);
  callOut(myPlexa_)->Top((box.top + box.height) / perY);
}

void ImageServicesControl::AddElementToStringArray(const std::string& stringToAdd) {
  serviceFolderNames_.push_back(stringToAdd);
}

void ImageServicesControl::updateListView() {
  visits([this] { fillList(); }, "ImageServicesControl::updateListView");
}

void ImageServicesControl::fillList() {
  if (!folders_) folders_ = std::make_shared<ServiceFolders>();
  ServiceFolders::StringArray folderNames;
  ServiceFolders::StringArray fileNames;
  ServiceFolders::StringArray wholeNames;
  folders_->getAllFolders(folderNames);
  folders_->getAllFiles(fileNames, wholeNames);
  lastListValues_ = BuildListValues(
      *currentPlatform().xml, [this]() -> const ServiceDetails& { return details(); }, folderNames, fileNames,
      wholeNames);
  callOut(myPlexa_)->SetOption(listValuesOption, lastListValues_);
}

// Entering a folder of a large answer would parse all of it once more. A host may have written another answer
// meanwhile.
const ServiceDetails& ImageServicesControl::details() {
  const std::size_t hash = hashOf(myServerInfo);
  if (!details_ || details_->hash != hash) {
    std::shared_ptr<const XmlDocument> document;
    // A tree of a large answer takes ten times its room, so it goes as soon as it was read.
    const auto answer = answer_.lock();
    if (answer && answer->hash == hash) document = std::exchange(answer->document, nullptr);
    if (!document) document = parsedDocument(myServerInfo);
    details_ = std::make_shared<const DetailsOfAnswer>(hash, ServiceDetails(*document));
  }
  return details_->details;
}

void ImageServicesControl::moveServerToTop() {
  const std::string server = uiTxtBoxServerName.text();
  if (server.empty()) return;
  const auto& entries = uiTxtBoxServerName.entries();
  const auto found = std::ranges::find(entries, server);
  if (found == entries.end()) return uiTxtBoxServerName.insertEntry(0, server);
  uiTxtBoxServerName.removeEntry(static_cast<std::size_t>(found - entries.begin()));
  uiTxtBoxServerName.insertEntry(0, server);
  uiTxtBoxServerName.setText(server);
  uiTxtBoxServerName.setCurrentSelection(0);
}

void ImageServicesControl::BrowseForServer() {
  const auto toolkit = currentPlatform().toolkit;
  const WindowHandle owner = callOut(toolkit)->windowOf(*this);
  const auto choice = callOut(toolkit)->browseForFolder(
      {networkFolder, owner, "Select a network computer or share.", folderDialogFlags});
  if (!choice) return;
  const std::string path =
      choice->path ? choice->path->substr(0, choice->path->find('\0')) : "\\\\" + choice->displayName;
  uiTxtBoxServerName.setText(replacedAll(path, "\\\\", ""));
}

void ImageServicesControl::tellThatClientIsMissing() const {
  callOut(currentPlatform().toolkit)
      ->showMessage({"Could not show the services. Client object is empty", "", MessageIcon::Critical,
                     MessageButtons::Ok});
}

std::string ImageServicesControl::askServer(const std::string& request) const {
  // With both clients set the older one is asked.
  if (myClient) return callOut(myClient)->GetServerInfo(request);
  const auto newer = interfaceOf<IOVLServerClient>(myOVLClient);
  if (!newer) failMissingObject("GetServerInfo of the client object");
  return callOut(newer)->GetServerInfo(request);
}

ExtentTest ImageServicesControl::extentTest() const {
  if (!FilterCalled || !Check1.checked()) return {};
  const ServiceExtent view{MyXMin, myXMax, myYMin, myYMax};
  return [view](const ServiceExtent& service) { return IsInViewExtent(view, service); };
}

void ImageServicesControl::onHide() {
  // Deliberate: reading the entry at index count gives an empty string, so the list always ends in one.
  for (std::size_t i = 0; i <= ListBox.count(); ++i) myFile.push_back(ListBox.entry(i));
  for (const std::string& server : uiTxtBoxServerName.entries()) {
    if (!IsKnownMruServer(server)) MRUServers.push_back(server);
  }
}

bool ImageServicesControl::IsKnownMruServer(const std::string& server) const {
  return std::ranges::find(MRUServers, server) != MRUServers.end();
}

void ImageServicesControl::plexaReset(Boolean16 reset) {
  endsQuietly([&] {
    const auto engine = myPlexa_;
    if (reset != boolean16False && engine) engine->ParentWindow(0);
  });
}

}  // namespace vlclientui
