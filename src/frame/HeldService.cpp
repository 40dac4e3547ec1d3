#include "frame/HeldService.h"

#include "contracts/RuntimeFailure.h"

namespace vlclientui {

std::shared_ptr<ImageService> imageServiceOf(const ObjectPtr& object) {
  if (!object) failMissingObject("the image service");
  return imageServiceIfAny(object);
}

std::shared_ptr<ImageService> imageServiceIfAny(const ObjectPtr& object) {
  if (!object) return nullptr;
  auto service = std::dynamic_pointer_cast<ImageService>(object);
  if (!service) failTypeMismatch("the object is no image service");
  return service;
}

}  // namespace vlclientui
