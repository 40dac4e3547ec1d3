#pragma once

#include <string>
#include <vector>

#include "host/Compose.h"
#include "runs/RunFile.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {
class CatalogueImageService;
}

namespace vlclientui::host {

/// Shows what an `open` names and waits until it is closed.
/// @returns what the dialog hands to its host: references, properties, or the `GetImage` element.
/// @throws RuntimeFailure where there is no such dialog or service, and with what a person is told when it
/// cannot be shown.
[[nodiscard]] std::string showDialogOfRun(const ComposedHost& host, const runs::RunStatement& open);

/// For hosts that are recorded: a dialog shows while this lives. What a person does at other times is not
/// written down, since nothing could bring up its windows again.
class ToldDialog {
 public:
  /// @param dialog as an `open` names it. @param reference that its service was opened by; empty for none.
  /// @param more names and values in turn, see docs/run-files.md; those without a value are left out.
  ToldDialog(const std::string& dialog, const std::string& reference, std::vector<std::string> more = {});
  ToldDialog(const ToldDialog&) = delete;
  ToldDialog& operator=(const ToldDialog&) = delete;
  ~ToldDialog();
};

/// What the window of services begins with, on any machine.
/// @param extent handed to the dialog; empty for none.
[[nodiscard]] std::vector<std::string> beginningOfServices(const std::string& extent);

/// What the export window of a service begins with: its properties and the image last returned.
/// @param host whose XML service reads them. @param service that is exported. @param extents handed to the
/// dialog; empty for none.
[[nodiscard]] std::vector<std::string> beginningOfExport(const ComposedHost& host,
                                                         client::CatalogueImageService& service,
                                                         const std::string& extents);

}  // namespace vlclientui::host
#pragma GCC visibility pop
