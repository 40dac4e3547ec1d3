#include "platform/XmlText.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "contracts/XmlCharacters.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

/// Joins pieces of text and trims the ends of the whole, except inside CDATA.
class TextCollector {
 public:
  void addText(std::string_view text) {
    if (text_.empty() && !endsAreFixed_) {
      text.remove_prefix(
          static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isWhiteSpace) - text.begin()));
    }
    text_ += text;
  }

  void addCData(std::string_view text) {
    if (text.empty()) return;
    text_ += text;
    endsAreFixed_ = true;
    fixedLength_ = text_.size();
  }

  std::string take() {
    while (text_.size() > fixedLength_ && isWhiteSpace(text_.back())) text_.pop_back();
    return withPlainLineEnds(std::move(text_));
  }

 private:
  std::string text_;
  bool endsAreFixed_ = false;
  std::size_t fixedLength_ = 0;
};

void addPiece(TextCollector& collector, const xmlNode* node) {
  if (node->type == XML_TEXT_NODE) collector.addText(view(node->content));
  if (node->type == XML_CDATA_SECTION_NODE) collector.addCData(view(node->content));
}

}  // namespace

void requireXmlText(std::string_view text) {
  if (!isXmlText(text)) throw RuntimeFailure("The text has characters that XML does not allow");
}

bool isWhiteSpace(char character) {
  return character == ' ' || character == '\n' || character == '\t' || character == '\r';
}

bool isBlank(std::string_view text) { return std::all_of(text.begin(), text.end(), isWhiteSpace); }

std::string withPlainLineEnds(std::string text) {
  std::size_t kept = text.find('\r');
  if (kept == std::string::npos) return text;
  for (std::size_t index = kept; index < text.size(); ++index) {
    const bool isPair = text[index] == '\r' && index + 1 < text.size() && text[index + 1] == '\n';
    if (!isPair) text[kept++] = text[index] == '\r' ? '\n' : text[index];
  }
  text.resize(kept);
  return text;
}

std::string attributeValue(const xmlAttr* attribute) {
  std::string value;
  for (const xmlNode* piece = attribute->children; piece != nullptr; piece = piece->next) {
    value += view(piece->content);
  }
  return value;
}

std::string textOf(const xmlNode* node) {
  if (node->type == XML_ATTRIBUTE_NODE) return attributeValue(reinterpret_cast<const xmlAttr*>(node));
  if (node->type == XML_COMMENT_NODE || node->type == XML_PI_NODE) return std::string(view(node->content));
  TextCollector collector;
  for (const xmlNode* piece = node; piece != nullptr; piece = nextInOrder(piece, node)) {
    addPiece(collector, piece);
  }
  return collector.take();
}

}  // namespace vlclientui::platform
