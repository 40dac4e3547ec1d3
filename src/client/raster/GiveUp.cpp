#include "client/raster/GiveUp.h"

#include "client/waiting/Wait.h"

namespace vlclientui::client {

int untilGivenUp(double /*share*/, const char* /*message*/, void* /*data*/) {
  return WaitScope::isGivenUp() ? 0 : 1;
}

}  // namespace vlclientui::client
