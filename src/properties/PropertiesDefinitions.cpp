#include "properties/PropertiesDefinitions.h"

#include <optional>

#include "contracts/CallOut.h"
#include "documents/HelpBlock.h"
#include "documents/LockDocument.h"
#include "frame/PlatformDocument.h"
#include "properties/PropertiesDocument.h"

namespace vlclientui {

namespace {

constexpr const char* srsPath = "//Vorlane/ImageServiceProperties/Srs";
constexpr const char* prjPath = "//Vorlane/ImageServiceProperties/Srs/Prj";

/// A field of the form that belongs to one mosaic method only.
struct MethodField {
  std::string_view method;
  std::string_view path;
};

constexpr MethodField methodFields[] = {
    {"By Attribute", "//Vorlane/ImageServiceProperties/TileOrderField"},
    {"By Attribute", "//Vorlane/ImageServiceProperties/TileOrderBase"},
    {"Lock Raster", propertiesPath::lockImageId},
};

/// Outer XML of the wrapper's first child.
std::optional<std::string> bodyOf(const XmlDocument& definition, std::string_view wrapperPath) {
  const auto wrapper = definition.selectSingleNode(wrapperPath);
  const auto first = wrapper ? wrapper->firstChild() : nullptr;
  if (!first && definition.documentElement())
    endSilently("the definition has nothing in " + std::string(wrapperPath));
  if (!first) return std::nullopt;
  return first->xml();
}

void takeFormBody(const XmlDocument& definition, std::string& formBody) {
  if (auto body = bodyOf(definition, "//XFDef")) formBody = std::move(*body);
}

void takeAttributeBody(XmlDocument& definition, std::string& attributeBody) {
  if (!bodyOf(definition, "//XADef")) return;
  addHelpBlock(definition);
  attributeBody = bodyOf(definition, "//XADef").value_or(attributeBody);
}

void removeFieldsOfOtherMethods(const std::string& methodList, XmlDocument& form, std::string& formBody) {
  for (const MethodField& field : methodFields) {
    if (allowsMosaicMethod(methodList, field.method)) continue;
    const auto node = form.selectSingleNode(field.path);
    const auto parent = node ? node->parentNode() : nullptr;
    if (!parent) continue;
    parent->removeChild(node);
    formBody = form.xml();
  }
}

/// Writes to an existing attribute; never adds one.
void writeAttribute(const XmlDocument& form, std::string_view path, std::string_view name,
                    std::string_view text) {
  const auto node = form.selectSingleNode(path);
  if (node && node->getNamedItem(name)) node->setAttribute(name, text);
}

void applyReadOnlyRule(bool srsReadOnly, const XmlDocument& form) {
  writeAttribute(form, srsPath, "Srs_READONLY_", srsReadOnly ? "True" : "False");
  if (srsReadOnly) writeAttribute(form, prjPath, "Prj_READONLY_", "True");
}

}  // namespace

std::string fetchClientDefinition(ImageService& service, ClientDefinition kind) {
  const bool attributes = kind == ClientDefinition::Attributes;
  if (!isNewerGeneration(service)) return callOut(service)->GetDefinition(attributes ? 1 : 2);
  return callOut(service)->getProperty(attributes ? "ClientXADef" : "ClientXFDef");
}

std::string mosaicMethodList(const std::string& attributeBody) {
  const auto node = parsedDocument(attributeBody)->selectSingleNode(propertiesPath::mosaicMethod);
  return node ? node->getNamedItem("MosaicMethod_LIST_").value_or("") : std::string();
}

void prepareDefinitions(ImageService& service, bool srsReadOnly, std::string& formBody,
                        std::string& attributeBody) {
  const std::string formText = fetchClientDefinition(service, ClientDefinition::Form);
  const auto formDefinition = parsedDocument(formText);
  const std::string attributeText = fetchClientDefinition(service, ClientDefinition::Attributes);
  const auto attributeDefinition = parsedDocument(attributeText);
  takeFormBody(*formDefinition, formBody);
  takeAttributeBody(*attributeDefinition, attributeBody);
  const auto form = parsedDocument(formBody);
  if (!form->documentElement()) return;
  removeFieldsOfOtherMethods(mosaicMethodList(attributeBody), *form, formBody);
  applyReadOnlyRule(srsReadOnly, *form);
  formBody = form->xml();
}

}  // namespace vlclientui
