#pragma once

#include <string>

#include "contracts/LocaleFormat.h"

namespace vlclientui::vlhost {

/// A number that was written under another locale would be read as a different one: where a point groups
/// thousands, "1.5" reads as 15. @param text as typed. @throws RuntimeFailure when its group separators do
/// not stand between thousands. A text that is no number is left to the window.
void refuseForeignNumber(const std::string& text, const LocaleFormat& locale);

}  // namespace vlclientui::vlhost
