#include "host/HandedOver.h"

#include "frame/ThreadState.h"

namespace vlclientui::host {

HandedOver handedOver() {
  ThreadState& state = threadState();
  return {state.gLockImageID, state.gViewPointX, state.gViewPointY};
}

}  // namespace vlclientui::host
