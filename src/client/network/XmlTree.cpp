#include "client/network/XmlTree.h"

#include <charconv>
#include <cmath>
#include <limits>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "client/raster/Text.h"

namespace vlclientui::client {
namespace {

std::string_view viewOf(const xmlChar* text) {
  return text == nullptr ? std::string_view() : std::string_view(reinterpret_cast<const char*>(text));
}

const xmlNode* firstElement(const xmlNode* node) {
  while (node != nullptr && node->type != XML_ELEMENT_NODE) node = node->next;
  return node;
}

void appendTexts(const xmlNode* node, std::string& out) {
  for (; node != nullptr; node = node->next) {
    if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) out += viewOf(node->content);
    if (node->type == XML_ELEMENT_NODE) appendTexts(node->children, out);
  }
}

}  // namespace

std::string_view XmlElement::name() const {
  return node_ == nullptr ? std::string_view() : viewOf(node_->name);
}

XmlElement XmlElement::child(std::string_view name) const {
  if (node_ == nullptr) return {};
  for (const xmlNode* node = firstElement(node_->children); node != nullptr;
       node = firstElement(node->next)) {
    if (viewOf(node->name) == name) return XmlElement(node);
  }
  return {};
}

XmlElement XmlElement::at(std::string_view path) const {
  XmlElement element = *this;
  while (!path.empty()) {
    const std::size_t slash = path.find('/');
    element = element.child(path.substr(0, slash));
    path = slash == std::string_view::npos ? std::string_view() : path.substr(slash + 1);
  }
  return element;
}

std::vector<XmlElement> XmlElement::children() const {
  std::vector<XmlElement> found;
  if (node_ == nullptr) return found;
  for (const xmlNode* node = firstElement(node_->children); node != nullptr;
       node = firstElement(node->next)) {
    found.emplace_back(node);
  }
  return found;
}

std::vector<XmlElement> XmlElement::children(std::string_view name) const {
  std::vector<XmlElement> found;
  if (node_ == nullptr) return found;
  for (const xmlNode* node = firstElement(node_->children); node != nullptr;
       node = firstElement(node->next)) {
    if (viewOf(node->name) == name) found.emplace_back(node);
  }
  return found;
}

std::string XmlElement::text() const {
  std::string out;
  if (node_ != nullptr) appendTexts(node_->children, out);
  return trimmed(out);
}

std::string XmlElement::attribute(std::string_view name) const {
  if (node_ == nullptr) return {};
  for (const xmlAttr* attribute = node_->properties; attribute != nullptr; attribute = attribute->next) {
    if (viewOf(attribute->name) != name) continue;
    std::string out;
    appendTexts(attribute->children, out);
    return trimmed(out);
  }
  return {};
}

// Texts of servers are untrusted: no network, no definitions, no bombs of entities.
std::optional<XmlTree> XmlTree::parse(std::string_view text) {
  constexpr int options =
      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT | XML_PARSE_BIG_LINES;
  if (text.empty() || text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    return std::nullopt;
  xmlDoc* document = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, options);
  if (document == nullptr) return std::nullopt;
  XmlTree tree(document);
  if (!tree.root()) return std::nullopt;
  return tree;
}

XmlTree::XmlTree(_xmlDoc* document) : document_(document) {}

XmlElement XmlTree::root() const { return XmlElement(xmlDocGetRootElement(document_.get())); }

void XmlTree::Free::operator()(_xmlDoc* document) const { xmlFreeDoc(document); }

std::vector<double> numbersIn(std::string_view text) {
  std::vector<double> numbers;
  const char* at = text.data();
  const char* const end = at + text.size();
  while (true) {
    while (at != end && std::string_view(" \t\r\n,").find(*at) != std::string_view::npos) ++at;
    if (at == end) return numbers;
    if (*at == '+') ++at;
    double number = 0;
    const auto [next, error] = std::from_chars(at, end, number);
    if (error != std::errc() || !std::isfinite(number)) return {};
    numbers.push_back(number);
    at = next;
  }
}

}  // namespace vlclientui::client
