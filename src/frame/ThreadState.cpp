#include "frame/ThreadState.h"

#include <utility>

#include "contracts/RuntimeFailure.h"

namespace vlclientui {

ThreadState& threadState() {
  thread_local ThreadState state;
  return state;
}

void setPlatform(std::shared_ptr<const Platform> platform) { threadState().platform = std::move(platform); }

bool hasPlatform() {
  const auto& set = threadState().platform;
  return set && set->system && set->xml && set->toolkit && set->plexa && set->clientLibrary;
}

const Platform& currentPlatform() {
  if (!hasPlatform()) failMissingObject("this thread has no platform; call host::start first");
  return *threadState().platform;
}

}  // namespace vlclientui
