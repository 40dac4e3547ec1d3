#pragma once

#include <QString>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "client/jobs/ExportJob.h"
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
