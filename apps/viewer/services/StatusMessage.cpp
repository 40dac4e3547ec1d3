#include "viewer/services/StatusMessage.h"

#include "documents/GuardedRead.h"
#include "documents/ParsedDocument.h"

namespace vlclientui::viewer {

std::string statusMessage(const XmlService& xml, const std::string& status) {
  return readText(*parsedDocument(xml, status), "//Item/Message").value_or("");
}

}  // namespace vlclientui::viewer
