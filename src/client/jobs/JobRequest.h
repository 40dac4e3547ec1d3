#pragma once

#include <string>

#include "client/jobs/ExportJob.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct GetImageRequest;

/// The document of a `GetImage` element that an image service is given for the job, as the export window
/// gives it. Numbers in it read back as the same ones.
[[nodiscard]] std::string jobRequest(const ExportJob& job);

/// What a request says of a job; the service, its properties and the system are left as they are.
/// @param job that takes it. @param request whose file is told as a native path.
/// @throws RuntimeFailure for a format or compression that is unknown.
void takeRequest(ExportJob& job, const GetImageRequest& request);

}  // namespace vlclientui::client
#pragma GCC visibility pop
