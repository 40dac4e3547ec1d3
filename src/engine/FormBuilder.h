#pragma once

#include <cstdint>
#include <string>

#include "contracts/XmlDocument.h"
#include "engine/FormModel.h"

namespace vlclientui::engine {

enum class PageMode : std::uint8_t { Editable, ReadOnly };

/// What a page is made of.
struct PageDocuments {
  std::string attributeDefinition;  ///< text or path; empty for none
  std::string formDefinition;       ///< text; empty for none
  std::string data;                 ///< text
  std::string dataRootPath;         ///< XPath to search for the definition's root, "//"
};

/// The page of a pair of definitions filled with data. Without a form definition the attribute definition
/// gives the order of the fields too.
///
/// A read-only field whose element the data lack is left out; an editable one shows the text that the
/// attribute definition has for it.
/// @throws RuntimeFailure with the reason when a document does not load, both definitions are empty, the
/// data have no element of the definition's root, or a word of a definition makes no sense.
[[nodiscard]] FormModel buildForm(const XmlService& xml, const PageDocuments& documents, PageMode mode);

}  // namespace vlclientui::engine
