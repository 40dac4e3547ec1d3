#pragma once

#include <string>
#include <vector>

#include "contracts/Silence.h"

namespace vlclientui::vlhost {

/// Prints what ends silently on its thread to standard error, as "routine: reason"; nothing twice where the
/// environment asks for the same.
class SilencePrinter {
 public:
  SilencePrinter();

 private:
  SilenceListener listener_;
};

/// Takes "--verbose" out of the arguments, wherever it stands. @returns whether it was there.
bool takeVerbose(std::vector<std::string>& arguments);

}  // namespace vlclientui::vlhost
