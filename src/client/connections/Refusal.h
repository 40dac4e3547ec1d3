#pragma once

#include <string>
#include <string_view>

#include "client/transport/Http.h"

namespace vlclientui::client {

/// Whether a server gives nothing to whom it does not know.
[[nodiscard]] bool asksWhoIsThere(const HttpAnswer& answer);

/// Why a server gives out nothing, as a part of a sentence: its status, and where it asks who is there, that
/// a connection can tell it.
[[nodiscard]] std::string refusalText(const HttpAnswer& answer);

/// Whether a text holds what that one says of a server that asks who is there.
[[nodiscard]] bool tellsOfConnection(std::string_view text);

}  // namespace vlclientui::client
