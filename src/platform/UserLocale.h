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

/// @param name as environment variables give it ("de_CH.UTF-8", "de-CH", "C", ""). Looks into a table of
/// common locales, then asks the C library, without touching the process's locale. An unknown region gets the
/// main region of its language; everything else is treated as en-US.
[[nodiscard]] UserLocale findLocale(const std::string& name);

/// The locale with this identity; an unknown one is treated as en-US, with identity 0.
[[nodiscard]] UserLocale findLocale(std::int32_t id);

}  // namespace vlclientui::platform
