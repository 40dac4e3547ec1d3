#pragma once

#include <chrono>
#include <optional>
#include <string_view>

#include "client/transport/Exchange.h"

namespace vlclientui::client {

/// What a "Retry-After" asks for, in seconds or as a date; nothing for what is neither. Never negative.
[[nodiscard]] std::optional<std::chrono::milliseconds> toldPause(std::string_view retryAfter,
                                                                 std::chrono::system_clock::time_point now);

/// Whether the server said that it has too much to do.
[[nodiscard]] bool isOverload(const ExchangeOutcome& outcome);

/// The pause before a request is made once more; nothing where it is not: the outcome stands, the tries are
/// used up, or the server wants to be left alone for longer than we wait.
/// @param tried exchanges with that outcome behind it, at least 1.
[[nodiscard]] std::optional<std::chrono::milliseconds> pauseBeforeRetry(const ExchangeOutcome& outcome,
                                                                        const HttpRequest& request, int tried,
                                                                        const TransportSettings& settings);

}  // namespace vlclientui::client
