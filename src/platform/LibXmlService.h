#pragma once

#include "contracts/XmlDocument.h"
#include "platform/PathTranslation.h"

namespace vlclientui::platform {

/// XML documents over libxml2. Documents share nothing: two threads may each use their own.
///
/// Beyond what the port promises:
/// - Elements nest at most 1,000 deep in a text that loads. Entities are plain texts declared in the document
///   itself and add at most 1 MiB; any other use of an entity makes the load fail. Length is not limited.
/// - Load drops text nodes of nothing but white space, whatever xml:space says. It also drops the XML
///   declaration and the document type, after replacing entities; other instructions and comments stay. Files
///   are written in UTF-8 without a declaration.
/// - Setting a text or value that XML cannot hold (control characters, broken UTF-8) is a RuntimeFailure.
/// - Name space declarations count as attributes and come before all others.
class LibXmlService final : public XmlService {
 public:
  explicit LibXmlService(PathTranslation paths) : paths_(std::move(paths)) {}
  [[nodiscard]] std::unique_ptr<XmlDocument> createDocument() const override;

 private:
  PathTranslation paths_;
};

}  // namespace vlclientui::platform
