#pragma once

#include <memory>

#include "contracts/Object.h"
#include "contracts/VorlaneClient.h"

namespace vlclientui {

/// The service behind an untyped reference, at the point of a call.
/// @throws RuntimeFailure (MissingObject) without an object, (TypeMismatch) for one that is no service.
[[nodiscard]] std::shared_ptr<ImageService> imageServiceOf(const ObjectPtr& object);
/// The same where a window does without a service: null without an object.
[[nodiscard]] std::shared_ptr<ImageService> imageServiceIfAny(const ObjectPtr& object);

}  // namespace vlclientui
