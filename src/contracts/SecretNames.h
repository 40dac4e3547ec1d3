#pragma once

#include <array>
#include <string_view>

// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// Names of parameters whose values are secrets, in small letters and without "-", "_" and ".": these as a
/// whole.
inline constexpr std::array<std::string_view, 12> secretNames{
    "key", "sig", "pwd",     "pass",      "auth",    "authorization",
    "jwt", "sid", "session", "sessionid", "authkey", "mapkey"};

/// Words that make a secret of any name that they stand in.
inline constexpr std::array<std::string_view, 10> secretWords{
    "token",  "apikey",    "accesskey",       "passw",      "userpwd",
    "secret", "signature", "subscriptionkey", "credential", "licensekey"};

}  // namespace vlclientui
#pragma GCC visibility pop
