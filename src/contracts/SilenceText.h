#pragma once

#include <string>
#include <string_view>

namespace vlclientui {

/// Longest reason, in bytes.
inline constexpr std::size_t silentReasonLimit = 300;

/// A function as the compiler writes it ("void vlclientui::Form::load()") as a person does ("Form::load"): no
/// return type, no name spaces, no arguments. A lambda has the name of the function that it stands in.
[[nodiscard]] std::string routineOfFunction(std::string_view function);

/// One line of valid UTF-8 of at most silentReasonLimit bytes: control characters become blanks, bytes that
/// are no text "?", and what stands before the "@" of an address "***".
[[nodiscard]] std::string silentReason(std::string_view text);

}  // namespace vlclientui
