#include "platform/XmlText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "platform/XmlWalk.h"

namespace vlclientui::platform {
namespace {

struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;  ///< 0 when the bytes are not a character
};

std::size_t lengthByFirstByte(std::uint8_t first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

Character decodeFirst(std::string_view text) {
  const auto byteAt = [text](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const std::size_t length = lengthByFirstByte(byteAt(0));
  if (length == 0 || length > text.size()) return {};
  if (length == 1) return {byteAt(0), 1};
  std::uint32_t code = byteAt(0) & (0xFFU >> (length + 1));
  for (std::size_t index = 1; index < length; ++index) {
    if ((byteAt(index) & 0xC0U) != 0x80U) return {};
    code = (code << 6U) | (byteAt(index) & 0x3FU);
  }
  const bool isTooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  return isTooLong ? Character{} : Character{code, length};
}

bool isXmlCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xD800 || (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF);
}

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

bool isXmlText(std::string_view text) {
  // Nearly all text is ASCII, and documents may have hundreds of megabytes of it.
  const auto isPlain = [](char character) { return character >= ' ' && character < '\x7F'; };
  for (;;) {
    text.remove_prefix(
        static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) - text.begin()));
    if (text.empty()) return true;
    const Character character = decodeFirst(text);
    if (character.length == 0 || !isXmlCharacter(character.code)) return false;
    text.remove_prefix(character.length);
  }
}

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
