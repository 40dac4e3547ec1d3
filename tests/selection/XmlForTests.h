#pragma once

#include <memory>
#include <string>

#include "platform/LibXmlService.h"

namespace vlclientui::test {

/// Documents for tests that need no platform and touch no file.
inline const XmlService& xmlService() {
  static const platform::LibXmlService service{platform::PathTranslation("/nowhere")};
  return service;
}

/// The parsed document; empty when the text does not parse.
inline std::unique_ptr<XmlDocument> parsed(const std::string& text) {
  auto document = xmlService().createDocument();
  static_cast<void>(document->loadXml(text));
  return document;
}

}  // namespace vlclientui::test
