#pragma once

#include <string>

#include "host/Compose.h"

namespace vlclientui::vlhost {

enum class OutputFormat { Table, Json, Xml };

struct ServicesCommand {
  std::string server = "127.0.0.1";
  OutputFormat format = OutputFormat::Table;
};

/// Prints what a server offers; what it had to leave out goes to standard error.
/// @returns the exit code. @throws RuntimeFailure with what a person is to be told.
[[nodiscard]] int runServices(const ServicesCommand& command);

/// Why a server gives no answer, for a person. @param server as it was asked for.
[[nodiscard]] std::string reasonOfSilence(const host::Installation& installation, const std::string& server);

/// The built-in catalogue serves a folder that may be missing. @param text a server or a reference.
/// @throws RuntimeFailure when the text leads into it and the folder is not there.
void refuseMissingSamples(const host::Installation& installation, const std::string& text);

}  // namespace vlclientui::vlhost
