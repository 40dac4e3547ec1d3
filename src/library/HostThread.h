#pragma once

#include <memory>

#include "contracts/Platform.h"

#pragma GCC visibility push(default)
namespace vlclientui {

/// Gives the calling thread the adapters of a host: once per thread, before any object is made on it. A null
/// platform takes them away again. Hosts with a ready-made platform call host::start instead.
/// @throws RuntimeFailure when the platform lacks an adapter; the thread has none then.
void startThread(std::shared_ptr<const Platform> platform);

}  // namespace vlclientui
#pragma GCC visibility pop
