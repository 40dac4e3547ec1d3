#include "library/HostThread.h"

#include <utility>

#include "contracts/RuntimeFailure.h"
#include "frame/ThreadState.h"

namespace vlclientui {

void startThread(std::shared_ptr<const Platform> platform) {
  const bool isTakenAway = platform == nullptr;
  setPlatform(std::move(platform));
  if (isTakenAway || hasPlatform()) return;
  setPlatform(nullptr);
  throw RuntimeFailure("The platform lacks an adapter");
}

}  // namespace vlclientui
