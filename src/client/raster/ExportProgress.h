#pragma once

#include <functional>

namespace vlclientui::client {

/// Told how far an export is, from 0 to 1, on the thread that exports; false cancels it. May be empty.
using ExportProgress = std::function<bool(double share)>;

/// @throws RuntimeFailure always.
[[noreturn]] void failCancelled();
/// @throws RuntimeFailure when that cancels the export.
void report(const ExportProgress& progress, double share);

}  // namespace vlclientui::client
