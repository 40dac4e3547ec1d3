#include "engine/Definition.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contracts/RuntimeFailure.h"
#include "engine/FieldRules.h"

namespace vlclientui::engine {
namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isSmall(char c) { return c >= 'a' && c <= 'z'; }
bool isCapital(char c) { return c >= 'A' && c <= 'Z'; }

bool equalsIgnoringCase(std::string_view text, std::string_view small) {
  return std::ranges::equal(text, small,
                            [](char a, char b) { return (isCapital(a) ? a - 'A' + 'a' : a) == b; });
}

AllowedValue allowedValue(std::string_view entry) {
  const auto sign = entry.find('=');
  if (sign == std::string_view::npos) return {std::string(entry), std::string(entry)};
  return {std::string(trimmed(entry.substr(0, sign))), std::string(trimmed(entry.substr(sign + 1)))};
}

bool isMnemonic(char c) {
  const bool ascii = isSmall(c) || isCapital(c) || (c >= '0' && c <= '9');
  return ascii || static_cast<unsigned char>(c) >= 0xC2;
}

constexpr std::array<std::pair<std::string_view, FieldKind>, 7> kinds{{{"text", FieldKind::Text},
                                                                       {"number", FieldKind::Number},
                                                                       {"whole", FieldKind::Whole},
                                                                       {"yesno", FieldKind::YesNo},
                                                                       {"choice", FieldKind::Choice},
                                                                       {"multiline", FieldKind::MultiLine},
                                                                       {"button", FieldKind::Button}}};

}  // namespace

std::string_view trimmed(std::string_view text) {
  const auto begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool isDefinitionText(std::string_view textOrPath) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (textOrPath.starts_with(byteOrderMark)) textOrPath.remove_prefix(byteOrderMark.size());
  return trimmed(textOrPath).starts_with('<');
}

std::unique_ptr<XmlDocument> loadDefinition(const XmlService& xml, const std::string& textOrPath) {
  auto document = xml.createDocument();
  const bool loaded = isDefinitionText(textOrPath) ? document->loadXml(textOrPath)
                                                   : !textOrPath.empty() && document->load(textOrPath);
  return loaded ? std::move(document) : nullptr;
}

bool isPageElement(const XmlNode& node) {
  if (node.kind() != XmlNodeKind::Element) return false;
  const auto name = node.name();
  return name != "X_DEF" && name != "xfd_header";
}

XmlNodePtr childElement(const XmlNodePtr& node, std::string_view name) {
  if (!node) return nullptr;
  for (auto& child : node->childNodes()) {
    if (child->kind() == XmlNodeKind::Element && child->name() == name) return child;
  }
  return nullptr;
}

std::vector<XmlNodePtr> pageElements(const XmlNode& node) {
  auto children = node.childNodes();
  std::erase_if(children, [](const auto& child) { return !isPageElement(*child); });
  return children;
}

std::string readableName(std::string_view name) {
  std::string readable;
  for (const char c : name) {
    if (isCapital(c) && !readable.empty() && isSmall(readable.back())) readable += ' ';
    readable += c == '_' ? ' ' : c;
  }
  return readable;
}

Label parseLabel(std::string_view text) {
  Label label;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool marks = text[at] == '&' && at + 1 < text.size();
    if (marks && isMnemonic(text[at + 1])) {
      if (!label.keyOffset) label.keyOffset = label.text.size();
      continue;
    }
    label.text += text[at];
    if (marks && text[at + 1] == '&') ++at;
  }
  return label;
}

std::optional<bool> parseYesNo(std::string_view text) {
  if (equalsIgnoringCase(text, "true")) return true;
  if (equalsIgnoringCase(text, "false")) return false;
  return std::nullopt;
}

FieldWords::FieldWords(std::string name, XmlNodePtr form, XmlNodePtr attributes)
    : name_(std::move(name)), form_(std::move(form)), attributes_(std::move(attributes)) {}

std::optional<std::string> FieldWords::word(std::string_view word) const {
  const auto attribute = name_ + "_" + std::string(word) + "_";
  for (const auto& definition : {form_, attributes_}) {
    if (!definition) continue;
    if (auto value = definition->getNamedItem(attribute)) return value;
  }
  return std::nullopt;
}

std::optional<bool> FieldWords::yesNo(std::string_view name) const {
  const auto text = word(name);
  if (!text) return std::nullopt;
  const auto value = parseYesNo(trimmed(*text));
  if (!value) throw RuntimeFailure("'" + *text + "' is neither True nor False in the definition of " + name_);
  return value;
}

std::optional<Bound> FieldWords::bound(std::string_view name) const {
  const auto text = word(name);
  if (!text) return std::nullopt;
  const std::string written(trimmed(*text));
  const auto number = parseNumber(written);
  if (!number) throw RuntimeFailure("'" + *text + "' is no number, in the definition of " + name_);
  return Bound{*number, written};
}

std::optional<Label> FieldWords::givenLabel() const {
  const auto text = word("LABEL");
  return text ? std::optional(parseLabel(*text)) : std::nullopt;
}

Label FieldWords::label() const { return givenLabel().value_or(Label{readableName(name_), std::nullopt}); }

FieldKind FieldWords::kind() const {
  const auto text = word("KIND");
  if (!text) return word("LIST") ? FieldKind::Choice : FieldKind::Text;
  const auto found = std::ranges::find_if(
      kinds, [&](const auto& kind) { return equalsIgnoringCase(trimmed(*text), kind.first); });
  if (found == kinds.end())
    throw RuntimeFailure("'" + *text + "' is no kind of field, in the definition of " + name_);
  return found->second;
}

std::vector<AllowedValue> FieldWords::allowedValues() const {
  const auto text = word("LIST").value_or("");
  std::vector<AllowedValue> values;
  for (std::size_t begin = 0; begin <= text.size();) {
    const auto end = std::min(text.find(';', begin), text.size());
    const auto entry = trimmed(std::string_view(text).substr(begin, end - begin));
    if (!entry.empty()) values.push_back(allowedValue(entry));
    begin = end + 1;
  }
  return values;
}

}  // namespace vlclientui::engine
