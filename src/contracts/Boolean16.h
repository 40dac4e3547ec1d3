#pragma once

#include <cstdint>

#pragma GCC visibility push(default)
namespace vlclientui {

/// The boolean that crosses the library's boundary: true is -1, false is 0.
using Boolean16 = std::int16_t;

/// True at the boundary.
inline constexpr Boolean16 boolean16True = -1;
/// False at the boundary.
inline constexpr Boolean16 boolean16False = 0;

/// A boolean of this language as one of the boundary.
[[nodiscard]] constexpr Boolean16 toBoolean16(bool value) { return value ? boolean16True : boolean16False; }

}  // namespace vlclientui
#pragma GCC visibility pop
