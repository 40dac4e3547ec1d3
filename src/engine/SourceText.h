#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Changes single elements in a document's text and leaves every other byte alone.
namespace vlclientui::engine {

/// Where a document's elements lie in its text, in document order.
class ElementSpans {
 public:
  static constexpr std::size_t none = static_cast<std::size_t>(-1);

  struct Element {
    std::string_view name;  ///< as written, with its prefix
    std::size_t parent = none;
    std::size_t tagBegin = 0;    ///< of "<" of the start tag
    std::size_t tagEnd = 0;      ///< behind ">" of the start tag
    std::size_t contentEnd = 0;  ///< of "<" of the end tag; of an element without one equal to tagEnd
    std::size_t end = 0;         ///< behind the whole element

    [[nodiscard]] bool hasEndTag() const { return end != tagEnd; }
  };

  /// @param text a well-formed document, which must outlive the views into it. Any other text gives some
  /// elements or none; nothing worse happens.
  explicit ElementSpans(std::string_view text);

  [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }
  /// The child elements of an element, in order; of the document for none.
  [[nodiscard]] std::vector<std::size_t> childrenOf(std::size_t parent) const;
  /// The first child element of that name; none when there is none.
  [[nodiscard]] std::size_t childNamed(std::size_t parent, std::string_view name) const;
  /// The element that positions among child elements lead to, from the document's element down; none when
  /// there is no such element.
  [[nodiscard]] std::size_t at(const std::vector<std::size_t>& positions) const;

 private:
  void addStartTag(std::size_t begin, std::size_t end);
  void addEndTag(std::size_t begin, std::size_t end);

  std::string_view text_;
  std::vector<Element> elements_;
  std::vector<std::size_t> open_;
};

/// The document with another text in one element.
/// @param root positions that lead to the element where `path` begins.
/// @param path element names joined by "/", the root's own first; on each level the first element of a name
/// counts. Missing elements are added after the last child of their parent.
/// @param value the element's new content; markup characters are escaped.
[[nodiscard]] std::string withElementText(const std::string& document, const std::vector<std::size_t>& root,
                                          std::string_view path, std::string_view value);

}  // namespace vlclientui::engine
