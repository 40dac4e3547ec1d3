#pragma once

#include <functional>

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// Called on the exporting thread with the share done so far, 0 to 1; returning false cancels. May be empty.
using ExportProgress = std::function<bool(double share)>;

/// @throws RuntimeFailure always.
[[noreturn]] void failCanceled();
/// @throws RuntimeFailure when the callback cancels the export.
void report(const ExportProgress& progress, double share);

}  // namespace vlclientui::client
#pragma GCC visibility pop
