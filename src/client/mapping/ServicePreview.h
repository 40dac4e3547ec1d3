#pragma once

#include <optional>

#include "client/mapping/ServicePicture.h"

#pragma GCC visibility push(default)
namespace vlclientui::client {

struct Drawing;

/// A small picture of a whole service in its own system. Where that would take long it comes from some blocks
/// only.
/// @param drawing of the service. @param side so many pixels across or down, whichever is longer, at least 1.
/// @returns nothing when the work of this thread was given up.
/// @throws RuntimeFailure when no source can be read.
[[nodiscard]] std::optional<ServicePicture> previewOf(const Drawing& drawing, int side);

}  // namespace vlclientui::client
#pragma GCC visibility pop
