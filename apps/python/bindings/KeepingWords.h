#pragma once

#include <string>

#include "client/facade/ExportForecast.h"

/// What becomes of read pixels where an export breaks off, in the words of Python.
namespace vlclientui::python {

/// @throws RuntimeFailure for a word that is none of "nothing", "partial", "resume" and "restart".
[[nodiscard]] client::Keeping keepingOf(const std::string& word);

}  // namespace vlclientui::python
