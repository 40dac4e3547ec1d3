#include "engine/FieldRules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

#include "contracts/XmlCharacters.h"
#include "engine/Definition.h"

namespace vlclientui::engine {
namespace {

constexpr std::string_view yesText = "Yes";
constexpr std::string_view noText = "No";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isWhole(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && std::ranges::all_of(text, isDigit);
}

std::string rangeText(const FormField& field) {
  if (field.minimum && field.maximum)
    return "Must be between " + field.minimum->text + " and " + field.maximum->text;
  return field.minimum ? "Must be at least " + field.minimum->text : "Must be at most " + field.maximum->text;
}

std::string complaintAboutNumber(const FormField& field, const std::string& text) {
  const auto number = parseNumber(text);
  if (field.kind == FieldKind::Whole && (!number || !isWhole(text))) return "Not a whole number";
  if (!number) return "Not a number, such as 12.5";
  const bool low = field.minimum && *number < field.minimum->number;
  const bool high = field.maximum && *number > field.maximum->number;
  return low || high ? rangeText(field) : std::string();
}

bool isEntry(const FormField& field, const std::string& text) {
  const bool unlisted = !field.unlistedValue.empty() && text == field.unlistedValue;
  return unlisted || field.allowedValues.empty() || std::ranges::count(field.allowedValues, text) > 0;
}

}  // namespace

std::optional<double> parseNumber(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const bool whole = error == std::errc{} && end == text.data() + text.size();
  // The reader takes names such as "inf" for numbers; a document must not hold them.
  const bool figures = text.find_first_not_of("0123456789+-.eE") == std::string_view::npos;
  return whole && figures && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::string shownText(const FormField& field, const std::string& stored) {
  if (field.kind == FieldKind::YesNo) {
    const auto yes = parseYesNo(stored);
    return yes ? std::string(*yes ? yesText : noText) : stored;
  }
  const auto found = std::ranges::find(field.allowedCodes, stored);
  return found == field.allowedCodes.end()
             ? stored
             : field.allowedValues[static_cast<std::size_t>(found - field.allowedCodes.begin())];
}

std::string storedText(const FormField& field, const std::string& shown) {
  if (field.kind == FieldKind::YesNo && shown == yesText) return "True";
  if (field.kind == FieldKind::YesNo && shown == noText) return "False";
  const auto found = std::ranges::find(field.allowedValues, shown);
  return found == field.allowedValues.end()
             ? shown
             : field.allowedCodes[static_cast<std::size_t>(found - field.allowedValues.begin())];
}

std::string complaintAbout(const FormField& field, const std::string& text) {
  if (text.empty()) return field.required ? "Must not be empty" : "";
  if (!isXmlText(text)) return "Holds a character that cannot be stored";
  switch (field.kind) {
    case FieldKind::Number:
    case FieldKind::Whole:
      if (const auto complaint = complaintAboutNumber(field, text); !complaint.empty()) return complaint;
      break;
    case FieldKind::YesNo:
      return text == yesText || text == noText ? "" : "Neither Yes nor No";
    default:
      break;
  }
  return isEntry(field, text) ? "" : "Not among the allowed values";
}

}  // namespace vlclientui::engine
