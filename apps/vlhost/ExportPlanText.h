#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "ExportCommand.h"
#include "client/facade/ExportForecast.h"

namespace vlclientui::vlhost {

/// What a dry run tells.
struct ExportPlanned {
  std::string request;   ///< the `GetImage` element
  std::string estimate;  ///< of the window, in megabytes; empty where there was none
  std::string job;       ///< the document of the whole export
  client::ExportForecast forecast;
};

/// In lines for a person, or as one JSON object.
[[nodiscard]] std::string planText(const ExportPlanned& planned, PlanOutput output);

/// What an export wrote, as a JSON object.
[[nodiscard]] std::string writtenJson(const std::filesystem::path& file, const std::string& job);

/// "12.3 MB", or "12.3 KB" below one megabyte, with a point.
[[nodiscard]] std::string sizeText(std::uint64_t bytes);

}  // namespace vlclientui::vlhost
