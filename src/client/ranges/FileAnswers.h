#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "client/transport/Http.h"

/// What answers for files mean, and the words for those that are of no use. No text holds a secret.
namespace vlclientui::client {

/// Whether the status says that there is no such file.
[[nodiscard]] bool isNoFile(int status);
/// Whether the status says that the server cannot answer just now.
[[nodiscard]] bool isPassing(int status);
/// The size of the whole file as an answer with a part of it tells; nothing where it does not.
[[nodiscard]] std::optional<std::uint64_t> wholeSizeOf(const HttpAnswer& part);

/// Why an answer with another status than asked for is no file.
[[nodiscard]] std::string refusalText(const HttpAnswer& answer, const std::string& address);
[[nodiscard]] std::string tooLargeWithoutParts(const std::string& address);
[[nodiscard]] std::string wrongPart(const std::string& address);
[[nodiscard]] std::string emptyFile(const std::string& address);
[[nodiscard]] std::string changedFile(const std::string& address);
[[nodiscard]] std::string givenUpFile(const std::string& address);
[[nodiscard]] std::string noImage(const std::string& address);

}  // namespace vlclientui::client
