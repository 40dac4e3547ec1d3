#pragma once

#include <string>
#include <string_view>

namespace vlclientui::client {

/// What stands in place of a secret.
inline constexpr std::string_view hiddenSecret = "***";

/// An address as it may be shown, logged and kept: without user and password, without a fragment, and with
/// "***" for the values of parameters that keep keys ("token", "api_key", "sig" and their like, in any case
/// and spelling). Takes any text, also one that is no proper address.
[[nodiscard]] std::string withoutSecrets(std::string_view address);

/// The same for each address inside a text, such as a message of another library.
[[nodiscard]] std::string textWithoutSecrets(std::string_view text);

/// Whether a parameter of that name holds a key or password.
[[nodiscard]] bool isSecretParameter(std::string_view name);

}  // namespace vlclientui::client
