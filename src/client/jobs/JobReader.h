#pragma once

#include <filesystem>

#include "client/jobs/ExportJob.h"
#include "contracts/XmlDocument.h"

namespace vlclientui::client {

/// The newest form of the document that is known.
inline constexpr int jobVersion = 1;

/// @param job the element `VLJob`. @param folder native, from which relative paths count.
/// @throws RuntimeFailure that says what is wrong with it.
[[nodiscard]] ExportJob readJobElement(const XmlNode& job, const std::filesystem::path& folder);

}  // namespace vlclientui::client
