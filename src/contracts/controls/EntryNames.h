#pragma once

#include <cstddef>
#include <string>
#include <vector>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
/// How operations name what a person chooses: by its text, and where several have the same text, "text #2"
/// for the second of them.
namespace vlclientui {

/// @param place below the number of entries.
[[nodiscard]] std::string entryName(const std::vector<std::string>& entries, std::size_t place);

/// @throws RuntimeFailure that tells which entries there are, for a name that none or several have.
[[nodiscard]] std::size_t placeOfEntry(const std::vector<std::string>& entries, const std::string& name);

}  // namespace vlclientui
#pragma GCC visibility pop
