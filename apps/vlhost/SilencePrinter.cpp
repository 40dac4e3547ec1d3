#include "SilencePrinter.h"

#include <iostream>

#include "Telling.h"

namespace vlclientui::vlhost {

SilencePrinter::SilencePrinter()
    : listener_([](const SilentEnd& end) {
        if (!silenceIsPrinted()) std::cerr << terminalText(end.routine + ": " + end.reason) << "\n";
      }) {}

bool takeVerbose(std::vector<std::string>& arguments) { return std::erase(arguments, "--verbose") > 0; }

}  // namespace vlclientui::vlhost
