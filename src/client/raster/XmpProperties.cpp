#include "client/raster/XmpProperties.h"

#include "contracts/XmlDocument.h"

namespace vlclientui::client {
namespace {

using Properties = std::vector<std::pair<std::string, std::string>>;

// XMP allows other prefixes, but all producers write these.
constexpr auto descriptions = "//*[name()='rdf:Description'][not(ancestor::*[name()='rdf:Description'])]";
constexpr auto lists = "rdf:";

bool isPlain(const std::string& name) { return !name.starts_with(lists) && !name.starts_with("xml"); }

std::string joined(const std::string& one, const std::string& other) {
  return one.empty() || other.empty() ? one + other : one + ", " + other;
}

bool isTextOnly(const XmlNode& node) {
  for (const XmlNodePtr& child : node.childNodes()) {
    if (child->kind() == XmlNodeKind::Element) return false;
  }
  return true;
}

// A structure without properties of other names is a list of texts.
std::string listText(const XmlNode& node) {
  if (isTextOnly(node)) return node.text();
  std::string out;
  for (const XmlNodePtr& child : node.childNodes()) out = joined(out, listText(*child));
  return out;
}

void addAttributes(Properties& properties, const XmlNode& node) {
  for (const auto& [name, value] : node.attributes()) {
    if (isPlain(name)) properties.emplace_back(name, value);
  }
}

}  // namespace

Properties readXmpProperties(const std::string& packet, const XmlService& xml) {
  Properties properties;
  const auto document = xml.createDocument();
  if (!document->loadXml(packet)) return properties;
  for (const XmlNodePtr& description : document->selectNodes(descriptions)) {
    addAttributes(properties, *description);
    for (const XmlNodePtr& property : description->childNodes()) {
      if (property->kind() == XmlNodeKind::Element)
        properties.emplace_back(property->name(), listText(*property));
    }
  }
  return properties;
}

}  // namespace vlclientui::client
