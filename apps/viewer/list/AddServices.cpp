#include "viewer/list/AddServices.h"

#include "contracts/RuntimeFailure.h"
#include "documents/NumberText.h"
#include "host/RunDialogs.h"
#include "library/ClassFactory.h"
#include "selection/ImageServicesDialogInterfaces.h"

namespace vlclientui::viewer {
namespace {

std::string element(const std::string& name, const std::string& content) {
  return "<" + name + ">" + content + "</" + name + ">";
}

}  // namespace

std::string viewExtentDocument(const host::GeographicEnvelope& view, const LocaleFormat& format) {
  const auto number = [&](const char* name, double value) {
    return element(name, doubleToText(value, format));
  };
  const std::string corners = number("XMin", view.xMin) + number("YMin", view.yMin) +
                              number("XMax", view.xMax) + number("YMax", view.yMax);
  return element("AddImageServiceDialog", element("CustomEnvelope", corners));
}

std::string pickServices(const ObjectPtr& serverClient, const std::string& viewExtent) {
  const auto dialog = queryInterface<IOVLImageServicesDialog>(createObject("ImageServicesDialog"));
  const host::ToldDialog told("services", {}, host::beginningOfServices(viewExtent));
  if (dialog->Init("", serverClient) == boolean16False ||
      dialog->ShowDialogEx(viewExtent) == boolean16False) {
    throw RuntimeFailure(dialog->Status());
  }
  return dialog->GetSelectedServices();
}

std::vector<std::string> referencesIn(const XmlService& xml, const std::string& selectedServices) {
  std::vector<std::string> references;
  if (selectedServices.empty()) return references;
  const auto document = xml.createDocument();
  if (!document->loadXml(selectedServices)) throw RuntimeFailure("The selected services are no XML document");
  for (const XmlNodePtr& name : document->selectNodes("//SelectedImageServices/Name")) {
    references.push_back(name->text());
  }
  return references;
}

}  // namespace vlclientui::viewer
