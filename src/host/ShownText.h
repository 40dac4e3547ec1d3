#pragma once

#include <string>

#include "host/Compose.h"

#pragma GCC visibility push(default)
namespace vlclientui::host {

/// A text of the library as a person is to read it: paths in it are those of this system, without drives.
/// For messages and for documents that are shown; what another program reads stays as it is.
[[nodiscard]] std::string shownText(const ComposedHost& host, const std::string& text);

}  // namespace vlclientui::host
#pragma GCC visibility pop
