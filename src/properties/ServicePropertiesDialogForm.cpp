#include "properties/ServicePropertiesDialogForm.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/HelpBlock.h"
#include "documents/LockDocument.h"
#include "export/ExportDialog.h"
#include "frame/EngineRelease.h"
#include "frame/Guard.h"
#include "frame/HeldService.h"
#include "frame/Saving.h"
#include "frame/ThreadState.h"
#include "properties/PropertiesDefinitions.h"
#include "properties/PropertiesDocument.h"
#include "properties/PropertiesEngine.h"
#include "properties/ServicePropertiesDialog.h"

namespace vlclientui {

namespace {

constexpr const char* designCaption = "Service Properties";
constexpr const char* propertiesTab = "Service Properties";
constexpr const char* metadataTab = "Metadata";
constexpr std::size_t propertiesSide = 0;
constexpr std::size_t metadataSide = 1;
constexpr const char* nameOfService = "Vorlane/ImageServiceInfo/Name";
constexpr const char* propertiesFilter = "VLRef (*.VLRef)| *.VLRef|Xml (*.xml) | *.xml";
constexpr const char* xmlFilter = "Xml (*.xml) | *.xml";

// Place of the properties engine in its frame, pixels.
constexpr std::int32_t engineTop = 8;
constexpr std::int32_t engineLeft = 3;
constexpr std::int32_t widthLeftFree = 30;
constexpr std::int32_t engineHeight = 290;

}  // namespace

ServicePropertiesDialogForm::Controls::Controls(ServicePropertiesDialogForm& form)
    : myTab(form, "myTab", {propertiesTab, metadataTab}),
      ServicePropFrame{{{form, "ServicePropFrame0", ""}, {form, "ServicePropFrame1", ""}}},
      SaveAs(form, "SaveAs", "&Save As"),
      metadata(form, oneWindowDifferences),
      viewer(form, form, metadata, oneWindowDifferences),
      Command2(form, "Command2", "&Export"),
      uibtnok(form, "uibtnok", "&OK"),
      uibtncancel(form, "uibtncancel", "&Cancel"),
      Command1(form, "Command1", "&Save As") {
  SaveAs.setToolTip("Save the service properties to a given file.");
  Command1.setVisible(false);
  for (Frame& side : ServicePropFrame) side.setVisible(false);
}

ServicePropertiesDialogForm::ServicePropertiesDialogForm(Toolkit& toolkit)
    : Form(toolkit, "ServicePropertiesDialogForm") {
  setCaption(designCaption);
}

ServicePropertiesDialogForm::~ServicePropertiesDialogForm() { releaseEngines(); }

std::int32_t ServicePropertiesDialogForm::ShowMe() {
  // While it is open, a second show leaves it alone.
  Show show(*this);
  myOkPressed = false;
  show.run();
  return myResult;
}

ServicePropertiesDialogForm::Controls& ServicePropertiesDialogForm::controls() {
  load();
  return served(controls_);
}

std::shared_ptr<void> ServicePropertiesDialogForm::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  connectButtons();
  setDefaultButton(&controls_->uibtnok);
  setCancelButton(&controls_->uibtncancel);
  return controls_;
}

void ServicePropertiesDialogForm::connectButtons() {
  const auto quietly = [this](void (ServicePropertiesDialogForm::*routine)(), const char* name) {
    return [this, routine, name] { endsQuietly([this, routine] { (this->*routine)(); }, name); };
  };
  Controls& all = *controls_;
  all.myTab.click.connect([this] { ShowSelectedTab(); });
  all.metadata.Command7.click.connect(
      quietly(&ServicePropertiesDialogForm::lockToRaster, "ServicePropertiesDialogForm::lockToRaster"));
  all.uibtnok.click.connect(
      quietly(&ServicePropertiesDialogForm::accept, "ServicePropertiesDialogForm::accept"));
  all.uibtncancel.click.connect(
      quietly(&ServicePropertiesDialogForm::cancel, "ServicePropertiesDialogForm::cancel"));
  all.SaveAs.click.connect(
      quietly(&ServicePropertiesDialogForm::saveProperties, "ServicePropertiesDialogForm::saveProperties"));
  all.Command1.click.connect(quietly(&ServicePropertiesDialogForm::saveUpdatedProperties,
                                     "ServicePropertiesDialogForm::saveUpdatedProperties"));
  all.Command2.click.connect(
      quietly(&ServicePropertiesDialogForm::exportImage, "ServicePropertiesDialogForm::exportImage"));
}

void ServicePropertiesDialogForm::onLoad() {
  setCaption(designCaption);
  myLastTab.clear();
  myLockImageID.clear();
  endsQuietly([this] { openWithService(); });
}

void ServicePropertiesDialogForm::openWithService() {
  const auto service = imageServiceIfAny(myImageServiceObject);
  const std::string properties = service ? callOut(service)->ServiceProperties() : myPropertiesXml;
  myPropertiesXml = withHelpBlock(*currentPlatform().xml, properties);
  ShowSelectedTab();
  if (service) {
    const std::string serviceInfo = callOut(service)->ServiceInfo();
    showName(serviceInfo);
  }
  served(controls_).viewer.sizeTreeEngines();
}

void ServicePropertiesDialogForm::showName(const std::string& serviceInfoXml) {
  const auto name = parsedDocument(serviceInfoXml)->selectSingleNode(nameOfService);
  if (name) setCaption(caption() + " -- " + name->text());
}

/// A window closed by its frame is canceled, even after Save.
void ServicePropertiesDialogForm::onUnload() {
  myResult = myOkPressed ? 1 : 0;
  releaseEngines();
}

void ServicePropertiesDialogForm::releaseEngines() {
  endsQuietly([this] { releaseEngine(plexaUtil); });
  if (controls_) controls_->viewer.releaseEngines();
  endsQuietly([this] { releaseEngine(myPlexa); });
}

void ServicePropertiesDialogForm::ShowSelectedTab() {
  visitWindow(this, [this] {
    served(controls_).viewer.releaseProcessEngines();
    for (Frame& side : served(controls_).ServicePropFrame) side.setVisible(false);
    served(controls_).metadata.Command7.setVisible(false);
    const std::string tab = served(controls_).myTab.selectedCaption();
    if (tab == propertiesTab) showPropertiesSide();
    if (tab == metadataTab) showMetadataSide();
  });
}

void ServicePropertiesDialogForm::showPropertiesSide() {
  served(controls_).viewer.hideServerProcess();
  served(controls_).ServicePropFrame[propertiesSide].setVisible(true);
  endsQuietly([this] { showServiceProperties(); });
  Visit::lookAgain();
  myLastTab = propertiesTab;
}

void ServicePropertiesDialogForm::showServiceProperties() {
  if (const auto service = imageServiceIfAny(myImageServiceObject)) {
    prepareDefinitions(*service, mySrsReadOnly, myXFDefBody, myXADefBody);
  }
  const WindowHandle own = callOut(toolkit())->windowOf(*this);
  const WindowRect window = callOut(toolkit())->windowRect(own).value_or(WindowRect{});
  const WindowHandle frame = callOut(toolkit())->windowOf(served(controls_).ServicePropFrame[propertiesSide]);
  const EnginePlace place{.frame = frame,
                          .top = engineTop,
                          .left = engineLeft,
                          .width = window.width() - widthLeftFree,
                          .height = engineHeight};
  const auto notify = [this](Plexa& source, const PlexaEvent& event) { plexaUtil_Notify(source, event); };
  const bool shown = showPropertiesPage(plexaUtil, {myXADefBody, myXFDefBody, myPropertiesXml}, place,
                                        EmptyPage::LeftBlank, notify);
  if (!shown) endSilently("the form engine shows no page");
}

void ServicePropertiesDialogForm::showMetadataSide() {
  if (myLastTab == propertiesTab) CollectProperties();
  served(controls_).viewer.FetchDocuments();
  buildMetadataTree();
  served(controls_).ServicePropFrame[metadataSide].setVisible(true);
  myLastTab = metadataTab;
}

void ServicePropertiesDialogForm::buildMetadataTree() {
  if (endsQuietly([this] { served(controls_).viewer.buildTree(); })) return;
  callOut(toolkit())->setPointer(Pointer::Default);
}

void ServicePropertiesDialogForm::CollectProperties() {
  visitWindow(this, [this] {
    if (const auto engine = plexaUtil) {
      callOut(engine)->Commit();
      const std::string edited = callOut(engine)->GetResultXml();
      myPropertiesXml = edited;
    }
    const ThreadState& state = threadState();
    myPropertiesXml = withViewPoint(myPropertiesXml, state.gViewPointX, state.gViewPointY);
  });
}

void ServicePropertiesDialogForm::lockToRaster() {
  const auto properties = parsedDocument(myPropertiesXml);
  const std::string rasterId = served(controls_).viewer.rasters().selectedRasterId();
  if (rasterId.empty()) return endSilently("the raster has no id to lock to");
  myLockImageID = lockIdOf(rasterId);
  if (!myImageServiceObject) return endSilently("there is no service to lock");
  if (!mayLock()) return endSilently("the service allows no lock");
  writeTextIfPresent(*properties, propertiesPath::mosaicMethod, lockRasterMethod);
  if (!writeTextIfPresent(*properties, propertiesPath::lockImageId, myLockImageID)) {
    endSilently("the properties have no place for a lock");
  }
  myPropertiesXml = properties->xml();
}

/// A definition that does not parse forbids nothing.
bool ServicePropertiesDialogForm::mayLock() const {
  const auto definition = served(controls_).viewer.definitions().clientAttributes();
  return !definition || allowsLockRaster(*definition);
}

void ServicePropertiesDialogForm::accept() {
  myOkPressed = true;
  // Nothing to collect on the metadata side: that happened when it was shown.
  if (served(controls_).myTab.selectedCaption() != metadataTab) CollectProperties();
  Visit::lookAgain();
  publishProperties();
  myResult = 1;
  unload();
}

/// Without a lock this writes an empty id over that of the properties; hosts rely on it.
void ServicePropertiesDialogForm::publishProperties() {
  const auto properties = parsedDocument(myPropertiesXml);
  writeTextIfPresent(*properties, propertiesPath::lockImageId, myLockImageID);
  threadState().gServicePropertiesXml = properties->xml();
}

void ServicePropertiesDialogForm::cancel() {
  myOkPressed = false;
  myCancelPressed = true;
  myResult = 0;
  unload();
}

/// The file gets a lock only if the properties hold one already.
void ServicePropertiesDialogForm::saveProperties() {
  myDialog.filter = propertiesFilter;
  myDialog.asksBeforeOverwriting = true;
  const auto chosen = callOut(toolkit())->saveFile(myDialog);
  if (!chosen || chosen->empty()) return;
  myDialog.fileName = *chosen;
  if (served(controls_).myTab.selectedCaption() != metadataTab) CollectProperties();
  Visit::lookAgain();
  saveAndTell(toolkit(), *parsedDocument(myPropertiesXml), myDialog.fileName);
  myDialog.fileName.clear();
}

void ServicePropertiesDialogForm::saveUpdatedProperties() {
  myDialog.filter = xmlFilter;
  myDialog.asksBeforeOverwriting = false;
  const auto chosen = callOut(toolkit())->saveFile(myDialog);
  if (!chosen || chosen->empty()) return;
  myDialog.fileName = *chosen;
  if (!myDialogObject) failMissingObject("the dialog object of the window");
  saveAndTell(toolkit(), *parsedDocument(myDialogObject->GetUpdatedProperties()), myDialog.fileName);
}

void ServicePropertiesDialogForm::exportImage() {
  if (!myExportDialog) myExportDialog = std::make_shared<ExportDialog>();
  const auto dialog = myExportDialog;
  dialog->IExportImageDialog_Init("", nullptr, myImageServiceObject);
  dialog->iExportImageDialog_ShowModalDialog();
}

void ServicePropertiesDialogForm::plexaUtil_Notify(Plexa& source, const PlexaEvent& event) {
  const auto keptAlive = plexaUtil;
  dispatch([&] {
    endsQuietly([&] {
      if (event.ControlName == "MosaicMethod") followMosaicMethod(source, event.Value);
      if (event.ControlName == "ViewPointControl" && myDialogObject)
        myDialogObject->ShowViewPointModalDialog();
    });
  });
}

}  // namespace vlclientui
