#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#pragma GCC visibility push(default)
namespace vlclientui {

class XmlNode;
/// A handle to a node; null for one that does not exist.
using XmlNodePtr = std::shared_ptr<XmlNode>;

/// What a node is.
enum class XmlNodeKind {
  Element,                ///< a tag with what stands in it
  Attribute,              ///< a name and a value of an element
  Text,                   ///< characters between tags
  CData,                  ///< characters in which nothing is escaped
  Comment,                ///< words for people
  ProcessingInstruction,  ///< words for a program
  Document                ///< the whole, above its first element
};

/// A node of an XML document. A handle keeps its document's memory alive, even when the node has been taken
/// out of the tree. Compare two handles by isSameNode, not by address.
///
/// Paths are XPath 1.0 without name space prefixes, with one change: an index in a path counts from 0, per
/// parent (`//ServiceProvider[0]/Services`). Names are case-sensitive. A path without leading slashes starts
/// at this node. A node that does not exist is no failure: the answer is null or an empty list.
///
/// Implementers: single-threaded use; every failure is a RuntimeFailure.
class XmlNode {
 public:
  virtual ~XmlNode() = default;

  /// What the node is.
  [[nodiscard]] virtual XmlNodeKind kind() const = 0;
  /// Qualified name; "#text", "#cdata-section", "#comment", "#document" for unnamed kinds.
  [[nodiscard]] virtual std::string name() const = 0;

  /// Text of the node and all below: ends trimmed of white space, inner white space kept, comments
  /// skipped, CDATA taken as it is, line ends as "\n".
  [[nodiscard]] virtual std::string text() const = 0;
  /// Replaces all children by one text.
  virtual void setText(std::string_view text) = 0;

  /// Outer XML. `<a/>` for an empty element, double quotes, `&quot;` in attributes only, `&gt;` for ">",
  /// CDATA kept, no declaration added, no indentation added.
  [[nodiscard]] virtual std::string xml() const = 0;

  /// Children in document order, white space between elements left out (it is dropped on load).
  [[nodiscard]] virtual std::vector<XmlNodePtr> childNodes() const = 0;
  /// How many nodes childNodes gives.
  [[nodiscard]] virtual std::size_t childCount() const = 0;
  /// Null for a node without children.
  [[nodiscard]] virtual XmlNodePtr firstChild() const = 0;
  /// The document for its element; null for a document, and for a node that is in no tree.
  [[nodiscard]] virtual XmlNodePtr parentNode() const = 0;

  /// @throws RuntimeFailure when the path is no valid XPath.
  [[nodiscard]] virtual XmlNodePtr selectSingleNode(std::string_view path) const = 0;
  /// All nodes of the path in document order. @throws RuntimeFailure when the path is no valid XPath.
  [[nodiscard]] virtual std::vector<XmlNodePtr> selectNodes(std::string_view path) const = 0;

  /// Appends; a node that already has a place, in this or another document, is moved.
  /// @returns the appended node. @throws RuntimeFailure for a null child, or a node appended below itself.
  virtual XmlNodePtr appendChild(const XmlNodePtr& child) = 0;
  /// @returns the removed node. @throws RuntimeFailure when it is not a child of this node.
  virtual XmlNodePtr removeChild(const XmlNodePtr& child) = 0;

  /// Value of an attribute; nothing when the element lacks it.
  [[nodiscard]] virtual std::optional<std::string> getNamedItem(std::string_view name) const = 0;
  /// Attributes in document order as (name, value).
  [[nodiscard]] virtual std::vector<std::pair<std::string, std::string>> attributes() const = 0;
  /// Adds or replaces. @throws RuntimeFailure for an illegal name, or on a node other than an element.
  virtual void setAttribute(std::string_view name, std::string_view value) = 0;

  /// Whether both handles are of one node of one document.
  [[nodiscard]] virtual bool isSameNode(const XmlNode& other) const = 0;
};

/// A whole document. A text either is strictly well-formed (name spaces included) or does not load; an empty
/// or blank text does not load, and a failed load leaves the document empty. No network, no external
/// entities, bounded entity expansion, bounded depth.
class XmlDocument {
 public:
  virtual ~XmlDocument() = default;

  /// Replaces the document by the one in the text. @returns whether it loaded.
  [[nodiscard]] virtual bool loadXml(std::string_view text) = 0;
  /// @param path with drive and backslashes, or native (the adapter translates). False as for loadXml, and
  /// for a file that cannot be read.
  [[nodiscard]] virtual bool load(const std::string& path) = 0;
  /// Writes the file whole or not at all. @throws RuntimeFailure when it cannot be written.
  virtual void save(const std::string& path) const = 0;

  /// Null while the document is empty.
  [[nodiscard]] virtual XmlNodePtr documentElement() const = 0;
  /// The document element and what stands beside it; empty for an empty document.
  [[nodiscard]] virtual std::vector<XmlNodePtr> childNodes() const = 0;
  /// The first node of the path, seen from the document. @throws RuntimeFailure when the path is no valid
  /// XPath.
  [[nodiscard]] virtual XmlNodePtr selectSingleNode(std::string_view path) const = 0;
  /// All nodes of the path, seen from the document. @throws RuntimeFailure when the path is no valid XPath.
  [[nodiscard]] virtual std::vector<XmlNodePtr> selectNodes(std::string_view path) const = 0;

  /// @throws RuntimeFailure for a name that XML does not allow.
  [[nodiscard]] virtual XmlNodePtr createElement(std::string_view name) = 0;
  /// @param kind of the node. @param name qualified; ignored for kinds without one. @param nameSpace empty
  /// for none. @throws RuntimeFailure as createElement, or for a kind that cannot be created (Document).
  [[nodiscard]] virtual XmlNodePtr createNode(XmlNodeKind kind, std::string_view name,
                                              std::string_view nameSpace) = 0;
  /// Makes the node the document element. @throws RuntimeFailure when the document has one already.
  virtual XmlNodePtr appendChild(const XmlNodePtr& child) = 0;

  /// The whole document as text; empty for an empty document.
  [[nodiscard]] virtual std::string xml() const = 0;
};

/// Makes documents. One per host; any number of documents may live side by side.
class XmlService {
 public:
  virtual ~XmlService() = default;
  /// An empty document; never null.
  [[nodiscard]] virtual std::unique_ptr<XmlDocument> createDocument() const = 0;
};

}  // namespace vlclientui
#pragma GCC visibility pop
