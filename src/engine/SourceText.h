#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Changes of single elements in the text of a document, every other byte left as it is.
namespace vlclientui::engine {

/// Where the elements of a document stand in its text, in document order.
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

  /// @param text a well-formed document; the views stay valid as long as it does. A text that is none gives
  /// no element or some, and nothing worse.
  explicit ElementSpans(std::string_view text);

  [[nodiscard]] const std::vector<Element>& elements() const { return elements_; }
  /// The child elements of an element, in order; of the document for none.
  [[nodiscard]] std::vector<std::size_t> childrenOf(std::size_t parent) const;
  /// The first child element of that name; none when there is none.
  [[nodiscard]] std::size_t childNamed(std::size_t parent, std::string_view name) const;
  /// The element to which positions among child elements lead from the document's element; none when there
  /// is none.
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
/// @param path names of elements, the root's own first, joined by "/"; at each level the first element of
/// the name counts. Elements that the document lacks are added behind the last child of their parent.
/// @param value becomes the whole content of the element; marked characters are escaped.
[[nodiscard]] std::string withElementText(const std::string& document, const std::vector<std::size_t>& root,
                                          std::string_view path, std::string_view value);

}  // namespace vlclientui::engine
