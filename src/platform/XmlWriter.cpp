#include "platform/XmlWriter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/XmlNameSpaces.h"
#include "platform/XmlText.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

/// What a byte is written as; empty for itself.
using Escapes = std::array<std::string_view, 128>;

constexpr Escapes makeTextEscapes() {
  Escapes escapes{};
  escapes['&'] = "&amp;";
  escapes['<'] = "&lt;";
  escapes['>'] = "&gt;";
  escapes['\r'] = "&#13;";
  return escapes;
}

constexpr Escapes makeValueEscapes() {
  Escapes escapes = makeTextEscapes();
  escapes['"'] = "&quot;";
  escapes['\t'] = "&#9;";
  escapes['\n'] = "&#10;";
  return escapes;
}

constexpr Escapes textEscapes = makeTextEscapes();
constexpr Escapes valueEscapes = makeValueEscapes();

class Writer {
 public:
  void writeTree(const xmlNode* root);
  void writeAttribute(std::string_view prefix, std::string_view name, std::string_view value);
  std::string take() { return std::move(out_); }

 private:
  void writeEscaped(std::string_view text, const Escapes& escapes);
  void writeQualifiedName(std::string_view prefix, std::string_view name);
  void writeName(const xmlNode* element);
  void writeNameSpace(const xmlNs& nameSpace);
  void writeStart(const xmlNode* element, const xmlNode* root);
  void writeEnd(const xmlNode* element);
  void writeLeaf(const xmlNode* node);
  void writeCData(std::string_view text);
  void writeInstruction(const xmlNode* node);

  std::string out_;
};

void Writer::writeEscaped(std::string_view text, const Escapes& escapes) {
  std::size_t plainFrom = 0;
  for (std::size_t index = 0; index < text.size(); ++index) {
    const auto byte = static_cast<std::uint8_t>(text[index]);
    if (byte >= escapes.size() || escapes[byte].empty()) continue;
    out_ += text.substr(plainFrom, index - plainFrom);
    out_ += escapes[byte];
    plainFrom = index + 1;
  }
  out_ += text.substr(plainFrom);
}

void Writer::writeQualifiedName(std::string_view prefix, std::string_view name) {
  if (!prefix.empty()) {
    out_ += prefix;
    out_ += ':';
  }
  out_ += name;
}

void Writer::writeName(const xmlNode* element) {
  writeQualifiedName(element->ns == nullptr ? "" : view(element->ns->prefix), view(element->name));
}

void Writer::writeAttribute(std::string_view prefix, std::string_view name, std::string_view value) {
  writeQualifiedName(prefix, name);
  out_ += "=\"";
  writeEscaped(value, valueEscapes);
  out_ += '"';
}

void Writer::writeNameSpace(const xmlNs& nameSpace) {
  const bool isDefault = nameSpace.prefix == nullptr;
  out_ += ' ';
  writeAttribute(isDefault ? "" : "xmlns", isDefault ? "xmlns" : view(nameSpace.prefix),
                 view(nameSpace.href));
}

/// Almost every document does without name spaces; then nothing above declares one.
bool anyAncestorDeclares(const xmlNode* element) {
  for (const xmlNode* place = element->parent; place != nullptr && isElement(place); place = place->parent) {
    if (place->nsDef != nullptr) return true;
  }
  return false;
}

void Writer::writeStart(const xmlNode* element, const xmlNode* root) {
  out_ += '<';
  writeName(element);
  if (element == root && anyAncestorDeclares(element)) {
    for (const xmlNs* foreign : foreignNameSpaces(element)) writeNameSpace(*foreign);
  }
  for (const xmlNs* own = element->nsDef; own != nullptr; own = own->next) writeNameSpace(*own);
  for (const xmlAttr* attribute = element->properties; attribute != nullptr; attribute = attribute->next) {
    out_ += ' ';
    writeAttribute(attribute->ns == nullptr ? "" : view(attribute->ns->prefix), view(attribute->name),
                   attributeValue(attribute));
  }
  out_ += element->children == nullptr ? "/>" : ">";
}

void Writer::writeEnd(const xmlNode* element) {
  if (!isElement(element)) return;
  out_ += "</";
  writeName(element);
  out_ += '>';
}

void Writer::writeCData(std::string_view text) {
  constexpr std::string_view endMark = "]]>";
  out_ += "<![CDATA[";
  for (std::size_t end = text.find(endMark); end != std::string_view::npos; end = text.find(endMark)) {
    out_ += text.substr(0, end);
    out_ += "]]]]><![CDATA[";
    text.remove_prefix(end + 2);
  }
  out_ += text;
  out_ += endMark;
}

void Writer::writeInstruction(const xmlNode* node) {
  out_ += "<?";
  out_ += view(node->name);
  if (!view(node->content).empty()) out_ += ' ';
  out_ += view(node->content);
  out_ += "?>";
}

void Writer::writeLeaf(const xmlNode* node) {
  const std::string_view content = view(node->content);
  if (node->type == XML_TEXT_NODE) writeEscaped(content, textEscapes);
  if (node->type == XML_CDATA_SECTION_NODE) writeCData(content);
  if (node->type == XML_PI_NODE) writeInstruction(node);
  if (node->type == XML_COMMENT_NODE) {
    out_ += "<!--";
    out_ += content;
    out_ += "-->";
  }
}

void Writer::writeTree(const xmlNode* root) {
  for (const xmlNode* node = root;;) {
    if (isElement(node)) {
      writeStart(node, root);
    } else if (node->type != XML_DOCUMENT_NODE) {
      writeLeaf(node);
    }
    if (const xmlNode* child = childrenOf(node); child != nullptr) {
      node = child;
      continue;
    }
    while (node != root && node->next == nullptr) {
      node = node->parent;
      writeEnd(node);
    }
    if (node == root) return;
    node = node->next;
  }
}

}  // namespace

std::string toXml(const xmlNode* node) {
  Writer writer;
  if (node->type == XML_ATTRIBUTE_NODE) {
    writer.writeAttribute(node->ns == nullptr ? "" : view(node->ns->prefix), view(node->name), textOf(node));
  } else {
    writer.writeTree(node);
  }
  return writer.take();
}

}  // namespace vlclientui::platform
