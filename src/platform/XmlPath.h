#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <libxml/tree.h>

namespace vlclientui::platform {

inline constexpr std::size_t allXmlNodes = static_cast<std::size_t>(-1);

/// The nodes that the path selects, in document order, at most `limit` of them. XPath 1.0 without prefixes,
/// in which a plain number as predicate counts from 0. For a tree without a document, the root is a document
/// that holds the tree. Compiled paths are kept per thread.
/// @throws RuntimeFailure for an invalid XPath, and for one whose result is not a set of nodes.
[[nodiscard]] std::vector<xmlNode*> selectXmlNodes(xmlNode* from, std::string_view path, std::size_t limit);

/// The path with 1 added to every predicate that is a plain number: `a[0]/b['[0]']` is `a[1]/b['[0]']`.
[[nodiscard]] std::string withIndexesFromOne(std::string_view path);

}  // namespace vlclientui::platform
