#pragma once

#include <cstdint>
#include <string>

#include "contracts/LocaleFormat.h"

namespace vlclientui::platform {

/// A locale as numbers need it.
struct UserLocale {
  std::int32_t id = 0;  ///< the 32-bit identity, 0x400 ("the user's") where none is known
  LocaleFormat format;
};

/// @param name as environment variables give it ("de_CH.UTF-8", "de-CH", "C", ""). Asks a table of common
/// locales first, then the C library, without ever changing the process's locale; a region that neither
/// knows gets the main region of its language, all else is like en-US.
[[nodiscard]] UserLocale findLocale(const std::string& name);

/// The locale with this identity; like en-US, with identity 0, when it is not in the table.
[[nodiscard]] UserLocale findLocale(std::int32_t id);

}  // namespace vlclientui::platform
