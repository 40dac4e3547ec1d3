#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The one kind of silent end that people are told of: a server that does not answer.
// For the programs and adapters of this project: shown, but not installed.
#pragma GCC visibility push(default)
namespace vlclientui {

/// The reason to be told where a server is silent: "the server 'maps.example' does not answer: ...".
/// @param what "server" or "catalogue". @param server as it was typed, without secrets.
[[nodiscard]] std::string serverSilence(std::string_view what, std::string_view server,
                                        std::string_view reason);

/// Why the server does not answer; nothing for the reasons of other silent ends.
[[nodiscard]] std::optional<std::string> reasonOfServerSilence(std::string_view told);

}  // namespace vlclientui
#pragma GCC visibility pop
