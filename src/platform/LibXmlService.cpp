#include "platform/LibXmlService.h"

#include "platform/LibXmlDocument.h"

namespace vlclientui::platform {

std::unique_ptr<XmlDocument> LibXmlService::createDocument() const {
  return std::make_unique<LibXmlDocument>(paths_);
}

}  // namespace vlclientui::platform
