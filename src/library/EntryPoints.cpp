#include "library/EntryPoints.h"

#include "frame/Guard.h"
#include "frame/LiveObjects.h"
#include "library/ClassFactory.h"
#include "library/Registration.h"

namespace result = vlclientui::entryPointResult;

std::int32_t DllRegisterServer() {
  return vlclientui::endsQuietly([] { vlclientui::registerClasses(); }) ? result::ok : result::failed;
}

std::int32_t DllUnregisterServer() {
  return vlclientui::endsQuietly([] { vlclientui::unregisterClasses(); }) ? result::ok : result::failed;
}

std::int32_t DllGetClassObject(const char* classIdentity, const vlclientui::ClassFactory** factory) {
  if (!classIdentity || !factory) return result::invalidPointer;
  *factory = vlclientui::findClassFactory(classIdentity);
  return *factory ? result::ok : result::classNotAvailable;
}

std::int32_t DllCanUnloadNow() { return vlclientui::liveObjectCount() == 0 ? result::ok : result::no; }
