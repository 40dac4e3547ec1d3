#pragma once

#include <memory>

#include "contracts/Plexa.h"

namespace vlclientui {

/// Takes an engine out of its window and releases it; does nothing without one. @throws RuntimeFailure when
/// it cannot be taken out; it is kept then.
void releaseEngine(std::shared_ptr<Plexa>& engine);

}  // namespace vlclientui
