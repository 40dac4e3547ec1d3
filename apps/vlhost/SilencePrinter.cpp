#include "SilencePrinter.h"

#include <iostream>

namespace vlclientui::vlhost {

SilencePrinter::SilencePrinter()
    : listener_([](const SilentEnd& end) {
        if (!silenceIsPrinted()) std::cerr << end.routine << ": " << end.reason << "\n";
      }) {}

bool takeVerbose(std::vector<std::string>& arguments) { return std::erase(arguments, "--verbose") > 0; }

}  // namespace vlclientui::vlhost
