#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "contracts/XmlDocument.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui::engine {

/// A document as a readable tree: elements with their texts as values, attributes as first children, and
/// texts among other elements as children. Comments and processing instructions are left out.
///
/// A parent's nodes are made when they are first asked for, and stay; a node number is valid as long as the
/// model.
class TreeModel {
 public:
  using Node = std::uint32_t;
  enum class Kind : std::uint8_t { Element, Attribute, Text };
  enum class Direction : std::uint8_t { Forward, Backward };

  /// The document's element.
  static constexpr Node root = 0;

  /// @returns null when the text is no XML document.
  [[nodiscard]] static std::shared_ptr<TreeModel> parse(const XmlService& xml, std::string_view text);

  [[nodiscard]] std::size_t childCount(Node node);
  /// @pre index < childCount(parent).
  [[nodiscard]] Node child(Node parent, std::size_t index);
  /// Nothing for the root.
  [[nodiscard]] std::optional<Node> parent(Node node) const;
  /// Position among the children of its parent; 0 for the root.
  [[nodiscard]] std::size_t row(Node node) const { return nodes_[node].row; }
  [[nodiscard]] Kind kind(Node node) const { return nodes_[node].kind; }

  /// Empty for a text.
  [[nodiscard]] const std::string& name(Node node) const { return nodes_[node].name; }
  /// Text of an element without elements inside, of an attribute, of a text; empty for other elements.
  [[nodiscard]] std::string value(Node node);
  /// Its place as an ordinary XPath: positions count from 1 and are written only among siblings of one name
  /// ("/Vorlane/Raster[2]/@id").
  [[nodiscard]] std::string path(Node node);

  /// The next node in document order from `from` whose name or value contains the text, in any case; after
  /// the last node the search wraps around. `from` itself is tried first when asked so, else last. Nothing
  /// for an empty text or without a match.
  [[nodiscard]] std::optional<Node> find(std::string_view text, Node from, Direction direction,
                                         bool fromItself);

 private:
  struct Entry {
    XmlNodePtr element;  ///< of an element; null for others
    std::string name;
    std::string text;  ///< of attributes and texts
    Node parent = 0;
    std::uint32_t row = 0;
    Node firstChild = 0;  ///< all its children follow from here
    std::uint32_t childCount = 0;
    Kind kind = Kind::Element;
    bool opened = false;  ///< whether its children were made
    bool hasElements = false;
  };

  explicit TreeModel(XmlNodePtr element);
  void open(Node node);
  void add(Node parent, Kind kind, std::string name, std::string text, XmlNodePtr element);
  [[nodiscard]] Node next(Node node);
  [[nodiscard]] Node previous(Node node);
  [[nodiscard]] std::string step(Node node);
  [[nodiscard]] bool holds(Node node, const std::string& lowerCased);

  std::deque<Entry> nodes_;
};

}  // namespace vlclientui::engine
#pragma GCC visibility pop
