#pragma once

#include <memory>

#include "client/mapping/SmallCopies.h"

namespace vlclientui::viewer {

/// The small copies of large rasters of the person who runs the program, in that one's cache: all programs of
/// this project share them.
[[nodiscard]] std::shared_ptr<client::SmallCopies> personsCopies();

}  // namespace vlclientui::viewer
