#pragma once

#include <string>

#include "contracts/Toolkit.h"
#include "contracts/XmlDocument.h"

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Writes a document to the file that a person has named, and tells what came of it.
/// @throws RuntimeFailure when it cannot be written; the person has been told why then.
void saveAndTell(Toolkit& toolkit, const XmlDocument& document, const std::string& file);

/// Tells that a file was saved.
void tellSaved(Toolkit& toolkit, const std::string& file);

/// Tells a person something in passing, on a toolkit that can.
void tellInPassing(Toolkit& toolkit, const std::string& news);

}  // namespace vlclientui
#pragma GCC visibility pop
