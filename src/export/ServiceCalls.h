#pragma once

#include <memory>

#include "contracts/Object.h"
#include "contracts/RuntimeFailure.h"
#include "contracts/VorlaneClient.h"

namespace vlclientui {

/// The service behind an untyped reference, at the point of a call.
/// @throws RuntimeFailure (MissingObject) without an object, (TypeMismatch) for one that is no service.
[[nodiscard]] inline std::shared_ptr<ImageService> imageServiceOf(const ObjectPtr& object) {
  if (!object) failMissingObject("the image service");
  auto service = std::dynamic_pointer_cast<ImageService>(object);
  if (!service) failTypeMismatch("the object is no image service");
  return service;
}

}  // namespace vlclientui
