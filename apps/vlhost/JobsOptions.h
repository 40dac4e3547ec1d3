#pragma once

#include <string>
#include <vector>

#include "JobsCommand.h"

namespace vlclientui::vlhost {

/// Whether arguments of export name jobs, in place of a service.
[[nodiscard]] bool namesJobs(const std::vector<std::string>& arguments);

/// @param arguments behind the word `export`, with --job among them. @throws Misuse when they make no sense.
[[nodiscard]] JobsCommand parseJobs(const std::vector<std::string>& arguments);

}  // namespace vlclientui::vlhost
