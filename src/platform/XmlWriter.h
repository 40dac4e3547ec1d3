#pragma once

#include <string>

#include <libxml/tree.h>

namespace vlclientui::platform {

/// The node as XML text in UTF-8: `<a/>` for an empty element, values in double quotes, `&quot;` in values
/// only, ">" as `&gt;`, CDATA kept, no declaration, no indentation. Tabs and line ends of values and a
/// carriage return anywhere are written as numbers, since a reader would change them otherwise.
/// A node out of the middle of a tree declares the name spaces that it uses. An attribute is written as
/// `name="value"`.
[[nodiscard]] std::string toXml(const xmlNode* node);

}  // namespace vlclientui::platform
