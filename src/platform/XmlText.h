#pragma once

#include <string>
#include <string_view>

#include <libxml/tree.h>

/// Text as documents hold it and as callers see it.
namespace vlclientui::platform {

/// True when the bytes are proper UTF-8 and every character may stand in an XML document.
[[nodiscard]] bool isXmlText(std::string_view text);
/// @throws RuntimeFailure when the text could not be written to a document.
void requireXmlText(std::string_view text);

[[nodiscard]] bool isWhiteSpace(char character);
[[nodiscard]] bool isBlank(std::string_view text);

/// "\r\n" and "\r" become "\n".
[[nodiscard]] std::string withPlainLineEnds(std::string text);

[[nodiscard]] std::string attributeValue(const xmlAttr* attribute);

/// Text of the node and all below it: comments and instructions skipped, ends trimmed, though never into a
/// CDATA section; line ends plain. Comments, instructions and attributes give their content as it stands.
[[nodiscard]] std::string textOf(const xmlNode* node);

}  // namespace vlclientui::platform
