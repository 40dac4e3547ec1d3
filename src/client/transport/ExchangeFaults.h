#pragma once

#include <curl/curl.h>

#include "client/transport/Address.h"
#include "client/transport/Http.h"

namespace vlclientui::client {

/// What a failure of libcurl means to a person.
/// @param verified OpenSSL's outcome of the check of the certificate, by which libcurl tells why it failed.
[[nodiscard]] HttpFailure failureOf(CURLcode code, long verified, const Server& server);

/// Whether another try may go better.
[[nodiscard]] bool isPassingFault(CURLcode code);

[[nodiscard]] HttpFailure timedOut(const Server& server);
[[nodiscard]] HttpFailure canceled(const std::string& host);

}  // namespace vlclientui::client
