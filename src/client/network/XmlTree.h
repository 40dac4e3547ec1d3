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

/// Elements that a document may hold by the thousands, told one by one: keeping them all in a tree would take
/// as long again as reading them.
class XmlRecords {
 public:
  virtual ~XmlRecords() = default;

  /// Whether an element outside of all records is one.
  [[nodiscard]] virtual bool isRecord(std::string_view name) const = 0;
  /// A record begins, or an element within. Names have no prefix and stay valid until the document is read.
  virtual void begin(std::string_view name) = 0;
  /// The element that began last ends. @param text behind the last element that began or ended, blanks at its
  /// ends included: all of it for an element without others within.
  virtual void end(std::string_view name, std::string_view text) = 0;
};

/// A document that a server sent. Nothing is fetched for it: no schema, no definition, no outer entity.
class XmlTree {
 public:
  /// @returns nothing for a text that is no well-formed document.
  [[nodiscard]] static std::optional<XmlTree> parse(std::string_view text);
  /// The same without the records, which are told as they come, those before an error too. None of them may
  /// throw.
  [[nodiscard]] static std::optional<XmlTree> parse(std::string_view text, XmlRecords& records);

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
