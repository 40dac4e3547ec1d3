#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "engine/FormModel.h"

/// What a field takes, and how its data and what is shown for them turn into one another.
namespace vlclientui::engine {

/// A number as documents hold it: a sign or none, digits with at most one "." among them, an exponent or
/// none. Nothing for any other text, blanks included, and for what no double can hold.
[[nodiscard]] std::optional<double> parseNumber(std::string_view text);

/// The data's text as a person sees it: the label of a code, "Yes" and "No"; anything else as it stands.
[[nodiscard]] std::string shownText(const FormField& field, const std::string& stored);

/// What the data shall hold for a shown text. @pre complaintAbout has nothing to say about it.
[[nodiscard]] std::string storedText(const FormField& field, const std::string& shown);

/// Why the field cannot take a text, ends trimmed, as a short sentence for a person; empty when it can.
[[nodiscard]] std::string complaintAbout(const FormField& field, const std::string& text);

}  // namespace vlclientui::engine
