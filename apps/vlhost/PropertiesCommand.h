#pragma once

#include <string>
#include <vector>

#include "DocumentJson.h"

namespace vlclientui::vlhost {

/// What a person would type into a field of the properties page, or choose there.
struct PropertyEdit {
  std::string name;   ///< of the field's element, or its path; ViewPointX and ViewPointY for the viewpoint
  std::string value;  ///< as typed or shown, or what the document holds for it
};

struct PropertiesCommand {
  std::string reference;
  std::vector<PropertyEdit> edits;  ///< in the order of the command line
  std::string file;                 ///< the reference file to write; empty to print the document
  DocumentOutput format = DocumentOutput::Xml;
};

/// Runs the properties page and the viewpoint page without a screen: the same fields and checks, the same
/// words of refusal, which go to standard error; then nothing is printed or written.
/// @returns the exit code. @throws RuntimeFailure with what a person is to be told.
[[nodiscard]] int runProperties(const PropertiesCommand& command);

}  // namespace vlclientui::vlhost
