#pragma once

#include <string>
#include <string_view>

#include <libxml/tree.h>

/// Converts text between documents and callers.
namespace vlclientui::platform {

/// @throws RuntimeFailure when a document cannot hold the text.
void requireXmlText(std::string_view text);

[[nodiscard]] bool isWhiteSpace(char character);
[[nodiscard]] bool isBlank(std::string_view text);

/// "\r\n" and "\r" become "\n".
[[nodiscard]] std::string withPlainLineEnds(std::string text);

[[nodiscard]] std::string attributeValue(const xmlAttr* attribute);

/// Text of the node and all below it: without comments and instructions, ends trimmed (except inside CDATA),
/// line ends plain. Comments, instructions and attributes give their own content unchanged.
[[nodiscard]] std::string textOf(const xmlNode* node);

}  // namespace vlclientui::platform
