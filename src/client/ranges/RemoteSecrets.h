#pragma once

#include <optional>
#include <string>

namespace vlclientui::client {

/// Keeps the keys that an address holds, for as long as the process lives. @returns the address without them,
/// which no other address gets; given again, it stays itself.
[[nodiscard]] std::string addressForNames(const std::string& address);

/// The address behind a name, with the keys that were kept for it; nothing for names of other kinds.
[[nodiscard]] std::optional<std::string> addressWithSecrets(const std::string& name);

}  // namespace vlclientui::client
