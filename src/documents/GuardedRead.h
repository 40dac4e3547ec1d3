#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "contracts/XmlDocument.h"

/// Reading with a default: an element that a document lacks is no failure.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The first node's text; nothing when there is no such node. `Source` is an XmlDocument or an XmlNode.
template <class Source>
[[nodiscard]] std::optional<std::string> readText(const Source& source, std::string_view path) {
  const XmlNodePtr node = source.selectSingleNode(path);
  if (!node) return std::nullopt;
  return node->text();
}

/// The first node's text; empty when there is no such node.
template <class Source>
[[nodiscard]] std::string textAt(const Source& source, std::string_view path) {
  return readText(source, path).value_or(std::string());
}

/// The first node's outer XML; nothing when there is no such node.
template <class Source>
[[nodiscard]] std::optional<std::string> readXml(const Source& source, std::string_view path) {
  const XmlNodePtr node = source.selectSingleNode(path);
  if (!node) return std::nullopt;
  return node->xml();
}

}  // namespace vlclientui
#pragma GCC visibility pop
