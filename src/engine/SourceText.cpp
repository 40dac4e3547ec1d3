#include "engine/SourceText.h"

#include <algorithm>

namespace vlclientui::engine {
namespace {

constexpr std::string_view blanks = " \t\r\n";

/// The place after the next `mark`; the end of the text when there is none.
std::size_t behind(std::string_view text, std::string_view mark, std::size_t from) {
  const auto found = text.find(mark, from);
  return found == std::string_view::npos ? text.size() : found + mark.size();
}

/// The place after a tag's ">"; a ">" in a quoted value does not count.
std::size_t tagEndFrom(std::string_view text, std::size_t at) {
  while (at < text.size() && text[at] != '>') {
    const char c = text[at];
    at = c == '"' || c == '\'' ? behind(text, std::string_view(&c, 1), at + 1) : at + 1;
  }
  return std::min(at + 1, text.size());
}

/// The place after a document type and the declarations inside it.
std::size_t documentTypeEndFrom(std::string_view text, std::size_t at) {
  int depth = 0;
  while (at < text.size()) {
    const auto rest = text.substr(at);
    const char c = text[at];
    if (rest.starts_with("<!--")) {
      at = behind(text, "-->", at + 4);
    } else if (rest.starts_with("<?")) {
      at = behind(text, "?>", at + 2);
    } else if (c == '"' || c == '\'') {
      at = behind(text, std::string_view(&c, 1), at + 1);
    } else {
      if (c == '[') ++depth;
      if (c == ']') --depth;
      ++at;
      if (c == '>' && depth == 0) break;
    }
  }
  return at;
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '\r':
        result += "&#13;";
        break;
      default:
        result += c;
    }
  }
  return result;
}

/// The white space before a place, back to the start of its line.
std::string_view indentBefore(std::string_view text, std::size_t at) {
  const auto last = text.substr(0, at).find_last_not_of(blanks);
  const auto begin = last == std::string_view::npos ? 0 : last + 1;
  const auto indent = text.substr(begin, at - begin);
  const auto line = indent.rfind('\n');
  if (line == std::string_view::npos) return {};
  return indent.substr(line > 0 && indent[line - 1] == '\r' ? line - 1 : line);
}

/// Splits the first name off a path.
std::string_view takeName(std::string_view& path) {
  const auto slash = path.find('/');
  const auto name = path.substr(0, slash);
  path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
  return name;
}

std::string elementOf(std::string_view path, std::string_view value) {
  const auto name = std::string(takeName(path));
  return "<" + name + ">" + (path.empty() ? escaped(value) : elementOf(path, value)) + "</" + name + ">";
}

using Element = ElementSpans::Element;

/// The element's text with new content, given as markup.
std::string withContent(const std::string& document, const Element& element, std::size_t from,
                        const std::string& content) {
  if (element.hasEndTag()) {
    return document.substr(0, from) + content + document.substr(element.contentEnd);
  }
  const auto slash = document.rfind('/', element.tagEnd - 1);
  return document.substr(0, slash) + ">" + content + "</" + std::string(element.name) + ">" +
         document.substr(element.end);
}

std::string withNewChild(const std::string& document, const ElementSpans& spans, std::size_t parent,
                         const std::string& child) {
  const auto& element = spans.elements()[parent];
  const auto children = spans.childrenOf(parent);
  if (children.empty()) return withContent(document, element, element.contentEnd, child);
  const auto& last = spans.elements()[children.back()];
  return document.substr(0, last.end) + std::string(indentBefore(document, last.tagBegin)) + child +
         document.substr(last.end);
}

}  // namespace

ElementSpans::ElementSpans(std::string_view text) : text_(text) {
  for (auto at = text.find('<'); at < text.size(); at = text.find('<', at)) {
    const auto rest = text.substr(at);
    const auto begin = at;
    if (rest.starts_with("<!--")) {
      at = behind(text, "-->", at + 4);
    } else if (rest.starts_with("<![CDATA[")) {
      at = behind(text, "]]>", at + 9);
    } else if (rest.starts_with("<?")) {
      at = behind(text, "?>", at + 2);
    } else if (rest.starts_with("<!")) {
      at = documentTypeEndFrom(text, at + 2);
    } else if (rest.starts_with("</")) {
      at = tagEndFrom(text, at);
      addEndTag(begin, at);
    } else {
      at = tagEndFrom(text, at);
      addStartTag(begin, at);
    }
  }
}

void ElementSpans::addStartTag(std::size_t begin, std::size_t end) {
  const bool empty = end - begin > 2 && text_[end - 2] == '/';
  const auto nameEnd = text_.find_first_of(" \t\r\n/>", begin + 1);
  const auto name = text_.substr(begin + 1, std::min(nameEnd, end) - begin - 1);
  elements_.push_back({name, open_.empty() ? none : open_.back(), begin, end, end, end});
  if (!empty) open_.push_back(elements_.size() - 1);
}

void ElementSpans::addEndTag(std::size_t begin, std::size_t end) {
  if (open_.empty()) return;
  auto& element = elements_[open_.back()];
  element.contentEnd = begin;
  element.end = end;
  open_.pop_back();
}

std::vector<std::size_t> ElementSpans::childrenOf(std::size_t parent) const {
  std::vector<std::size_t> children;
  for (std::size_t index = 0; index < elements_.size(); ++index) {
    if (elements_[index].parent == parent) children.push_back(index);
  }
  return children;
}

std::size_t ElementSpans::childNamed(std::size_t parent, std::string_view name) const {
  const auto found = std::ranges::find_if(
      elements_, [&](const Element& element) { return element.parent == parent && element.name == name; });
  return found == elements_.end() ? none : static_cast<std::size_t>(found - elements_.begin());
}

std::size_t ElementSpans::at(const std::vector<std::size_t>& positions) const {
  if (elements_.empty()) return none;
  std::size_t element = 0;
  for (const auto position : positions) {
    const auto children = childrenOf(element);
    if (position >= children.size()) return none;
    element = children[position];
  }
  return element;
}

std::string withElementText(const std::string& document, const std::vector<std::size_t>& root,
                            std::string_view path, std::string_view value) {
  const ElementSpans spans(document);
  auto element = spans.at(root);
  if (element == ElementSpans::none) return document;
  takeName(path);
  while (!path.empty()) {
    auto rest = path;
    const auto child = spans.childNamed(element, takeName(rest));
    if (child == ElementSpans::none) return withNewChild(document, spans, element, elementOf(path, value));
    element = child;
    path = rest;
  }
  const auto& target = spans.elements()[element];
  return withContent(document, target, target.tagEnd, escaped(value));
}

}  // namespace vlclientui::engine
