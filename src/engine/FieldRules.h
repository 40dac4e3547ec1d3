#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/FormModel.h"

/// What a field takes, and how to convert between the data's text and the shown one.
namespace vlclientui::engine {

/// A number as documents write it: optional sign, digits with at most one ".", optional exponent. Nothing for
/// any other text, blanks included, and for a number too large for a double.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

/// What a person sees for the data's text: the label of a code, "Yes" or "No", anything else unchanged.
[[nodiscard]] std::string shownText(const FormField& field, const std::string& stored);

/// What the data hold for a shown text. @pre complaintAbout(field, shown) is empty.
[[nodiscard]] std::string storedText(const FormField& field, const std::string& shown);

/// Why the field cannot take a text (ends trimmed), as a short sentence for a person; empty when it can.
[[nodiscard]] std::string complaintAbout(const FormField& field, const std::string& text);

}  // namespace vlclientui::engine
