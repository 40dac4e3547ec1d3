#pragma once

#include <QString>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/jobs/ExportJob.h"
#include "export/ExportDialogInterfaces.h"
#include "host/Compose.h"
#include "host/OfferedExtents.h"
#include "viewer/services/PickedService.h"

/// The export dialog as a host drives it: through the class factory, by its interface, with documents.
namespace vlclientui::viewer {

/// The outcome of one show of the export window.
struct ExportOutcome {
  /// The `GetImage` element that the window handed back, with paths of this system; empty after a cancel.
  std::string request;
  /// The same as a job that can be run elsewhere; nothing after a cancel.
  std::optional<client::ExportJob> job = {};
  PickedService::Attempt attempt = PickedService::Attempt::None;
  std::filesystem::path file;  ///< native; of an export that ran or was tried
  int columns = 0;
  int rows = 0;
  std::chrono::milliseconds took{};  ///< to write it
  std::string problem;               ///< why nothing was exported, for a person; empty otherwise
};

/// A service that is open for an export.
struct PreparedExport {
  std::shared_ptr<PickedService> service;
  std::string extents;  ///< that the window offers, as it wants them
  std::string reference;
};

/// Any thread; may wait for servers. The words are those of exportService.
/// @throws RuntimeFailure when the service cannot be read.
[[nodiscard]] PreparedExport prepareExport(const host::ComposedHost& host, const std::string& reference,
                                           const QString& title, const std::string& properties,
                                           const std::vector<host::NamedPlace>& places);

/// @throws RuntimeFailure where the definitions cannot be read.
[[nodiscard]] std::shared_ptr<IExportImageDialog> exportDialogFor(
    const host::ComposedHost& host, const std::shared_ptr<PickedService>& service);

/// The rest of exportService.
[[nodiscard]] ExportOutcome showExport(const host::ComposedHost& host, const PreparedExport& prepared,
                                       const QString& title, const std::filesystem::path& folder);

/// What came of it, for hosts that show the window's content in a pane.
/// @param request that the window handed back; not empty.
[[nodiscard]] ExportOutcome outcomeOfExport(const host::ComposedHost& host, PickedService& service,
                                            const std::string& request);

/// Shows the export window for a service and waits for it. While a file is being written a window of its own
/// shows the progress and lets a person cancel; nothing else takes input then.
/// @param reference as a service of the map is named. @param title for a person.
/// @param properties how the service is drawn, a service properties document; empty for its own.
/// @param places offered beside the service's own extents, as far as the service lies there, in its own
/// pixels; the window begins with the last one.
/// @param folder native, of the file that the window proposes; an empty one, or one that is gone, leaves that
/// to the window.
/// @throws RuntimeFailure when the service cannot be read, or the window cannot be made or shown.
[[nodiscard]] ExportOutcome exportService(const host::ComposedHost& host, const std::string& reference,
                                          const QString& title, const std::string& properties,
                                          const std::vector<host::NamedPlace>& places,
                                          const std::filesystem::path& folder);

}  // namespace vlclientui::viewer
