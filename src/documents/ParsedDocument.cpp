#include "documents/ParsedDocument.h"

#include <string>

namespace vlclientui {

bool loadOrStayEmpty(XmlDocument& document, std::string_view text, const RoutineName& routine) {
  if (document.loadXml(text)) return true;
  if (!text.empty())
    endSilently("a text of " + std::to_string(text.size()) + " bytes is no XML document", routine);
  return false;
}

std::unique_ptr<XmlDocument> parsedDocument(const XmlService& xml, std::string_view text,
                                            const RoutineName& routine) {
  auto document = xml.createDocument();
  loadOrStayEmpty(*document, text, routine);
  return document;
}

}  // namespace vlclientui
