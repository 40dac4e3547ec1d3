#include "properties/PropertiesDocument.h"

#include "frame/PlatformDocument.h"

namespace vlclientui {

namespace {

void writeOrAppend(XmlDocument& document, const std::string& name, const std::string& text) {
  if (writeTextIfPresent(document, std::string(propertiesPath::group) + "/" + name, text)) return;
  const auto element = document.createElement(name);
  element->setText(text);
  const auto group = document.selectSingleNode(propertiesPath::group);
  if (group) group->appendChild(element);
  if (!group && document.documentElement()) endSilently("the properties have no place for " + name);
}

}  // namespace

bool writeTextIfPresent(const XmlDocument& document, std::string_view path, std::string_view text) {
  const auto node = document.selectSingleNode(path);
  if (node) node->setText(text);
  return node != nullptr;
}

std::string withViewPoint(const std::string& propertiesXml, const std::string& x, const std::string& y) {
  const auto document = parsedDocument(propertiesXml);
  writeOrAppend(*document, "ViewPointY", y);
  writeOrAppend(*document, "ViewPointX", x);
  return document->xml();
}

}  // namespace vlclientui
