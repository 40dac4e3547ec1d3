#pragma once

#include <string>

namespace vlclientui::viewer {

/// What the pages of the docks wait with until Apply. It is none of another window's.
struct WaitingInDocks {
  std::string lockImageId;
  std::string viewPointX;
  std::string viewPointY;
};

/// Takes it from the thread.
[[nodiscard]] WaitingInDocks takeHandedOver();
void giveBack(const WaitingInDocks& kept);

}  // namespace vlclientui::viewer
