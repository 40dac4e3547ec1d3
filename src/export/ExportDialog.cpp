#include "export/ExportDialog.h"

#include <algorithm>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "documents/GuardedRead.h"
#include "documents/TextCase.h"
#include "export/Envelope.h"
#include "frame/General.h"
#include "frame/Guard.h"
#include "frame/HeldService.h"
#include "frame/InitProtocol.h"
#include "frame/PlatformDocument.h"
#include "frame/ThreadState.h"

namespace vlclientui {

namespace {

constexpr const char* customExtentsPath = "//Vorlane/Client/ExportImageDialog";
constexpr const char* descriptionPath = "//CustomEnvelope/Description";

/// The element of a coordinate and the property that it sets, in reading order.
struct Corner {
  const char* path;
  void (Envelope::*write)(const std::string&);
};

constexpr Corner corners[] = {
    {"//CustomEnvelope/XMax", &Envelope::XMax},
    {"//CustomEnvelope/XMin", &Envelope::XMin},
    {"//CustomEnvelope/YMax", &Envelope::YMax},
    {"//CustomEnvelope/YMin", &Envelope::YMin},
};

std::shared_ptr<Envelope> readEnvelope(const XmlDocument& document, std::string description,
                                       const std::string& decimalSeparator) {
  auto envelope = std::make_shared<Envelope>();
  envelope->Description(std::move(description));
  for (const Corner& corner : corners) {
    auto text = readText(document, corner.path);
    if (text) (*envelope.*corner.write)(replacedAll(*text, ".", decimalSeparator));
  }
  return envelope;
}

}  // namespace

ExportDialog::ExportDialog() : platform_(threadState().platform) {}

Object* ExportDialog::queryInterface(std::string_view name) {
  return name == "_ExportDialog" || name == interfaceName ? this : nullptr;
}

Boolean16 ExportDialog::IExportImageDialog_Init(const std::string& /*dialogConfigXml*/,
                                                const ObjectPtr& clientObject,
                                                const ObjectPtr& imageService) {
  const Visit noWindow;
  const auto keptAlive = weak_from_this().lock();
  bool succeeded = false;
  endsQuietly([&] {
    if (!findsDefinition()) return;
    myImageServiceObject = imageService;
    auto client = interfaceOf<IServerClient>(clientObject);
    if (clientObject && !client) failTypeMismatch("the client object is no IServerClient");
    myClient = std::move(client);
    succeeded = true;
  });
  return toBoolean16(succeeded);
}

bool ExportDialog::findsDefinition() {
  buildClientXADefPath();
  ThreadState& state = threadState();
  // Deliberate: only this class appends a blank, which the file system ignores.
  state.ClientXADefPath += ' ';
  const std::string& path = state.ClientXADefPath;
  if (!FileExist(path)) {
    state.exportDialogStatus = missingDefinitionText(path);
    return false;
  }
  if (!callOut(currentPlatform().xml)->createDocument()->load(path)) {
    state.exportDialogStatus = invalidDefinitionText(path);
    return false;
  }
  return true;
}

std::string ExportDialog::iExportImageDialog_GetUpdatedProperties() {
  return form_ ? form_->UpdatedXml : std::string();
}

Boolean16 ExportDialog::iExportImageDialog_ShowEmbeddedForm(std::int32_t /*parentWindowHandle*/) {
  return boolean16False;
}

Boolean16 ExportDialog::iExportImageDialog_ShowModalDialog() {
  return show(boolean16False, [] {});
}

Boolean16 ExportDialog::iExportImageDialog_ShowModalDialogEx(const std::string& exportDialogPropertiesXml) {
  return show(boolean16True, [&] {
    if (myImageServiceObject) readCustomEnvelopes(exportDialogPropertiesXml);
  });
}

Boolean16 ExportDialog::show(Boolean16 extended, const std::function<void()>& readExtents) {
  const Visit noWindow;
  const auto keptAlive = weak_from_this().lock();
  ExportDialogForm& form = window();
  if (form.onShow()) {
    threadState().exportDialogStatus = Form::alreadyOnShow;
    return boolean16False;
  }
  Form::Show show(form);
  if (extended) readLocaleDecimalSeparator(decimalSeparator_);
  const bool stands = form.visited([&] {
    fillWindow();
    readExtents();
    form.ExModalCalled = extended;
  });
  if (stands) show.run();
  return boolean16False;
}

bool ExportDialog::showPage(const std::string& exportDialogPropertiesXml, WindowHandle parentHandle) {
  const Visit noWindow;
  const auto keptAlive = weak_from_this().lock();
  ExportDialogForm& form = window();
  if (form.onShow() || form.loaded()) return false;
  readLocaleDecimalSeparator(decimalSeparator_);
  fillWindow();
  if (myImageServiceObject) readCustomEnvelopes(exportDialogPropertiesXml);
  form.ExModalCalled = boolean16True;
  form.load();
  return form.visited([&] {
    Toolkit& toolkit = form.toolkit();
    const WindowHandle page = callOut(toolkit)->windowOf(form);
    callOut(toolkit)->setParent(page, parentHandle);
    callOut(toolkit)->setStyle(page, callOut(toolkit)->styleOf(page) | windowStyle::child);
    callOut(toolkit)->showWindow(page, showModeShow);
  });
}

void ExportDialog::closePage() {
  const Visit noWindow;
  const auto keptAlive = weak_from_this().lock();
  if (form_ && !form_->onShow()) form_->unload();
}

void ExportDialog::fillWindow() {
  ExportDialogForm& form = window();
  form.ComboVals.clear();
  if (myImageServiceObject) {
    form.ComboVals = {"Current View Extent", "Default Extent of Image Service", "Custom Extent"};
  }
  form.myImageServiceObject = myImageServiceObject;
  form.myClient = myClient;
  if (!myImageServiceObject) return;
  const auto service = imageServiceOf(myImageServiceObject);
  form.myLastAOIXml = callOut(service)->GetImageMetadata("");
  form.myFullViewXml = callOut(service)->ServiceInfo();
}

void ExportDialog::readCustomEnvelopes(const std::string& xml) {
  customEnvelopes().clear();
  if (xml.empty()) return;
  const auto extents = parsedDocument(xml)->selectSingleNode(customExtentsPath);
  if (!extents) return endSilently("the extents of the host hold no ExportImageDialog");
  for (const auto& child : extents->childNodes()) takeCustomEnvelope(child->xml());
}

void ExportDialog::takeCustomEnvelope(const std::string& xml) {
  const auto document = parsedDocument(xml);
  const auto description = readText(*document, descriptionPath);
  if (!description) return endSilently("an extent of the host has no Description");
  auto envelope = readEnvelope(*document, *description, decimalSeparator_);
  auto& entries = window().ComboVals;
  if (std::ranges::find(entries, *description) == entries.end()) entries.push_back(*description);
  // A later extent replaces the earlier one of the same name, and goes to the end.
  auto& envelopes = customEnvelopes();
  const auto former = std::ranges::find_if(
      envelopes, [&](const auto& known) { return known->Description() == *description; });
  if (former != envelopes.end()) envelopes.erase(former);
  envelopes.push_back(std::move(envelope));
}

ExportDialogForm& ExportDialog::window() {
  if (!form_) form_ = std::make_shared<ExportDialogForm>(*currentPlatform().toolkit);
  return *form_;
}

}  // namespace vlclientui
