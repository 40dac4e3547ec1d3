#include "client/network/XmlTree.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
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

// What stands in records goes to whoever takes them; all else becomes a tree, as the library makes it.
class Parsing {
 public:
  Parsing(std::string_view text, XmlRecords& records)
      : records_(records), context_(xmlCreateMemoryParserCtxt(text.data(), static_cast<int>(text.size()))) {
    if (context_ == nullptr) return;
    xmlCtxtUseOptions(context_, options);
    context_->_private = this;
    context_->sax->startElementNs = begin;
    context_->sax->endElementNs = end;
    context_->sax->characters = addText;
    context_->sax->ignorableWhitespace = addText;
    context_->sax->cdataBlock = addData;
  }
  ~Parsing() {
    if (context_ == nullptr) return;
    if (context_->myDoc != nullptr) xmlFreeDoc(context_->myDoc);
    xmlFreeParserCtxt(context_);
  }
  Parsing(const Parsing&) = delete;
  Parsing& operator=(const Parsing&) = delete;

  /// Null for a text that is no well-formed document.
  [[nodiscard]] xmlDoc* run() {
    if (context_ == nullptr || xmlParseDocument(context_) != 0 || context_->wellFormed == 0) return nullptr;
    return std::exchange(context_->myDoc, nullptr);
  }

 private:
  // Texts of servers are untrusted: no network, no definitions, no bombs of entities.
  static constexpr int options =
      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT | XML_PARSE_BIG_LINES;

  static Parsing& of(void* context) {
    return *static_cast<Parsing*>(static_cast<xmlParserCtxt*>(context)->_private);
  }

  // The library reads what an entity stands for in a context of its own; records are made of none of it.
  [[nodiscard]] bool isOfEntity(const void* context) const { return context != context_; }
  [[nodiscard]] bool isOfTree(const void* context) const { return depth_ == 0 || isOfEntity(context); }

  static void begin(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* address,
                    int namespaces, const xmlChar** declared, int attributes, int defaulted,
                    const xmlChar** values) {
    Parsing& self = of(context);
    if (self.isOfEntity(context) || (self.depth_ == 0 && !self.records_.isRecord(viewOf(name)))) {
      xmlSAX2StartElementNs(context, name, prefix, address, namespaces, declared, attributes, defaulted,
                            values);
      return;
    }
    ++self.depth_;
    self.text_.clear();
    self.records_.begin(viewOf(name));
  }

  static void end(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* address) {
    Parsing& self = of(context);
    if (self.isOfTree(context)) return xmlSAX2EndElementNs(context, name, prefix, address);
    --self.depth_;
    self.records_.end(viewOf(name), self.text_);
    self.text_.clear();
  }

  static void addText(void* context, const xmlChar* text, int length) {
    Parsing& self = of(context);
    if (self.isOfTree(context)) return xmlSAX2Characters(context, text, length);
    self.text_.append(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
  }

  static void addData(void* context, const xmlChar* text, int length) {
    if (of(context).isOfTree(context)) return xmlSAX2CDataBlock(context, text, length);
    addText(context, text, length);
  }

  XmlRecords& records_;
  xmlParserCtxt* context_;
  int depth_ = 0;  ///< of elements within a record, itself included
  std::string text_;
};

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

std::optional<XmlTree> XmlTree::parse(std::string_view text) {
  class None final : public XmlRecords {
    [[nodiscard]] bool isRecord(std::string_view /*name*/) const override { return false; }
    void begin(std::string_view /*name*/) override {}
    void end(std::string_view /*name*/, std::string_view /*text*/) override {}
  } none;
  return parse(text, none);
}

std::optional<XmlTree> XmlTree::parse(std::string_view text, XmlRecords& records) {
  if (text.empty() || text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    return std::nullopt;
  xmlDoc* document = Parsing(text, records).run();
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
  const auto isBetween = [](char c) {
    return std::string_view(" \t\r\n,").find(c) != std::string_view::npos;
  };
  while (true) {
    while (at != end && isBetween(*at)) ++at;
    if (at == end) return numbers;
    if (text.substr(static_cast<std::size_t>(at - text.data())).starts_with("+-")) return {};
    if (*at == '+') ++at;
    double number = 0;
    const auto [next, error] = std::from_chars(at, end, number);
    const bool isWhole = error == std::errc() && (next == end || isBetween(*next));
    if (!isWhole || !std::isfinite(number)) return {};
    numbers.push_back(number);
    at = next;
  }
}

}  // namespace vlclientui::client
