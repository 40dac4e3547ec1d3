#include "PropertiesCommand.h"

#include <algorithm>
#include <iostream>
#include <memory>

#include "ServiceDialog.h"
#include "Telling.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/XmlDocument.h"
#include "documents/DecimalText.h"
#include "documents/GuardedRead.h"
#include "documents/ParsedDocument.h"

namespace vlclientui::vlhost {
namespace {

constexpr const char* viewPointXPath = "//Vorlane/ImageServiceProperties/ViewPointX";
constexpr const char* viewPointYPath = "//Vorlane/ImageServiceProperties/ViewPointY";
constexpr const char* reasonPath = "//Item/Message";
constexpr const char* imageMessagesPath = "//Vorlane/Client/ImageMetadata/Basic/Status/Item/Message";

std::string textIn(const HeadlessSession& session, const std::string& xml, const char* path) {
  return textAt(*parsedDocument(*session.host().platform->xml, xml), path);
}

/// The pages that change the properties of a service, each in a window of this host.
class PropertiesPages {
 public:
  PropertiesPages(const HeadlessSession& session,
                  const std::shared_ptr<client::CatalogueImageService>& service)
      : session_(session), dialog_(session, service) {
    dialog_.show(PropertyPageId::PropertyPageProperties);
    dialog_.show(PropertyPageId::PropertyPageViewPoint);
    const Label& error = page().ErrorLabel;
    if (error.visible()) throw RuntimeFailure(error.caption());
    // The boxes open empty, and their content is what is saved.
    const std::string properties = service->ServiceProperties();
    viewPointX_ = textIn(session, properties, viewPointXPath);
    viewPointY_ = textIn(session, properties, viewPointYPath);
  }

  /// @throws RuntimeFailure with the words of the page for what it does not take.
  void set(const PropertyEdit& edit) {
    if (edit.name == "ViewPointX") return setCoordinate(viewPointX_, edit);
    if (edit.name == "ViewPointY") return setCoordinate(viewPointY_, edit);
    auto* const surface = session_.surfaces().surfaceIn(session_.toolkit().windowOf(page().Frame1));
    if (!surface) failMissingObject("the page of the properties");
    const std::string complaint = surface->userSetsField(edit.name, edit.value);
    if (!complaint.empty()) throw RuntimeFailure(edit.name + " '" + edit.value + "': " + complaint);
  }

  [[nodiscard]] std::string updatedProperties() {
    auto& boxes = dialog_.pages().viewPointPage().controls();
    type(boxes.uiTxtBoxX, viewPointX_);
    type(boxes.uiTxtBoxY, viewPointY_);
    return dialog_.operations().GetUpdatedProperties();
  }

  /// @returns whether nobody was told of a failure.
  bool saveAs(const std::string& file) {
    session_.toolkit().chooseFile(file);
    page().SaveAs.userClicks();
    return session_.toolkit().messages().empty();
  }

 private:
  [[nodiscard]] ServiceProperties::Controls& page() const {
    return dialog_.pages().propertiesPage().controls();
  }

  /// The boxes of the viewpoint take any text. A service would take one that is no number for its middle.
  /// A comma is the decimal separator of some locales and no part of the document's own numbers.
  void setCoordinate(std::string& coordinate, const PropertyEdit& edit) const {
    const bool hasForeignComma = edit.value.find(',') != std::string::npos &&
                                 session_.host().platform->system->localeFormat().decimalSeparator != ",";
    if (!edit.value.empty() && (hasForeignComma || !readDecimal(edit.value))) {
      throw RuntimeFailure(edit.name + " '" + edit.value + "': Not a number, such as 12.5");
    }
    coordinate = edit.value;
  }

  static void type(TextBox& box, const std::string& text) {
    box.userFocuses();
    box.userTypes(text);
  }

  const HeadlessSession& session_;
  ServiceDialog dialog_;
  std::string viewPointX_;
  std::string viewPointY_;
};

std::vector<std::string> imageMessages(const HeadlessSession& session,
                                       client::CatalogueImageService& service) {
  const auto document = parsedDocument(*session.host().platform->xml, service.GetImageMetadata("Basic"));
  std::vector<std::string> messages;
  for (const XmlNodePtr& node : document->selectNodes(imageMessagesPath)) messages.push_back(node->text());
  return messages;
}

/// Properties that a service accepts but cannot follow are no failure, but worth a remark.
void apply(const HeadlessSession& session, client::CatalogueImageService& service,
           const std::string& properties) {
  const auto before = imageMessages(session, service);
  service.setServiceProperties(properties);
  for (const std::string& message : imageMessages(session, service)) {
    if (std::ranges::count(before, message) == 0) tell(message);
  }
}

int save(const HeadlessSession& session, PropertiesPages& pages, client::CatalogueImageService& service,
         const std::string& file) {
  if (pages.saveAs(file)) {
    std::cout << "wrote " << terminalText(file) << "\n";
    return 0;
  }
  session.tellMessages();
  tell(textIn(session, service.status(), reasonPath));
  return 1;
}

}  // namespace

int runProperties(const PropertiesCommand& command) {
  const HeadlessSession session;
  const auto service = openService(session, command.reference);
  PropertiesPages pages(session, service);
  for (const PropertyEdit& edit : command.edits) pages.set(edit);
  apply(session, *service, pages.updatedProperties());
  if (!command.file.empty()) return save(session, pages, *service, wholePath(command.file).string());
  const std::string document = service->ServiceProperties();
  std::cout << (command.format == DocumentOutput::Json ? documentJson(document, *session.host().platform->xml)
                                                       : document + "\n");
  return 0;
}

}  // namespace vlclientui::vlhost
