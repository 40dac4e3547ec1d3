#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _xmlDoc;
struct _xmlNode;

namespace vlclientui::client {

/// An element of a parsed document. A null one stands for an element that is not there: everything asked of
/// it is empty, so that a path leads on without questions.
class XmlElement {
 public:
  XmlElement() = default;
  explicit XmlElement(const _xmlNode* node) : node_(node) {}

  explicit operator bool() const { return node_ != nullptr; }
  /// Without its prefix.
  [[nodiscard]] std::string_view name() const;
  /// The first child of that name, whatever its namespace.
  [[nodiscard]] XmlElement child(std::string_view name) const;
  /// The first element at the end of a path of names, "A/B/C".
  [[nodiscard]] XmlElement at(std::string_view path) const;
  [[nodiscard]] std::vector<XmlElement> children() const;
  [[nodiscard]] std::vector<XmlElement> children(std::string_view name) const;
  /// All texts within, joined, without blanks at both ends.
  [[nodiscard]] std::string text() const;
  /// By local name; empty where there is none.
  [[nodiscard]] std::string attribute(std::string_view name) const;

 private:
  const _xmlNode* node_ = nullptr;
};

/// A document that a server sent. Nothing is fetched for it: no schema, no definition, no outer entity.
class XmlTree {
 public:
  /// @returns nothing for a text that is no well-formed document.
  [[nodiscard]] static std::optional<XmlTree> parse(std::string_view text);

  [[nodiscard]] XmlElement root() const;

 private:
  struct Free {
    void operator()(_xmlDoc* document) const;
  };
  explicit XmlTree(_xmlDoc* document);

  std::unique_ptr<_xmlDoc, Free> document_;
};

/// The numbers in a text, by blanks or commas between; empty when one of them is none.
[[nodiscard]] std::vector<double> numbersIn(std::string_view text);

}  // namespace vlclientui::client
