#pragma once

#include "contracts/Object.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/VorlaneClient.h"

namespace vlclientui {

/// The service behind an untyped reference, at the point of a call.
/// @throws RuntimeFailure (MissingObject) without an object, (TypeMismatch) for one that is no service.
[[nodiscard]] inline ImageService& imageServiceOf(const ObjectPtr& object) {
  if (!object) failMissingObject("the image service");
  auto* const service = dynamic_cast<ImageService*>(object.get());
  if (!service) failTypeMismatch("the object is no image service");
  return *service;
}

}  // namespace vlclientui
