#include "export/ExportDialogForm.h"

#include "contracts/Operations.h"
#include "documents/GuardedRead.h"
#include "export/CoordinateNote.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/HeldService.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {
constexpr const char* fileNamePath = "//GetImage/FileName";
constexpr const char* statusMessagePath = "//Item/Message";

/// Beside the boxes: they are read in the coordinate system of the service.
void tellCoordinates(ExportControl& control) {
  const auto document = callOut(currentPlatform().xml)->createDocument();
  // Copied, since the control may get another one meanwhile.
  const std::string fullView = control.FullViewXml;
  static_cast<void>(callOut(*document)->loadXml(fullView));
  control.Frame1.setNote(coordinateNote(*document));
}
}  // namespace

ExportDialogForm::Controls::Controls(ExportDialogForm& form)
    : ExportControl1(&form), Command1(form, "Command1", "&OK"), Command2(form, "Command2", "&Cancel") {}

ExportDialogForm::ExportDialogForm(Toolkit& toolkit) : Form(toolkit, "ExportDialogForm") {
  setCaption("Export Image Properties");
}

ExportDialogForm::~ExportDialogForm() = default;

ExportDialogForm::Controls& ExportDialogForm::controls() {
  load();
  return served(controls_);
}

std::shared_ptr<void> ExportDialogForm::buildControls() {
  controls_ = std::make_shared<Controls>(*this);
  controls_->Command1.click.connect([this] {
    endsQuietly([this] { acceptExport(); }, "ExportDialogForm::acceptExport");
    // Due whatever became of the window, which a finished export has closed.
    toolkit().setPointer(Pointer::Default);
  });
  controls_->Command2.click.connect([this] { unload(); });
  setFirstFocus(&controls_->ExportControl1.MainCombo);
  setDefaultButton(&controls_->Command1);
  setCancelButton(&controls_->Command2);
  return controls_;
}

void ExportDialogForm::onLoad() {
  acceptPressed = false;
  ExportControl& control = controls_->ExportControl1;
  control.MainComboValues.emplace();
  for (const std::string& entry : ComboVals) {
    control.MainComboValues->push_back(entry);
    // Deliberately inside the loop: without entries the control gets none of these.
    control.FullViewXml = myFullViewXml;
    control.LastAOIXml = myLastAOIXml;
    control.ExModalCalled = ExModalCalled;
  }
  endsQuietly([&control] { tellCoordinates(control); });
}

void ExportDialogForm::acceptExport() {
  callOut(toolkit())->setPointer(Pointer::Hourglass);
  acceptPressed = true;
  if (const std::string* const complaint = firstComplaint()) {
    callOut(toolkit())->showMessage({*complaint, "Warning", MessageIcon::Exclamation, MessageButtons::Ok});
    return;
  }
  exportImage();
}

const std::string* ExportDialogForm::firstComplaint() {
  const ExportControl& control = served(controls_).ExportControl1;
  for (const std::string* const complaint :
       {&control.myColsLabel, &control.myRowsLabel, &control.myHeightLabel, &control.myWidthLabel,
        &control.myPixelXLabel, &control.myPixelYLabel, &control.myCompFactorLabel}) {
    if (!complaint->empty()) return complaint;
  }
  return nullptr;
}

void ExportDialogForm::exportImage() {
  callOut(toolkit())->setPointer(Pointer::Hourglass);
  ExportControl& control = served(controls_).ExportControl1;
  control.OnClose();
  Visit::lookAgain();
  UpdatedXml = control.finalXml;
  const auto file = readText(*parsedDocument(UpdatedXml), fileNamePath);
  if (!file) return endSilently("the request names no file");
  if (mayWrite(*file)) runExport();
}

bool ExportDialogForm::mayWrite(const std::string& file) const {
  // Whoever does the same again may meet the question where it did not come up now, and the other way round.
  const Operation goesOn{Operation::Kind::MayAnswer, {}, {}, wordOf(MessageAnswer::Ok), {"already exists"}};
  if (!FileExist(file)) {
    tellOperation(goesOn);
    return true;
  }
  const MessageAnswer answer =
      callOut(toolkit())->showMessage({"The file '" + file + "' already exists. Overwrite file?",
                                       "Overwrite file", MessageIcon::Information, MessageButtons::OkCancel});
  if (answer == MessageAnswer::Cancel) return false;
  tellOperation(goesOn);
  return true;
}

void ExportDialogForm::runExport() {
  const auto service = imageServiceOf(myImageServiceObject);
  callOut(service)->ExportProperties("<Vorlane><Client>" + UpdatedXml + "</Client></Vorlane>");
  bool exported = false;
  // A service that shows its progress lets events run.
  withoutInput([&] { exported = callOut(service)->ExportImage(); });
  if (!exported) {
    const std::string status = callOut(service)->status();
    return showExportFailure(status);
  }
  callOut(toolkit())->setPointer(Pointer::Default);
  unload();
}

void ExportDialogForm::showExportFailure(const std::string& status) const {
  const std::string detail = readText(*parsedDocument(status), statusMessagePath).value_or("");
  callOut(toolkit())->showMessage(
      {"Could not export image." + detail, "Error", MessageIcon::Critical, MessageButtons::Ok});
}

void ExportDialogForm::onUnload() {
  if (!acceptPressed) UpdatedXml.clear();
  closed.raise();
}

}  // namespace vlclientui
