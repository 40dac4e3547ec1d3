#include "properties/ServiceProperties.h"

#include <utility>

#include "contracts/Toolkit.h"
#include "documents/LockDocument.h"
#include "frame/EngineRelease.h"
#include "frame/Guard.h"
#include "frame/HeldService.h"
#include "frame/PlatformDocument.h"
#include "frame/Saving.h"
#include "frame/ThreadState.h"
#include "properties/PropertiesDefinitions.h"
#include "properties/PropertiesDocument.h"
#include "properties/PropertiesEngine.h"
#include "properties/ServicePropertiesDialog.h"

namespace vlclientui {

namespace {

constexpr const char* saveFilter = "VLRef (*.VLRef)| *.VLRef|Xml (*.xml) | *.xml";

/// Writes the lock over whatever method the person chose, if the document has a place for it.
void applyLock(const XmlDocument& properties, const std::string& lockImageId) {
  if (lockImageId.empty()) return;
  if (!writeTextIfPresent(properties, propertiesPath::lockImageId, lockImageId)) {
    return endSilently("the properties have no place for a lock");
  }
  writeTextIfPresent(properties, propertiesPath::mosaicMethod, lockRasterMethod);
}

}  // namespace

ServiceProperties::Controls::Controls(ServiceProperties& form)
    : Frame1(form, "Frame1", ""),
      SaveAs(form, "SaveAs", "&Save As"),
      ErrorLabel(form, "ErrorLabel", "Label1") {
  Frame1.setGeometry({120, 120, 6600, 4800});
  SaveAs.setToolTip("Save as an xml file.");
  ErrorLabel.setVisible(false);
}

ServiceProperties::ServiceProperties(Toolkit& toolkit) : Form(toolkit, "ServiceProperties") {
  setCaption("Service Properties");
}

ServiceProperties::~ServiceProperties() {
  endsQuietly([this] { releaseEngine(plexaUtil); });
}

ServiceProperties::Controls& ServiceProperties::controls() {
  load();
  return served(controls_);
}

std::shared_ptr<void> ServiceProperties::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  controls_->SaveAs.click.connect(
      [this] { endsQuietly([this] { saveDefinition(); }, "ServiceProperties::saveDefinition"); });
  return controls_;
}

void ServiceProperties::onLoad() {
  endsQuietly([this] { showServiceProperties(); });
}

void ServiceProperties::showServiceProperties() {
  if (myImageServiceObject) {
    prepareDefinitions(*imageServiceOf(myImageServiceObject), mySrsReadOnly, myXFDefBody, myXADefBody);
  }
  const WindowHandle frame = callOut(toolkit())->windowOf(served(controls_).Frame1);
  showPage(frame, threadState().gServicePropertiesXml);
}

void ServiceProperties::showPage(WindowHandle frame, const std::string& data) {
  const std::int32_t width = callOut(toolkit())->windowRect(frame).value_or(WindowRect{}).width() - 10;
  const EnginePlace place{.frame = frame, .top = 8, .left = 5, .width = width, .height = 300};
  const bool shown =
      showPropertiesPage(plexaUtil, {myXADefBody, myXFDefBody, data}, place, EmptyPage::Shown,
                         [this](Plexa& source, const PlexaEvent& event) { plexaUtil_Notify(source, event); });
  if (!shown) showFailure();
}

void ServiceProperties::showFailure() {
  Label& label = served(controls_).ErrorLabel;
  label.setCaption("Cannot show service properties.Unable to retrieve information from the xml.");
  label.setVisible(true);
}

void ServiceProperties::plexaUtil_Notify(Plexa& source, const PlexaEvent& event) {
  const auto keptAlive = plexaUtil;
  dispatch([&] {
    endsQuietly([&] {
      if (event.ControlName == "MosaicMethod") followMosaicMethod(source, event.Value);
      if (event.ControlName == "ViewPointControl") openViewPointDialog();
    });
  });
}

void ServiceProperties::openViewPointDialog() {
  const auto dialog = std::make_shared<ServicePropertiesDialog>();
  // Deliberate: the result is ignored, so the window opens even after a failed Init.
  queryInterface<IServicePropertiesDialog>(dialog)->Init("", nullptr, myImageServiceObject);
  dialog->ShowViewPointModalDialog();
}

std::string ServiceProperties::GetGuiUpdates() {
  std::string updates;
  visitWindow(this, [&] {
    if (plexaUtil) updates = callOut(plexaUtil)->GetResultXml();
  });
  return updates;
}

bool ServiceProperties::RefreshTheForm() {
  visitWindow(this, [this] {
    if (!plexaUtil) return;
    callOut(plexaUtil)->DataXml(threadState().gServicePropertiesXml);
    callOut(plexaUtil)->Commit();
  });
  return false;
}

bool ServiceProperties::Save() {
  visitWindow(this, [this] {
    ThreadState& state = threadState();
    if (plexaUtil) takeEdits();
    state.gServicePropertiesXml =
        withViewPoint(state.gServicePropertiesXml, state.gViewPointX, state.gViewPointY);
    state.gLockImageID.clear();
  });
  return false;
}

void ServiceProperties::takeEdits() {
  ThreadState& state = threadState();
  const auto engine = plexaUtil;
  callOut(engine)->Commit();
  state.gServicePropertiesXml = callOut(engine)->GetResultXml();
  const auto properties = parsedDocument(state.gServicePropertiesXml);
  applyLock(*properties, state.gLockImageID);
  state.gServicePropertiesXml = properties->xml();
}

void ServiceProperties::StoreViewPoint(const std::string& x, const std::string& y) {
  endsQuietly([&] {
    std::string& properties = threadState().gServicePropertiesXml;
    properties = withViewPoint(properties, x, y);
  });
}

void ServiceProperties::ReleaseEngine() {
  visitWindow(this, [this] {
    if (!plexaUtil) return;
    callOut(plexaUtil)->Commit();
    threadState().gServicePropertiesXml = callOut(plexaUtil)->GetResultXml();
    releaseEngine(plexaUtil);
  });
}

void ServiceProperties::saveDefinition() {
  const auto file = callOut(toolkit())->saveFile(
      {.fileName = "", .filter = saveFilter, .title = "", .asksBeforeOverwriting = true});
  if (!file || file->empty()) return;
  const bool saved = callOut(imageServiceOf(myImageServiceObject))->SaveProperties(*file);
  if (saved) return tellSaved(toolkit(), *file);
  callOut(toolkit())->showMessage({"Could not save it to '" + *file + "'.", "Error saving file",
                                   MessageIcon::Critical, MessageButtons::Ok});
}

}  // namespace vlclientui
