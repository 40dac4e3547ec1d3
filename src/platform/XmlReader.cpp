#include "platform/XmlReader.h"

#include <limits>
#include <utility>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include "contracts/XmlCharacters.h"
#include "platform/XmlText.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

// NOENT replaces entities by their text, DTDATTR adds the document's default attributes, HUGE turns off the
// library's limits (the guard below has its own), NODICT lets nodes move between documents.
constexpr int parserOptions = XML_PARSE_NOENT | XML_PARSE_DTDATTR | XML_PARSE_NONET | XML_PARSE_HUGE |
                              XML_PARSE_NODICT | XML_PARSE_COMPACT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

struct FreeContext {
  void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
};
using Context = std::unique_ptr<xmlParserCtxt, FreeContext>;

/// Counts during a parse, and findings of the parser. The parser's _private points here.
struct Guard {
  bool isRefused = false;
  std::size_t expansion = 0;
  int declarations = 0;
  bool isDeclaring = false;  ///< the parser asks once for each internal entity that it has just declared
};

xmlParserCtxt* contextOf(void* parser) { return static_cast<xmlParserCtxt*>(parser); }

Guard& guardOf(void* parser) { return *static_cast<Guard*>(contextOf(parser)->_private); }

void refuse(void* parser) {
  guardOf(parser).isRefused = true;
  xmlStopParser(contextOf(parser));
}

void countExpansion(void* parser, std::size_t length) {
  Guard& guard = guardOf(parser);
  guard.expansion += length;
  if (guard.expansion > maxXmlExpansion) refuse(parser);
}

void countDeclaration(void* parser) {
  if (++guardOf(parser).declarations > maxXmlDeclarations) refuse(parser);
}

/// Attributes come in groups of five pointers: local name, prefix, name space, begin and end of the value.
/// Those from the document type come last.
std::size_t lengthOfDefaults(int count, int defaulted, const xmlChar** attributes) {
  std::size_t length = 0;
  for (int index = count - defaulted; index < count; ++index) {
    const xmlChar** attribute = attributes + 5 * index;
    length += view(attribute[0]).size() + static_cast<std::size_t>(attribute[4] - attribute[3]);
  }
  return length;
}

void onStartElement(void* parser, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                    int nameSpaceCount, const xmlChar** nameSpaces, int count, int defaulted,
                    const xmlChar** attributes) {
  if (contextOf(parser)->nodeNr >= maxXmlDepth) return refuse(parser);
  countExpansion(parser, lengthOfDefaults(count, defaulted, attributes));
  if (guardOf(parser).isRefused) return;
  xmlSAX2StartElementNs(parser, name, prefix, uri, nameSpaceCount, nameSpaces, count, defaulted, attributes);
}

bool isPlainText(const xmlEntity* entity) {
  if (entity->etype == XML_INTERNAL_PREDEFINED_ENTITY) return true;
  return entity->etype == XML_INTERNAL_GENERAL_ENTITY &&
         view(entity->content).find_first_of("<&") == std::string_view::npos;
}

bool endsDeclaration(void* parser) { return std::exchange(guardOf(parser).isDeclaring, false); }

xmlEntity* onEntityUsed(void* parser, const xmlChar* name) {
  xmlEntity* entity = xmlSAX2GetEntity(parser, name);
  if (endsDeclaration(parser)) return entity;
  if (entity == nullptr || !isPlainText(entity)) {
    refuse(parser);
    return nullptr;
  }
  countExpansion(parser, view(entity->content).size());
  return guardOf(parser).isRefused ? nullptr : entity;
}

xmlEntity* onParameterEntityUsed(void* parser, const xmlChar* name) {
  if (endsDeclaration(parser)) return xmlSAX2GetParameterEntity(parser, name);
  refuse(parser);
  return nullptr;
}

void onEntityDeclared(void* parser, const xmlChar* name, int type, const xmlChar* publicId,
                      const xmlChar* systemId, xmlChar* content) {
  countDeclaration(parser);
  guardOf(parser).isDeclaring = content != nullptr;
  xmlSAX2EntityDecl(parser, name, type, publicId, systemId, content);
}

void onAttributeDeclared(void* parser, const xmlChar* element, const xmlChar* name, int type, int fallback,
                         const xmlChar* value, xmlEnumeration* tree) {
  countDeclaration(parser);
  xmlSAX2AttributeDecl(parser, element, name, type, fallback, value, tree);
}

void onExternalSubset(void* /*parser*/, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                      const xmlChar* /*systemId*/) {
  // Nothing outside the document is loaded.
}

xmlParserInput* onExternalEntity(void* parser, const xmlChar* /*publicId*/, const xmlChar* /*systemId*/) {
  refuse(parser);
  return nullptr;
}

void onReference(void* parser, const xmlChar* /*name*/) { refuse(parser); }

void installGuard(xmlParserCtxt& parser, Guard& guard) {
  parser._private = &guard;
  parser.sax->startElementNs = onStartElement;
  parser.sax->getEntity = onEntityUsed;
  parser.sax->getParameterEntity = onParameterEntityUsed;
  parser.sax->entityDecl = onEntityDeclared;
  parser.sax->attributeDecl = onAttributeDeclared;
  parser.sax->externalSubset = onExternalSubset;
  parser.sax->resolveEntity = onExternalEntity;
  parser.sax->reference = onReference;
}

void dropDocumentType(xmlDoc* document) {
  xmlDtd* type = xmlGetIntSubset(document);
  if (type == nullptr) return;
  xmlUnlinkNode(reinterpret_cast<xmlNode*>(type));
  xmlFreeDtd(type);
}

/// The parser may split one text into several nodes around entities, and only the whole text tells whether it
/// is blank.
void joinFollowingTexts(xmlNode* text) {
  while (text->next != nullptr && text->next->type == XML_TEXT_NODE) xmlTextMerge(text, text->next);
}

void dropBlankTexts(xmlDoc* document) {
  const auto* root = reinterpret_cast<xmlNode*>(document);
  for (xmlNode* node = document->children; node != nullptr;) {
    const bool isText = node->type == XML_TEXT_NODE;
    if (isText) joinFollowingTexts(node);
    xmlNode* next = nextInOrder(node, root);
    if (isText && isBlank(view(node->content))) {
      xmlUnlinkNode(node);
      xmlFreeNode(node);
    }
    node = next;
  }
}

/// The parser stops at a NUL without an error.
bool hasReadAll(const xmlParserCtxt& parser) {
  return parser.input == nullptr || parser.input->cur >= parser.input->end;
}

XmlDocPtr parse(std::string_view bytes, int options) {
  if (bytes.empty() || bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return {};
  xmlInitParser();
  const Context parser(xmlNewParserCtxt());
  if (parser == nullptr) return {};
  Guard guard;
  installGuard(*parser, guard);
  XmlDocPtr document(xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                       nullptr, options));
  const bool isWhole =
      parser->wellFormed != 0 && parser->nsWellFormed != 0 && hasReadAll(*parser) && !guard.isRefused;
  if (document == nullptr || !isWhole || xmlDocGetRootElement(document.get()) == nullptr) return {};
  dropDocumentType(document.get());
  dropBlankTexts(document.get());
  return document;
}

}  // namespace

XmlDocPtr readXmlText(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  // The parser would take a second one for the mark.
  if (text.starts_with(byteOrderMark)) return {};
  // Checked first, so that the parser cannot take the bytes for another encoding.
  if (!isXmlText(text)) return {};
  return parse(text, parserOptions | XML_PARSE_IGNORE_ENC);
}

XmlDocPtr readXmlBytes(std::string_view bytes) { return parse(bytes, parserOptions); }

}  // namespace vlclientui::platform
