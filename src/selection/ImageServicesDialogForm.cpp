#include "selection/ImageServicesDialogForm.h"

#include "contracts/RuntimeFailure.h"
#include "frame/Guard.h"
#include "frame/ThreadState.h"
#include "selection/ServerInfoRequest.h"
#include "selection/SettingsDocument.h"

namespace vlclientui {

ImageServicesDialogForm::Controls::Controls(ImageServicesDialogForm& form)
    : ImageServicesControl1(&form),
      uibtnok(form, "uibtnok", "&OK"),
      uibtncancel(form, "uibtncancel", "&Cancel") {
  uibtnok.setEnabled(false);
}

ImageServicesDialogForm::ImageServicesDialogForm(Toolkit& toolkit)
    : Form(toolkit, "ImageServicesDialogForm") {
  setCaption("Add Vor Lane Connection");
}

ImageServicesDialogForm::~ImageServicesDialogForm() = default;

ImageServicesDialogForm::Controls& ImageServicesDialogForm::controls() {
  load();
  return served(controls_);
}

std::shared_ptr<void> ImageServicesDialogForm::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  controls_->ImageServicesControl1.abc.connect([this] { selectionChanged(); });
  controls_->uibtnok.click.connect(
      [this] { endsQuietly([this] { acceptSelection(); }, "ImageServicesDialogForm::acceptSelection"); });
  controls_->uibtncancel.click.connect([this] { unload(); });
  setCancelButton(&controls_->uibtncancel);
  return controls_;
}

void ImageServicesDialogForm::ShowMePlexa() { controls().ImageServicesControl1.ShowThePlexa(); }

void ImageServicesDialogForm::onLoad() { OkPressed = false; }

void ImageServicesDialogForm::selectionChanged() {
  if (controls_) controls_->uibtnok.setEnabled(controls_->ImageServicesControl1.TheListCount != 0);
}

void ImageServicesDialogForm::acceptSelection() {
  OkPressed = true;
  served(controls_).ImageServicesControl1.setVisible(false);
  auto engine = callOut(currentPlatform().plexa)->createPlexa();
  callOut(engine)->AttributeDefinition(threadState().ClientXADefPath);
  const auto settingsTemplate = callOut(currentPlatform().xml)->createDocument();
  const std::string templateXml = callOut(engine)->GetTemplateXml();
  if (!settingsTemplate->loadXml(templateXml)) {
    // The window stays open with its control hidden; OkPressed stays set.
    showInvalidTemplateMessage();
    return;
  }
  publishDocuments(*settingsTemplate);
  callOut(engine)->ParentWindow(0);
  engine.reset();
  unload();
}

void ImageServicesDialogForm::publishDocuments(XmlDocument& settingsTemplate) {
  const ImageServicesControl& control = served(controls_).ImageServicesControl1;
  auto references = control.myFile;
  // The list ends in an empty string, which is not an entry.
  if (!references.empty()) references.pop_back();
  const std::string selected = writeSelectedServices(settingsTemplate, references);
  appendMruServers(settingsTemplate, control.MRUServers);
  SelectedServicesXml = selected;
  if (!ServersInPlace::ofThread()) saveSettings(settingsTemplate, threadState().UserDataFolder);
}

void ImageServicesDialogForm::onUnload() {
  if (!OkPressed) SelectedServicesXml.clear();
  endsQuietly([this] { controls_->ImageServicesControl1.plexaReset(boolean16True); });
}

}  // namespace vlclientui
