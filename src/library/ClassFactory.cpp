#include "library/ClassFactory.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <optional>
#include <vector>

#include "contracts/RuntimeFailure.h"
#include "export/ExportControl.h"
#include "export/ExportDialog.h"
#include "frame/LiveObjects.h"
#include "frame/ThreadState.h"
#include "properties/ServicePropertiesDialog.h"
#include "selection/ImageServicesControl.h"
#include "selection/ImageServicesDialog.h"

namespace vlclientui {

namespace {

ObjectPtr makeImageServicesControl() { return std::make_shared<ImageServicesControl>(nullptr); }
ObjectPtr makeServicePropertiesDialog() { return std::make_shared<ServicePropertiesDialog>(); }
ObjectPtr makeImageServicesDialog() { return std::make_shared<ImageServicesDialog>(); }
ObjectPtr makeExportDialog() { return std::make_shared<ExportDialog>(); }
ObjectPtr makeExportControl() { return std::make_shared<ExportControl>(nullptr); }

const auto& factories() {
  static const std::array<ClassFactory, 5> table{{
      {*findPublicClass("ImageServicesControl"), makeImageServicesControl},
      {*findPublicClass("ServicePropertiesDialog"), makeServicePropertiesDialog},
      {*findPublicClass("ImageServicesDialog"), makeImageServicesDialog},
      {*findPublicClass("ExportDialog"), makeExportDialog},
      {*findPublicClass("ExportControl"), makeExportControl},
  }};
  return table;
}

}  // namespace

ObjectPtr ClassFactory::CreateInstance() const {
  if (!hasPlatform()) {
    failMissingObject("cannot create " + std::string(description_.name) +
                      ", since this thread has no platform; call host::start first");
  }
  return creator_();
}

void ClassFactory::LockServer(bool lock) {
  static std::mutex mutex;
  static std::vector<std::unique_ptr<LiveObject>> locks;
  const std::scoped_lock guard(mutex);
  if (lock) {
    locks.push_back(std::make_unique<LiveObject>());
  } else if (!locks.empty()) {
    locks.pop_back();
  }
}

const ClassFactory* findClassFactory(std::string_view nameOrIdentity) {
  const PublicClass* const searched = findPublicClass(nameOrIdentity);
  const auto& table = factories();
  const auto found = std::ranges::find_if(
      table, [searched](const ClassFactory& factory) { return &factory.description() == searched; });
  return found == table.end() ? nullptr : &*found;
}

ObjectPtr createObject(std::string_view nameOrIdentity) {
  const ClassFactory* const factory = findClassFactory(nameOrIdentity);
  if (!factory) {
    throw RuntimeFailure("There is no class '" + std::string(nameOrIdentity) + "' that a host can create");
  }
  return factory->CreateInstance();
}

}  // namespace vlclientui
