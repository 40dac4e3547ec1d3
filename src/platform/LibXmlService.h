#pragma once

#include "contracts/XmlDocument.h"
#include "platform/PathTranslation.h"

namespace vlclientui::platform {

/// XML documents over libxml2. Every document stands alone: two threads may each use their own.
///
/// On top of the port's promises:
/// - Elements nest at most 1,000 deep in a text that loads. Entities are plain texts declared in the document
///   itself and add at most 1 MiB; any other use of an entity refuses the document. Length is not limited.
/// - Text nodes of nothing but white space are dropped on load, whatever xml:space says. So are the XML
///   declaration and the document type, whose entities have been replaced; other instructions and comments
///   stay. Files are written in UTF-8 without a declaration.
/// - Setting a text or value that XML cannot hold (control characters, no UTF-8) is a RuntimeFailure.
/// - Declarations of name spaces count as attributes and come first among them.
class LibXmlService final : public XmlService {
 public:
  explicit LibXmlService(PathTranslation paths) : paths_(std::move(paths)) {}
  [[nodiscard]] std::unique_ptr<XmlDocument> createDocument() const override;

 private:
  PathTranslation paths_;
};

}  // namespace vlclientui::platform
