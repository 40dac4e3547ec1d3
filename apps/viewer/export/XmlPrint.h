#pragma once

#include <string>

namespace vlclientui::viewer {

/// A document with each element on a line of its own, for reading by a person. The text must be one that an
/// XML adapter wrote: no comments, no declaration, no CDATA.
[[nodiscard]] std::string indentedXml(const std::string& xml);

}  // namespace vlclientui::viewer
