#pragma once

namespace vlclientui::client {

/// A rectangle of pixels, from the top left corner.
struct Window {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const Window&) const = default;
};

}  // namespace vlclientui::client
