#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "client/transport/Http.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

/// What stands in place of a secret.
inline constexpr std::string_view hiddenSecret = "***";

/// An address as it may be shown, logged and kept: without user and password, without a fragment, and with
/// "***" for the values of parameters that keep keys ("token", "api_key", "sig" and their like, in any case
/// and spelling). Takes any text, also one that is no proper address.
[[nodiscard]] std::string withoutSecrets(std::string_view address);

/// The same for each address inside a text, such as a message of another library.
[[nodiscard]] std::string textWithoutSecrets(std::string_view text);

/// What a property of that name holds, as it may be shown: "***" where the name is one of a key, else without
/// the secrets of what stands in it: addresses, with or without their server, and parameters.
[[nodiscard]] std::string propertyWithoutSecrets(std::string_view name, std::string_view value);

/// What proves who asks, as it stood in an address, decoded; and the address without it.
struct TypedSecrets {
  /// What was typed, without user, password and parameters that hold keys. Equal to it where there were none.
  std::string address;
  std::string beforeQuery;  ///< of it, also where nothing of the query is left
  /// Empty for none.
  std::string user;
  /// Empty for none.
  std::string password;
  std::vector<HttpHeader> parameters;  ///< without those that hold nothing or "***"
};

/// Behind an address the name of a service may follow, with a "/" between them; the value of a key ends
/// there.
enum class BehindAddress {
  Nothing,  ///< the address is all of the text
  Name      ///< the name of a service may follow
};

/// Takes the secrets out of an address, with or without "http://".
[[nodiscard]] TypedSecrets secretsTakenOut(std::string_view address, BehindAddress behind);

/// Whether a parameter of that name holds a key or password.
[[nodiscard]] bool isSecretParameter(std::string_view name);

}  // namespace vlclientui::client
#pragma GCC visibility pop
