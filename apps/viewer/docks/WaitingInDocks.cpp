#include "viewer/docks/WaitingInDocks.h"

#include <utility>

#include "host/HandedOver.h"

namespace vlclientui::viewer {

WaitingInDocks takeHandedOver() {
  const host::HandedOver state = host::handedOver();
  return {std::exchange(state.lockImageId, {}), std::exchange(state.viewPointX, {}),
          std::exchange(state.viewPointY, {})};
}

void giveBack(const WaitingInDocks& kept) {
  const host::HandedOver state = host::handedOver();
  state.lockImageId = kept.lockImageId;
  state.viewPointX = kept.viewPointX;
  state.viewPointY = kept.viewPointY;
}

}  // namespace vlclientui::viewer
